#include <fstream>
#include <set>
#include <sstream>

#include "app/FormTexts.h"
#include "app/Layout.h"
#include "app/Program.h"
#include "diag/clsErrorHandling.h"
#include "tests/config/ConfigSystem.h"
#include "tests/fakes/FakeView.h"

// The language files that are shipped, against the program that asks for their texts.
namespace fonklav::test {
namespace {

using namespace testing;

constexpr const char* kCodes[] = {"49", "44", "33", "39", "31"};

std::string Shipped(const std::string& code) {
  std::ifstream file(FONKLAV_ROOT "/lang/language_" + code + ".ini", std::ios::binary);
  std::stringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

std::vector<std::string> LinesOf(const std::string& bytes) { return Split(bytes, kCrLf); }

/// Starts the program once as it runs and once as it refuses to, and lets it tell of an error and of tracing.
std::set<std::string> KeysTheProgramAsksFor() {
  ConfigSystem system;
  system.File(ConfigSystem::kMainSettings) = "[General]\r\nLanguage=49\r\n";
  system.File("C:\\Rufmon\\base\\language_49.ini") = Shipped("49");
  for (const char* argument : {"/run", "no number"}) {
    system.process.commandLine = argument;
    FakeView view;
    Program program(system.ports);
    EXPECT_EQ(program.Load(view), system.process.commandLine == "/run");
  }
  EXPECT_TRUE(system.Init());
  system.config.languagePrivate.LoadTexts();
  clsErrorHandling log(system.diagnostics, system.config, system.ports);
  system.diagnostics.pending.number = 5;
  log.ErrorLogWithMsgBox("somewhere", {});
  std::set<std::string> keys;
  for (const std::string& asked : system.profile.asked) {
    if (asked.starts_with("Data ")) keys.insert(asked.substr(5));
  }
  return keys;
}

TEST(LanguageFiles, HoldTheKeysThatTheProgramAsksForAndNoOthers) {
  std::set<std::string> asked = KeysTheProgramAsksFor();
  asked.insert({"language", "countryid"});
  for (const char* code : kCodes) {
    std::set<std::string> held;
    for (const std::string& line : LinesOf(Shipped(code))) {
      const auto equals = line.find('=');
      if (line.starts_with(';') || equals == std::string::npos) continue;
      EXPECT_TRUE(held.insert(line.substr(0, equals)).second) << code << " holds this twice: " << line;
      EXPECT_GT(line.size(), equals + 1) << code << " leaves this empty: " << line;
    }
    EXPECT_THAT(held, ContainerEq(asked)) << code;
  }
}

TEST(LanguageFiles, AreWindows1252WithWindowsLineEnds) {
  for (const char* code : kCodes) {
    const std::string bytes = Shipped(code);
    ASSERT_TRUE(bytes.starts_with("[Data]\r\nlanguage=")) << code << ": a mark in front would hide the section";
    EXPECT_TRUE(bytes.ends_with("\r\n")) << code;
    EXPECT_EQ(bytes.find_first_of(std::string("\x81\x8D\x8F\x90\x9D\0\t", 7)), std::string::npos) << code;
    EXPECT_EQ(bytes.find("\xC3"), std::string::npos) << code << " looks like UTF-8";
    for (const std::string& line : LinesOf(bytes)) {
      EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos) << code << ": " << line;
      EXPECT_FALSE(line.ends_with(' ')) << code << " loses a blank that is not quoted: " << line;
      EXPECT_EQ(line.ends_with('"'), line.find("=\"") != std::string::npos) << code << " half quoted: " << line;
    }
  }
}

/// The texts of one language as the program reads them.
struct Translated : ConfigSystem {
  explicit Translated(const std::string& code) {
    File("C:\\Rufmon\\base\\language_" + code + ".ini") = Shipped(code);
    EXPECT_TRUE(Init());
    config.language.LanguageInit(code);
  }
  std::string Text(std::string_view key) { return config.language.LoadLangKey(std::string(key), "missing"); }
};

TEST(LanguageFiles, GermanSaysWhatIsBuiltIn) {
  Translated german("49");
  const auto expectBuiltIn = [&](const TextKey& text) { EXPECT_EQ(german.Text(text.key), text.german); };
  for (const SharedTextRow& row : kSharedTexts) expectBuiltIn(row.text);
  for (const FormTextRow& row : kFormTexts) expectBuiltIn(row.text);
  for (const TextKey& text : kLogMessages) expectBuiltIn(text);
  for (const TextKey& text : {kHeadText, kSettingsText, kLineIdText, kDirectCallText}) expectBuiltIn(text);
  for (const ControlTextRow& row : kControlTexts) {
    if (!row.key.empty()) expectBuiltIn({row.key, row.toolTip ? kCodeToolTip : LayoutOf(row.control).text});
  }
}

TEST(LanguageFiles, AccessKeysAreDistinctInOneWindow) {
  for (const char* code : kCodes) {
    Translated language(code);
    std::set<std::string> letters;
    for (const char* key : {"Button_OK", "Button_Cancel", "TAPIConfig_Button_Test", "TAPIConfig_Button_DeviceInfo"}) {
      const std::string caption = language.Text(key);
      ASSERT_NE(caption.find('&'), std::string::npos) << code << " " << caption;
      letters.insert(FakeFileSystem::Key(caption.substr(caption.find('&') + 1, 1)));
    }
    EXPECT_THAT(letters, SizeIs(4)) << code;
  }
}

}  // namespace
}  // namespace fonklav::test
