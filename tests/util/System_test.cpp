#include <gmock/gmock.h>

#include <array>
#include <span>
#include <utility>

#include "util/DateTime.h"
#include "util/OsDescription.h"
#include "util/UniqueHandle.h"

namespace fonklav {
namespace {

using namespace testing;

TEST(DateTime, StampsAreOfOneWidth) {
  EXPECT_EQ(GetFormatedDateByString({2015, 3, 7, 9, 5, 31}, "/", true), "2015/03/07");
  EXPECT_EQ(GetFormatedDateByString({2015, 12, 31, 0, 0, 0}, ".", false), "31.12.2015");
  EXPECT_EQ(GetFormatedDateByString({2015, 3, 7, 0, 0, 0}, "", true), "20150307");
  EXPECT_EQ(GetFormatedTime({2015, 3, 7, 9, 5, 1}), "09:05:01");
  EXPECT_EQ(GetFormatedTime({2015, 3, 7, 23, 59, 59}), "23:59:59");
}

using SystemRow = std::tuple<unsigned, unsigned, unsigned, const char*>;

TEST(OsDescription, NamesTheEditionAndTellsTheNt6Family) {
  const auto expect = [](bool ntFamily, bool server, std::span<const SystemRow> rows) {
    for (const auto& [major, minor, build, name] : rows) {
      EXPECT_THAT(OsDescription({major, minor, build, ntFamily, server}), StartsWith(std::string(name) + " ("));
    }
  };
  const SystemRow home[] = {
      {3, 11, 0, "Windows"}, {4, 0, 950, "Windows 95"}, {4, 89, 9, "Windows 98"}, {4, 90, 0, "Windows Me"}};
  // The last client is younger than this program: the youngest name there is.
  const SystemRow clients[] = {{0, 0, 0, "Windows NT"},  {4, 0, 1381, "Windows NT"},   {5, 0, 0, "Windows 2000"},
                               {5, 1, 0, "Windows XP"},  {5, 2, 0, "Windows XP x64"},  {6, 0, 0, "Windows Vista"},
                               {6, 1, 0, "Windows 7"},   {6, 2, 0, "Windows 8"},       {6, 3, 0, "Windows 8.1"},
                               {10, 0, 0, "Windows 10"}, {10, 0, 21999, "Windows 10"}, {10, 0, 22000, "Windows 11"},
                               {12, 1, 5, "Windows 11"}};
  const SystemRow servers[] = {{4, 9, 9999, "Windows NT Server"},     {5, 0, 0, "Windows 2000 Server"},
                               {5, 1, 9, "Windows 2000 Server"},      {5, 2, 0, "Windows Server 2003"},
                               {6, 0, 0, "Windows Server 2008"},      {6, 1, 0, "Windows Server 2008 R2"},
                               {6, 2, 0, "Windows Server 2012"},      {6, 3, 0, "Windows Server 2012 R2"},
                               {10, 0, 0, "Windows Server 2016"},     {10, 0, 17762, "Windows Server 2016"},
                               {10, 0, 17763, "Windows Server 2019"}, {10, 0, 20347, "Windows Server 2019"},
                               {10, 0, 20348, "Windows Server 2022"}, {10, 0, 26099, "Windows Server 2022"},
                               {10, 0, 26100, "Windows Server 2025"}};
  expect(false, false, home);
  expect(true, false, clients);
  expect(true, true, servers);
  EXPECT_EQ(OsDescription({4, 10, 0, false, true}), "Windows 98 (4.10.0)");
  EXPECT_EQ(OsDescription({10, 0, 19045, true, false}), "Windows 10 (10.0.19045)");
  EXPECT_TRUE(IsNt6OrLater({6, 0, 0, true, false}));
  EXPECT_FALSE(IsNt6OrLater({5, 2, 9999, true, true}) || IsNt6OrLater({6, 0, 0, false, false}));
  EXPECT_EQ(OsDescription({}), "Windows NT (0.0.0)");
  EXPECT_FALSE(IsNt6OrLater({})) << "nothing could be asked: no protected program folder is assumed";
}

/// A handle to a count of how often it was closed.
struct CountHandle {
  using Type = int*;
  static Type None() noexcept { return nullptr; }
  static void Close(int* closed) noexcept { ++*closed; }
};

using UniqueCount = UniqueHandle<CountHandle>;

TEST(UniqueHandle, EachHandleIsClosedOnce) {
  std::array closed{0, 0, 0};
  {
    UniqueCount first{&closed[0]};
    UniqueCount second{&closed[1]};
    UniqueCount moved{std::move(first)};
    second = std::move(moved);
    EXPECT_THAT(closed, ElementsAre(0, 1, 0)) << "what was held goes when something else is taken over";
    auto& same = second;
    second = std::move(same);
    second.Reset(&closed[0]);
    EXPECT_THAT(closed, ElementsAre(0, 1, 0)) << "taking over what is held already closes nothing";
    UniqueCount given{&closed[2]};
    EXPECT_EQ(given.Release(), &closed[2]);
    EXPECT_FALSE(given);
  }
  EXPECT_THAT(closed, ElementsAre(1, 1, 0));
}

}  // namespace
}  // namespace fonklav
