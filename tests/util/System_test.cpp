#include <gtest/gtest.h>

#include "platform/FileSystem.h"
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
  const SystemRow rows[] = {
      {{4, 0, 950, false, false}, "Windows 95 (4.0.950)", false},
      {{4, 10, 2222, false, false}, "Windows 98 (4.10.2222)", false},
      {{4, 90, 3000, false, false}, "Windows Me (4.90.3000)", false},
      {{4, 0, 1381, true, false}, "Windows NT (4.0.1381)", false},
      {{4, 0, 1381, true, true}, "Windows NT Server (4.0.1381)", false},
      {{5, 0, 2195, true, true}, "Windows 2000 Server (5.0.2195)", false},
      {{5, 1, 2600, true, false}, "Windows XP (5.1.2600)", false},
      {{5, 2, 3790, true, true}, "Windows Server 2003 (5.2.3790)", false},
      {{6, 0, 6002, true, false}, "Windows Vista (6.0.6002)", true},
      {{6, 1, 7601, true, false}, "Windows 7 (6.1.7601)", true},
      {{6, 1, 7601, true, true}, "Windows Server 2008 R2 (6.1.7601)", true},
      {{6, 3, 9600, true, false}, "Windows 8.1 (6.3.9600)", true},
      {{10, 0, 19045, true, false}, "Windows 10 (10.0.19045)", true},
      {{10, 0, 21999, true, false}, "Windows 10 (10.0.21999)", true},
      {{10, 0, 22000, true, false}, "Windows 11 (10.0.22000)", true},
      {{10, 0, 14393, true, true}, "Windows Server 2016 (10.0.14393)", true},
      {{10, 0, 17763, true, true}, "Windows Server 2019 (10.0.17763)", true},
      {{10, 0, 26100, true, true}, "Windows Server 2025 (10.0.26100)", true},
      // Younger than this program: the youngest name there is.
      {{12, 1, 5, true, false}, "Windows 11 (12.1.5)", true},
      {{6, 4, 9841, true, false}, "Windows 8.1 (6.4.9841)", true},
      // Nothing could be asked: no protected program folder is assumed.
      {{}, "Windows NT (0.0.0)", false},
      {{3, 11, 0, false, false}, "Windows (3.11.0)", false},
  };
  for (const SystemRow& row : rows) {
    EXPECT_EQ(OsDescription(row.version), row.description);
    EXPECT_EQ(IsNt6OrLater(row.version), row.nt6) << row.description;
  }
}

TEST(FileLock, IsNamedAfterItsFileByWhoeverAsks) {
  const std::string name = FileLockName("C:\\ProgramData\\Größe\\log\\error.log");
  EXPECT_EQ(name, "Global\\FonklavTAPI log c:/programdata/größe/log/error.log");
  EXPECT_EQ(FileLockName("c:\\PROGRAMDATA\\GRÖSSE\\log\\Error.LOG").find("größe"), std::string::npos);
  EXPECT_EQ(FileLockName("c:\\PROGRAMDATA\\GRÖßE\\log\\Error.LOG"), name);
  const std::string deep = "C:" + std::string(1000, '\\') + "log\\";
  EXPECT_LE(FileLockName(deep + "error.log").size(), 260U);
  EXPECT_NE(FileLockName(deep + "error.log"), FileLockName(deep + "trace.log"));
}

}  // namespace
}  // namespace fonklav
