#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "platform/win32/ProcessNames.h"
#include "platform/win32/UniqueHandle.h"

// The parts of the Windows side that ask nothing of Windows.
namespace fonklav::test {
namespace {

struct Ticket {
  int number{0};
  std::vector<int>* closed{nullptr};
  bool operator==(const Ticket& other) const { return number == other.number; }
};

struct TicketHandle {
  using Type = Ticket;
  static Type None() noexcept { return {}; }
  static void Close(Ticket ticket) noexcept { ticket.closed->push_back(ticket.number); }
};

using UniqueTicket = UniqueHandle<TicketHandle>;

TEST(UniqueHandle, EachHandleIsClosedOnce) {
  std::vector<int> closed;
  {
    UniqueTicket first{Ticket{1, &closed}};
    UniqueTicket second{Ticket{2, &closed}};
    UniqueTicket moved{std::move(first)};
    second = std::move(moved);
    EXPECT_EQ(closed, (std::vector{2})) << "what was held goes when something else is taken over";
    auto& same = second;
    second = std::move(same);
    second.Reset(Ticket{1, &closed});
    EXPECT_EQ(closed, (std::vector{2})) << "taking over what is held already closes nothing";
    UniqueTicket given{Ticket{3, &closed}};
    EXPECT_EQ(given.Release().number, 3);
    EXPECT_FALSE(given);
  }
  EXPECT_EQ(closed, (std::vector{2, 1}));
}

TEST(ProcessNames, TheArgumentIsWhatStandsBehindTheProgramName) {
  const std::vector<std::pair<std::wstring_view, std::wstring_view>> rows{
      {LR"(C:\Rufmon\FonklavTAPI.exe /run)", L"/run"},
      {LR"("C:\Program Files\Rufmon\FonklavTAPI.exe" /sett)", L"/sett"},
      {LR"("C:\Program Files\Rufmon\FonklavTAPI.exe"/sett)", L"/sett"},
      {L"FonklavTAPI.exe    +49 (30) 123  ", L"+49 (30) 123  "},
      {L"FonklavTAPI.exe\t/run", L"/run"},
      {L"FonklavTAPI.exe \"/run\"", L"\"/run\""},
      {L"FonklavTAPI.exe", L""},
      {L"FonklavTAPI.exe   ", L""},
      {L"\"FonklavTAPI.exe", L""},
      {L"", L""},
  };
  for (const auto& [line, arguments] : rows) EXPECT_EQ(ArgumentsOf(line), arguments);
}

TEST(ProcessNames, FolderAndNameOfTheExecutable) {
  struct Row {
    std::wstring_view path;
    std::wstring_view folder;
    std::wstring_view name;
  };
  constexpr std::array rows{
      Row{LR"(C:\Program Files\Rufmon\FonklavTAPI.exe)", LR"(C:\Program Files\Rufmon)", L"FonklavTAPI"},
      Row{LR"(C:\FonklavTAPI.exe)", LR"(C:\)", L"FonklavTAPI"},
      Row{LR"(\\server\share\tools.v2\Fonklav.TAPI.exe)", LR"(\\server\share\tools.v2)", L"Fonklav.TAPI"},
      Row{LR"(D:\tools.v2\FonklavTAPI)", LR"(D:\tools.v2)", L"FonklavTAPI"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(FolderOf(row.path), row.folder);
    EXPECT_EQ(NameOf(row.path), row.name);
  }
}

}  // namespace
}  // namespace fonklav::test
