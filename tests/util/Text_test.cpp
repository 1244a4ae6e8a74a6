#include "util/Text.h"

#include <gmock/gmock.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <random>

#include "util/CaseFold.h"

namespace fonklav {
namespace {

using namespace testing;

/// What reads as a number decides whether an argument is dialed and whether a setting is a folder.
constexpr std::tuple<const char*, bool, bool> kNumbers[] = {
    {"0", true, true},          {"0301234567", true, true}, {" 12 ", true, true},       {"+49", true, true},
    {"-1", true, true},         {"1-", true, true},         {"1+", true, true},         {"1.234,5", true, false},
    {"1,234.5", false, true},   {"1234,5", true, true},     {",5", true, false},        {".5", false, true},
    {"5,", true, true},         {"1,2,3", false, true},     {"1.2.3", true, false},     {"00", true, true},
    {"", false, false},         {" ", false, false},        {"-", false, false},        {"+-1", false, false},
    {"-1-", false, false},      {"--1", false, false},      {"- 1", false, false},      {"1 2", false, false},
    {"12a", false, false},      {"a12", false, false},      {"1e5", false, false},      {"0x1F", false, false},
    {"4+9", false, false},      {"(030)", false, false},    {"030/1234", false, false}, {"1,2.3", false, true},
    {"\t1", false, false},      {"1\n", false, false},      {",", false, false},        {"\xC3\xA4", false, false},
    {"C:\\Daten", false, false}};

TEST(IsNumeric, GoesByTheLocale) {
  const NumberSeparators german{",", "."};
  const NumberSeparators english{".", ","};
  for (const auto& [text, inGerman, inEnglish] : kNumbers) {
    EXPECT_EQ(IsNumeric(text, german), inGerman) << '"' << text << "\" in German";
    EXPECT_EQ(IsNumeric(text, english), inEnglish) << '"' << text << "\" in English";
  }
}

TEST(IsNumeric, SeparatorsOfSeveralBytesAndNone) {
  const std::string narrow = "\xE2\x80\xAF";  // the narrow no-break space
  const NumberSeparators french{",", narrow};
  EXPECT_TRUE(IsNumeric("1" + narrow + "234,5", french));
  EXPECT_FALSE(IsNumeric("1" + narrow.substr(0, 2) + "234", french));
  EXPECT_TRUE(IsNumeric("1234", NumberSeparators{"", ""}));
  EXPECT_FALSE(IsNumeric("1.5", NumberSeparators{"", ""}));
}

TEST(Text, Pieces) {
  EXPECT_THAT(Split("a||b|", "|"), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(Split("", "|"), ElementsAre(""));
  EXPECT_EQ(ReplaceAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(ReplaceAll("<CR><CR>x", "<CR>", "<CR><CR>"), "<CR><CR><CR><CR>x");
  EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
  EXPECT_EQ(WithoutNul(std::string_view("\0a\0b\0", 5)), "ab");
  EXPECT_EQ(TrimBlanks("  a b\t "), "a b\t");
  EXPECT_EQ(TrimBlanks("   "), "");
  EXPECT_EQ(CharacterCount("Größe €"), 7U);
}

TEST(FoldCase, LettersOfOurUsersAndNothingElse) {
  EXPECT_EQ(FoldCase("ÄÖÜ Straße ÉÇ"), "äöü straße éç");
  // The first and the last of each range, and what stands beside them.
  EXPECT_EQ(FoldCase("ÀÞ ĀĶ ĹŇ ŊŶ ŸŹŽ ΑΩ ЀЏ АЯ"), "àþ āķ ĺň ŋŷ ÿźž αω ѐџ ая");
  EXPECT_EQ(FoldCase("@[`{ ¿×ß÷ ĸŉſƀ ΐΪ аѐ 1€"), "@[`{ ¿×ß÷ ĸŉſƀ ΐΪ аѐ 1€");
  // Bytes that are no UTF-8 must survive: keys come from files.
  EXPECT_EQ(FoldCase("\xC3"), "\xC3");
  EXPECT_EQ(FoldCase("\xFF\xC3\x41\x80"), "\xFF\xC3\x61\x80");
  for (char32_t c = 0; c < 0x10000; ++c) {
    const char16_t once = FoldCase(static_cast<char16_t>(c));
    ASSERT_EQ(FoldCase(once), once) << "folding is not settled for " << static_cast<std::uint32_t>(c);
    ASSERT_EQ(c < 0x80, once < 0x80);
    ASSERT_EQ(c < 0x800, once < 0x800) << "a folded letter must take as many bytes";
  }
}

TEST(ProcessNames, TheArgumentIsWhatStandsBehindTheProgramName) {
  const std::vector<std::pair<std::string_view, std::string_view>> rows{
      {R"(C:\Rufmon\FonklavTAPI.exe /run)", "/run"},
      {R"("C:\Program Files\Rufmon\FonklavTAPI.exe" /sett)", "/sett"},
      {R"("C:\Program Files\Rufmon\FonklavTAPI.exe"/sett)", "/sett"},
      {"FonklavTAPI.exe    +49 (30) 123  ", "+49 (30) 123  "},
      {"FonklavTAPI.exe\t/run", "/run"},
      {"FonklavTAPI.exe \"/run\"", "\"/run\""},
      {"FonklavTAPI.exe", ""},
      {"FonklavTAPI.exe   ", ""},
      {"\"FonklavTAPI.exe", ""},
      {"", ""}};
  for (const auto& [line, arguments] : rows) EXPECT_EQ(ArgumentsOf(line), arguments);
}

TEST(ProcessNames, FolderAndNameOfTheExecutable) {
  constexpr std::tuple<std::string_view, std::string_view, std::string_view> rows[] = {
      {R"(C:\Program Files\Rufmon\FonklavTAPI.exe)", R"(C:\Program Files\Rufmon)", "FonklavTAPI"},
      {R"(C:\FonklavTAPI.exe)", R"(C:\)", "FonklavTAPI"},
      {R"(\\server\share\tools.v2\Fonklav.TAPI.exe)", R"(\\server\share\tools.v2)", "Fonklav.TAPI"},
      {R"(D:\tools.v2\FonklavTAPI)", R"(D:\tools.v2)", "FonklavTAPI"}};
  for (const auto& [path, folder, name] : rows) {
    EXPECT_EQ(FolderOf(path), folder);
    EXPECT_EQ(NameOf(path), name);
  }
}

}  // namespace
// How the library itself writes a number.
template <typename Number, typename... Format>
std::string ToChars(Number number, Format... format) {
  std::array<char, 512> text{};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number, format...).ptr};
}

TEST(Text, NumbersAreWrittenAsTheLibraryWouldWriteThem) {
  for (const float number : {0.0F, -0.0F, 600.0F, 607.5F, -0.1F, 16777216.0F, 2147483648.0F, 3.4e38F, 1e-45F}) {
    EXPECT_EQ(DecimalText(number), ToChars(number, std::chars_format::fixed));
  }
  for (const double number :
       {0.0, -1.5, 1e100, 99999.0, 100000.0, 0.001, 0.0001, 1e21, 5e-324, 1.7976931348623157e308}) {
    EXPECT_EQ(ShortestText(number), ToChars(number));
  }
  std::mt19937_64 random(1);  // NOLINT(cert-msc51-cpp): the same values in every run
  for (int count = 0; count < 20'000; ++count) {
    const auto position = static_cast<float>(static_cast<std::int32_t>(random())) / 1024;
    ASSERT_EQ(DecimalText(position), ToChars(position, std::chars_format::fixed));
    const auto any = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    ASSERT_TRUE(std::isnan(any) || DecimalText(any) == ToChars(any, std::chars_format::fixed)) << any;
    const auto wide = std::bit_cast<double>(random());
    ASSERT_TRUE(std::isnan(wide) || ShortestText(wide) == ToChars(wide)) << wide;
  }
  for (int exponent = -32; exponent < 128; ++exponent) {
    const float power = std::ldexp(1.0F, exponent);
    ASSERT_EQ(DecimalText(power), ToChars(power, std::chars_format::fixed)) << exponent;
  }
}

}  // namespace fonklav
