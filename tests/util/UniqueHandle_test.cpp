#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "util/UniqueHandle.h"

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

}  // namespace
}  // namespace fonklav::test
