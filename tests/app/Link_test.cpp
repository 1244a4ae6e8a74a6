#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/Dialer.h"

// The link as the main program can make it go wrong: refusals, silence, ends of every kind.
namespace fonklav::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kAnswered =
    "device name=ISDN-Line1 version=0x00020000\nlocation local=\"\"\ncall reply after=20\n"
    "call state CONNECTED after=80\ndrop reply after=10\ndrop state IDLE after=20\n";

std::unique_ptr<Dialer> Linked() {
  auto dialer = std::make_unique<Dialer>(kAnswered);
  dialer->StoreLine("ISDN-Line1");
  dialer->Start("/run");
  dialer->TakeReports();
  return dialer;
}

/// The flag shows in what closing the window does.
bool StillLinked(Dialer& dialer) {
  dialer.Input().CloseRequested(UnloadMode::UserClosed);
  return dialer.View().unloads == 0;
}

TEST(Link, IsOpenedOnceForTheItem) {
  const auto dialer = Linked();
  EXPECT_THAT(dialer->dde.initiated, ElementsAre("Rufmon Fonklav|RufmonFonklav"));
  EXPECT_THAT(dialer->dde.advised, ElementsAre("txtDDE"));
  EXPECT_TRUE(StillLinked(*dialer));
}

struct AnswerRow {
  const char* name;
  std::uint16_t status;
  bool linked;
};

class Answer : public testing::TestWithParam<AnswerRow> {};

TEST_P(Answer, DecidesWhetherTheLinkStands) {
  const auto dialer = Linked();
  dialer->dde.answersAtOnce = false;
  dialer->Command("debug|1");
  dialer->dde.Sink().OnAck(GetParam().status, dialer->dde.posted.back());
  EXPECT_THAT(dialer->dde.held, IsEmpty());
  dialer->Command("debug|0");
  EXPECT_EQ(dialer->TakeReports().size(), 2U) << "later reports still go out";
  EXPECT_EQ(StillLinked(*dialer), GetParam().linked);
}

INSTANTIATE_TEST_SUITE_P(Rows, Answer,
                         testing::Values(AnswerRow{"positive", 0x8000, true}, AnswerRow{"busy", 0x4000, true},
                                         AnswerRow{"negative", 0, false}, AnswerRow{"negativeWithCode", 0xFF, false}),
                         [](const auto& row) { return row.param.name; });

TEST(Link, SilenceForFiveSecondsIsAFailedSendAndNothingMore) {
  const auto dialer = Linked();
  dialer->dde.answersAtOnce = false;
  dialer->Command("debug|1");
  const auto block = dialer->dde.posted.back();
  dialer->Pump(4999);
  EXPECT_EQ(dialer->dde.held.size(), 1U);
  dialer->Pump(1);
  EXPECT_EQ(dialer->dde.held.size(), 1U) << "the memory waits for the late answer";
  EXPECT_EQ(dialer->View().unloads, 0);
  dialer->dde.Sink().OnAck(kDdeAckPositive, block);
  EXPECT_THAT(dialer->dde.held, IsEmpty());
  EXPECT_FALSE(dialer->dde.doubleFree);
  EXPECT_FALSE(StillLinked(*dialer));
}

TEST(Link, AnswersAreMatchedByTheirMemoryAndStrangersPass) {
  const auto dialer = Linked();
  dialer->dde.answersAtOnce = false;
  dialer->Command("debug|1");
  dialer->Command("debug|0");
  const auto posted = dialer->dde.posted;
  dialer->dde.Sink().OnAck(0, 77);  // nobody's
  dialer->dde.Sink().OnAck(kDdeAckPositive, posted[posted.size() - 1]);
  dialer->dde.Sink().OnAck(kDdeAckPositive, posted[posted.size() - 1]);  // a second time
  dialer->dde.Sink().OnAck(kDdeAckPositive, posted[posted.size() - 2]);
  EXPECT_THAT(dialer->dde.held, IsEmpty());
  EXPECT_FALSE(dialer->dde.doubleFree);
  EXPECT_TRUE(StillLinked(*dialer));
}

TEST(Link, APostThatFailsLowersTheFlagAndTheHandlerGoesOn) {
  const auto dialer = Linked();
  dialer->dde.postSucceeds = false;
  dialer->Command("cmd|call|0301234567");
  EXPECT_THAT(dialer->sim.TextsOf("lineMakeCall"), ElementsAre("0301234567"));
  EXPECT_FALSE(StillLinked(*dialer));
}

struct EndRow {
  const char* name;
  bool terminated;  ///< by a message; otherwise the partner's window is gone
  bool failedBefore;
  bool callUp;
};

class End : public testing::TestWithParam<EndRow> {};

TEST_P(End, OfTheConversationEndsTheProgramWithTheLineGivenBack) {
  const auto dialer = Linked();
  if (GetParam().callUp) {
    dialer->Command("cmd|call|0301234567");
    dialer->Pump(200);
    EXPECT_EQ(dialer->sim.LiveCalls(), 1U);
  }
  dialer->dde.answersAtOnce = false;
  if (GetParam().failedBefore) {
    dialer->dde.postSucceeds = false;
    dialer->Command("debug|1");
  } else {
    dialer->Command("debug|1");  // its answer will never come
  }
  if (GetParam().terminated) {
    dialer->dde.Sink().OnTerminate();
  } else {
    dialer->dde.alive = false;
    dialer->Pump(250);
  }
  EXPECT_EQ(dialer->View().unloads, 1);
  EXPECT_EQ(dialer->dde.terminates, GetParam().terminated ? 1 : 0);
  EXPECT_EQ(dialer->sim.Registrations(), 0U);
  EXPECT_EQ(dialer->sim.OpenLines(), 0U);
  EXPECT_EQ(dialer->sim.LiveCalls(), 0U);
  EXPECT_THAT(dialer->dde.held, IsEmpty());
  dialer->dde.Sink().OnTerminate();
  dialer->Command("cmd|call|1");
  EXPECT_EQ(dialer->View().unloads, 1) << "what comes late finds nobody";
}

INSTANTIATE_TEST_SUITE_P(Rows, End,
                         testing::Values(EndRow{"terminated", true, false, false},
                                         EndRow{"terminatedDuringACall", true, false, true},
                                         EndRow{"terminatedAfterAFailedSend", true, true, false},
                                         EndRow{"killed", false, false, false},
                                         EndRow{"killedDuringACall", false, false, true},
                                         EndRow{"killedAfterAFailedSend", false, true, true}),
                         [](const auto& row) { return row.param.name; });

TEST(Link, TheProgramsOwnEndSaysGoodbye) {
  const auto dialer = Linked();
  dialer->dde.answersAtOnce = false;
  dialer->Command("debug|1");
  dialer->Input().CloseRequested(UnloadMode::SessionEnds);
  EXPECT_EQ(dialer->View().unloads, 1);
  dialer->program.reset();
  EXPECT_EQ(dialer->dde.terminates, 1);
  EXPECT_THAT(dialer->dde.held, IsEmpty());
}

}  // namespace
}  // namespace fonklav::test
