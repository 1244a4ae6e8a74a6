#include <gmock/gmock.h>

#include "util/DateTime.h"
#include "util/OsDescription.h"

namespace fonklav {
namespace {

using testing::StartsWith;

TEST(DateTime, StampsAreOfOneWidth) {
  EXPECT_EQ(GetFormatedDateByString({2015, 3, 7, 9, 5, 31}, "/", true), "2015/03/07");
  EXPECT_EQ(GetFormatedDateByString({2015, 12, 31, 0, 0, 0}, ".", false), "31.12.2015");
  EXPECT_EQ(GetFormatedDateByString({2015, 3, 7, 0, 0, 0}, "", true), "20150307");
  EXPECT_EQ(GetFormatedTime({2015, 3, 7, 9, 5, 1}), "09:05:01");
  EXPECT_EQ(GetFormatedTime({2015, 3, 7, 23, 59, 59}), "23:59:59");
}

struct SystemRow {
  OsVersion version;
  const char* name;
};

TEST(OsDescription, NamesTheEditionAndTellsTheNt6Family) {
  // The last is younger than this program: the youngest name there is.
  const SystemRow rows[] = {
      {{4, 0, 950, false, false}, "Windows 95"},
      {{4, 10, 0, false, true}, "Windows 98"},
      {{4, 90, 0, false, false}, "Windows Me"},
      {{4, 89, 9, false, false}, "Windows 98"},
      {{4, 0, 1381, true, false}, "Windows NT"},
      {{4, 9, 9999, true, true}, "Windows NT Server"},
      {{5, 0, 0, true, false}, "Windows 2000"},
      {{5, 0, 0, true, true}, "Windows 2000 Server"},
      {{5, 1, 0, true, false}, "Windows XP"},
      {{5, 1, 9, true, true}, "Windows 2000 Server"},
      {{5, 2, 0, true, false}, "Windows XP x64"},
      {{5, 2, 0, true, true}, "Windows Server 2003"},
      {{6, 0, 0, true, false}, "Windows Vista"},
      {{6, 0, 0, true, true}, "Windows Server 2008"},
      {{6, 1, 0, true, false}, "Windows 7"},
      {{6, 1, 0, true, true}, "Windows Server 2008 R2"},
      {{6, 2, 0, true, false}, "Windows 8"},
      {{6, 2, 0, true, true}, "Windows Server 2012"},
      {{6, 3, 0, true, false}, "Windows 8.1"},
      {{6, 3, 0, true, true}, "Windows Server 2012 R2"},
      {{10, 0, 21999, true, false}, "Windows 10"},
      {{10, 0, 22000, true, false}, "Windows 11"},
      {{10, 0, 17762, true, true}, "Windows Server 2016"},
      {{10, 0, 17763, true, true}, "Windows Server 2019"},
      {{10, 0, 20347, true, true}, "Windows Server 2019"},
      {{10, 0, 20348, true, true}, "Windows Server 2022"},
      {{10, 0, 26099, true, true}, "Windows Server 2022"},
      {{10, 0, 26100, true, true}, "Windows Server 2025"},
      {{3, 11, 0, false, false}, "Windows"},
      {{}, "Windows NT"},
      {{12, 1, 5, true, false}, "Windows 11"},
  };
  for (const auto& [version, name] : rows) {
    EXPECT_THAT(OsDescription(version), StartsWith(std::string(name) + " ("));
  }
  EXPECT_EQ(OsDescription({10, 0, 19045, true, false}), "Windows 10 (10.0.19045)");
  EXPECT_TRUE(IsNt6OrLater({6, 0, 0, true, false}));
  EXPECT_FALSE(IsNt6OrLater({5, 2, 9999, true, true}) || IsNt6OrLater({6, 0, 0, false, false}));
  EXPECT_FALSE(IsNt6OrLater({})) << "nothing could be asked: no protected program folder is assumed";
}

}  // namespace
}  // namespace fonklav
