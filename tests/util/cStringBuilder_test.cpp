#include "util/cStringBuilder.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/fakes/RecordingLog.h"
#include "util/RunTimeError.h"

namespace fonklav {
namespace {

struct Built : test::Recorded {
  cStringBuilder builder{diagnostics};
};

/// The number of the error that an action raises, for an error that names the action's own line.
int ErrorOf(const std::function<void()>& action, int line = __builtin_LINE()) {
  try {
    action();
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Line(), line);
    return error.Number();
  }
  return 0;
}

TEST(StringBuilder, ReservesInWholeChunks) {
  Built text;
  EXPECT_EQ(text.builder.Capacity(), 0);
  EXPECT_EQ(text.builder.ChunkSize(), 8192);
  EXPECT_EQ(text.builder.ToString(), u"");
  text.builder.Append(u"ab");
  EXPECT_EQ(text.builder.Length(), 2);
  EXPECT_EQ(text.builder.Capacity(), 8192);
  text.builder.ChunkSize(10);
  text.builder.Append(std::u16string(8190, u'x'));
  EXPECT_EQ(text.builder.Capacity(), 8192) << "it fits";
  text.builder.AppendLine();
  EXPECT_EQ(text.builder.Capacity(), 8202);
  text.builder.Append(std::u16string(30, u'y'));
  EXPECT_EQ(text.builder.Capacity(), 8232) << "as many chunks as needed";
  text.builder.Clear();
  EXPECT_EQ(text.builder.Length(), 0);
  EXPECT_EQ(text.builder.Capacity(), 8232);
  text.builder.HeapMinimize();
  EXPECT_EQ(text.builder.Capacity(), 2) << "whole chunks are given back, until no more than one is free";
  text.builder.ChunkSize(0x7FFFFFFF);
  text.builder.Append(u"abc");
  EXPECT_EQ(text.builder.Length(), 0) << "no more than a position can tell";
  EXPECT_EQ(text.log->errors, std::vector<std::string>{"cStringBuilder.Append 7 Out of memory"});
}

TEST(StringBuilder, PositionsOutsideAreError9ForTheCaller) {
  Built text;
  text.builder.Append(u"abc");
  text.builder.Insert(3, u"d");
  for (const int at : {5, -1}) EXPECT_EQ(ErrorOf([&] { text.builder.Insert(at, u"x"); }), 9) << at;
  for (const auto& range : {std::pair{5, 0}, {2, 3}, {2, -1}, {4, 0x7FFFFFFF}}) {
    EXPECT_EQ(ErrorOf([&] { text.builder.Remove(range.first, range.second); }), 9) << testing::PrintToString(range);
  }
  EXPECT_EQ(ErrorOf([&] { text.builder.ChunkSize(0); }), 380);
  text.builder.ChunkSize(1);
  text.builder.Remove(4, 0);
  EXPECT_EQ(text.builder.ToString(), u"abcd");
  EXPECT_TRUE(text.log->errors.empty());
}

TEST(StringBuilder, FindsWhatBeginsBeforeTheLastCharacter) {
  constexpr auto kBinary = TextCompare::Binary;
  constexpr auto kText = TextCompare::Text;
  const std::tuple<const char16_t*, std::int32_t, TextCompare, std::int32_t> rows[] = {
      {u"abcÄabc", 0, kBinary, 1}, {u"a", 0, kBinary, 1},   {u"abc", 2, kBinary, 5}, {u"c", 4, kBinary, 0},
      {u"Ä", 1, kBinary, 4},       {u"ä", 1, kBinary, 0},   {u"ä", 1, kText, 4},     {u"ä", 0, kText, 0},
      {u"x", 0, kBinary, 0},       {u"bc ", 2, kBinary, 6}, {u" ", 0, kBinary, 0},   {u"a", 6, kBinary, 0},
      {u"a", 99999, kBinary, 0},   {u"", 0, kBinary, 1},    {u"", 3, kBinary, 3},    {u"", 7, kBinary, 0}};
  Built text;
  EXPECT_EQ(text.builder.Find(u""), 0);
  text.builder.Append(u"abcÄabc");
  for (const auto& [what, start, compare, position] : rows) {
    EXPECT_EQ(text.builder.Find(what, start, compare), position) << testing::PrintToString(what) << " from " << start;
  }
}

/// A million random steps on the builder and on a plain string.
TEST(StringBuilder, AgreesWithAPlainStringOverAMillionOperations) {
  Built text;
  cStringBuilder& builder = text.builder;
  builder.ChunkSize(64);
  std::u16string model;
  std::mt19937 random(2015);
  const std::u16string alphabet = u"abÄß \r\n€x";
  for (int step = 0; step < 1'000'000; ++step) {
    const std::u16string piece(random() % 24, alphabet[random() % alphabet.size()]);
    const auto at = random() % (model.size() + 1);
    switch (random() % 6) {
      case 0:
        builder.Append(piece);
        model += piece;
        break;
      case 1:
        builder.AppendLine(piece);
        model.append(piece).append(u"\r\n");
        break;
      case 2:
        builder.Insert(static_cast<std::int32_t>(at), piece);
        model.insert(at, piece);
        break;
      case 3: {
        const auto count = std::min<std::size_t>(random() % 32, model.size() - at);
        builder.Remove(static_cast<std::int32_t>(at), static_cast<std::int32_t>(count));
        model.erase(at, count);
        break;
      }
      case 4: {
        // The model's text with blanks behind it is what the builder searches.
        const auto found = (model + std::u16string(64, u' ')).find(piece.substr(0, 3), at);
        const bool counts = found != std::u16string::npos && found + 1 < model.size();
        ASSERT_EQ(builder.Find(piece.substr(0, 3), static_cast<std::int32_t>(at) + 1),
                  counts ? static_cast<std::int32_t>(found) + 1 : 0);
        break;
      }
      default:
        builder.HeapMinimize();
        if (random() % 64 != 0) break;
        builder.Clear();
        model.clear();
    }
    ASSERT_EQ(builder.Length(), static_cast<std::int32_t>(model.size()));
    ASSERT_GE(builder.Capacity(), builder.Length());
    if (step % 16 != 0) continue;
    ASSERT_EQ(builder.ToString(), model) << "after step " << step;
  }
}

}  // namespace
}  // namespace fonklav
