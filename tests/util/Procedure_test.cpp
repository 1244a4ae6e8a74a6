#include "util/Procedure.h"

#include <gmock/gmock.h>

#include <new>
#include <stdexcept>

#include "tests/fakes/RecordingLog.h"
#include "util/RunTimeError.h"

namespace fonklav {
namespace {

using namespace testing;

TEST(Procedure, ReturnsWhatItHoldsWhenItFails) {
  test::Recorded watched;
  const int held = Procedure(watched.diagnostics, "clsX.Half", {}, 0, [](int& result) {
    result = 41;
    if (result > 0) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    result = 42;
  });
  EXPECT_EQ(held, 41);
  EXPECT_THAT(watched.log->errors, ElementsAre("clsX.Half 9 Subscript out of range"));
}

TEST(Procedure, WhateverIsThrownEndsInTheLog) {
  test::Recorded watched;
  const auto fail = [&](auto error) { Procedure(watched.diagnostics, "modY.Do", {}, [&] { throw error; }); };
  fail(RunTimeError(ErrorNumber::FileNotFound));
  fail(RunTimeError(ErrorNumber::PermissionDenied, "Held by another program"));
  fail(RunTimeError(static_cast<ErrorNumber>(31037)));
  fail(std::bad_alloc());
  fail(std::runtime_error("library"));
  fail(7);
  EXPECT_THAT(watched.log->errors,
              ElementsAre("modY.Do 53 File not found", "modY.Do 70 Held by another program",
                          "modY.Do 31037 Application-defined or object-defined error", "modY.Do 7 Out of memory",
                          "modY.Do 1000 library", "modY.Do 1000 Unknown exception"));
}

TEST(Procedure, BeforeStartUpHasComeSoFar) {
  test::Recorded unarmed(false);
  unarmed.diagnostics.log = unarmed.MakeLog();
  EXPECT_THROW(Procedure(unarmed.diagnostics, "x", {}, [] { throw RunTimeError(ErrorNumber::Overflow); }),
               RunTimeError);
  EXPECT_THAT(unarmed.log->errors, IsEmpty());

  test::Recorded withoutLog;
  withoutLog.diagnostics.log.reset();
  withoutLog.diagnostics.traceMode = true;
  Procedure(withoutLog.diagnostics, "x", {}, [] { throw RunTimeError(ErrorNumber::Overflow); });
  EXPECT_EQ(withoutLog.diagnostics.pending.number, 0) << "an error that nobody reads must not wait for the next";
}

}  // namespace
}  // namespace fonklav
