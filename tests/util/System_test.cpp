#include <gtest/gtest.h>

#include "util/DateTime.h"
#include "util/OsDescription.h"

namespace fonklav {
namespace {

TEST(DateTime, StampsAreOfOneWidth) {
  EXPECT_EQ(GetFormatedDateByString({2015, 3, 7, 9, 5, 31}, "/", true), "2015/03/07");
  EXPECT_EQ(GetFormatedDateByString({2015, 12, 31, 0, 0, 0}, ".", false), "31.12.2015");
  EXPECT_EQ(GetFormatedDateByString({2015, 3, 7, 0, 0, 0}, "", true), "20150307");
  EXPECT_EQ(GetFormatedTime({2015, 3, 7, 9, 5, 1}), "09:05:01");
  EXPECT_EQ(GetFormatedTime({2015, 3, 7, 23, 59, 59}), "23:59:59");
}

struct SystemRow {
  OsVersion version;
  const char* description;
  bool nt6;
};

TEST(OsDescription, NamesTheEditionAndTellsTheNt6Family) {
  const SystemRow rows[] = {{{4, 0, 950, false, false}, "Windows 95 (4.0.950)", false},
                            {{4, 10, 0, false, true}, "Windows 98 (4.10.0)", false},
                            {{4, 90, 0, false, false}, "Windows Me (4.90.0)", false},
                            {{4, 89, 9, false, false}, "Windows 98 (4.89.9)", false},
                            {{4, 0, 1381, true, false}, "Windows NT (4.0.1381)", false},
                            {{4, 9, 9999, true, true}, "Windows NT Server (4.9.9999)", false},
                            {{5, 0, 0, true, false}, "Windows 2000 (5.0.0)", false},
                            {{5, 0, 0, true, true}, "Windows 2000 Server (5.0.0)", false},
                            {{5, 1, 0, true, false}, "Windows XP (5.1.0)", false},
                            {{5, 1, 9, true, true}, "Windows 2000 Server (5.1.9)", false},
                            {{5, 2, 0, true, false}, "Windows XP x64 (5.2.0)", false},
                            {{5, 2, 0, true, true}, "Windows Server 2003 (5.2.0)", false},
                            {{6, 0, 0, true, false}, "Windows Vista (6.0.0)", true},
                            {{6, 0, 0, true, true}, "Windows Server 2008 (6.0.0)", true},
                            {{6, 1, 0, true, false}, "Windows 7 (6.1.0)", true},
                            {{6, 1, 0, true, true}, "Windows Server 2008 R2 (6.1.0)", true},
                            {{6, 2, 0, true, false}, "Windows 8 (6.2.0)", true},
                            {{6, 2, 0, true, true}, "Windows Server 2012 (6.2.0)", true},
                            {{6, 3, 0, true, false}, "Windows 8.1 (6.3.0)", true},
                            {{6, 3, 0, true, true}, "Windows Server 2012 R2 (6.3.0)", true},
                            {{10, 0, 0, true, false}, "Windows 10 (10.0.0)", true},
                            {{10, 0, 21999, true, false}, "Windows 10 (10.0.21999)", true},
                            {{10, 0, 22000, true, false}, "Windows 11 (10.0.22000)", true},
                            {{10, 0, 17762, true, true}, "Windows Server 2016 (10.0.17762)", true},
                            {{10, 0, 17763, true, true}, "Windows Server 2019 (10.0.17763)", true},
                            {{10, 0, 20347, true, true}, "Windows Server 2019 (10.0.20347)", true},
                            {{10, 0, 20348, true, true}, "Windows Server 2022 (10.0.20348)", true},
                            {{10, 0, 26099, true, true}, "Windows Server 2022 (10.0.26099)", true},
                            {{10, 0, 26100, true, true}, "Windows Server 2025 (10.0.26100)", true},
                            // Younger than this program: the youngest name there is.
                            {{12, 1, 5, true, false}, "Windows 11 (12.1.5)", true},
                            // Nothing could be asked: no protected program folder is assumed.
                            {{}, "Windows NT (0.0.0)", false},
                            {{3, 11, 0, false, false}, "Windows (3.11.0)", false}};
  for (const SystemRow& row : rows) {
    EXPECT_EQ(OsDescription(row.version), row.description);
    EXPECT_EQ(IsNt6OrLater(row.version), row.nt6) << row.description;
  }
}

}  // namespace
}  // namespace fonklav
