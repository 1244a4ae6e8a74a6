#include "Version.h"
#include "tests/config/ConfigSystem.h"

namespace fonklav::test {
namespace {

using namespace testing;

constexpr const char* kEnglish = "C:\\Rufmon\\base\\language_44.ini";
constexpr const char* kTexts =
    "[Data]\r\nlanguage=English\r\ncountryid=44\r\nCall=Dial\r\nEmpty=\r\nTwo=one<CR>two<TAB>three<cr>\r\n"
    "Umlaut=\xDC\x62\x65r\r\nQuoted=\"Test \"\r\n";

struct LanguageSystem : ConfigSystem {
  explicit LanguageSystem(bool checkMode = false) : ConfigSystem(checkMode) {
    File(kEnglish) = kTexts;
    EXPECT_TRUE(Init());
  }
  std::string Text(const std::string& key, const std::string& text) { return config.language.LoadLangKey(key, text); }
};

TEST(Language, ComesFromTheSuitesSettings) {
  LanguageSystem system;
  system.File(ConfigSystem::kMainSettings) = "[General]\r\nLanguage=44\r\n";
  system.config.languagePrivate.LoadTexts();
  EXPECT_EQ(system.config.state.languageFile, "\\base\\language_44.ini");
  EXPECT_EQ(system.Text("Call", "Wählen"), "Dial");
  EXPECT_EQ(system.Text("Umlaut", ""), "Über");
  EXPECT_EQ(system.Text("Quoted", ""), "Test ");
  system.File(ConfigSystem::kMainSettings) = "[General]\r\nLanguage=\r\n";
  system.config.language.LanguageInit("");
  EXPECT_EQ(system.config.state.languageCode, "44") << "an empty setting changes nothing";
}

TEST(Language, WithoutOneEverythingIsGerman) {
  LanguageSystem system;
  system.config.languagePrivate.LoadTexts();
  EXPECT_EQ(system.config.state.languageFile, "\\base\\language_.ini");
  EXPECT_TRUE(system.config.state.languageFileMissing);
  EXPECT_EQ(system.Text("Call", "Wählen"), "Wählen");
  EXPECT_EQ(system.config.state.texts.removeFileExtByRename, "Entfernen Sie die Endung  \".bak\" durch Umbenennen!");
  EXPECT_THAT(system.log->errors, IsEmpty());
}

TEST(Language, MissingAndEmptyTextsAreGermanAndEscapesCount) {
  LanguageSystem system;
  system.config.language.LanguageInit("44");
  EXPECT_EQ(system.Text("Missing", "Fehlt"), "Fehlt");
  EXPECT_EQ(system.Text("Empty", "Leer<CR>!"), "Leer\r\n!");
  EXPECT_EQ(system.Text("Two", ""), "one\r\ntwo\tthree<cr>");
}

TEST(Language, TranslatorsSeeWhatIsMissing) {
  LanguageSystem system(true);
  system.config.language.LanguageInit("44");
  EXPECT_EQ(system.Text("Call", "Wählen"), "[Dial]");
  EXPECT_EQ(system.Text("Two", ""), "[one\r\ntwo\tthree<cr>]");
  EXPECT_EQ(system.Text("Empty", "Leer"), "?Leer?");
  EXPECT_EQ(system.Text("Missing", "Fehlt"), "?Fehlt?");
  EXPECT_EQ(system.Text("LANGUAGE", "?"), "English");
  EXPECT_EQ(system.Text("CountryId", "?"), "44");
  const std::string head = "\\log\\language.log: FVT v" + std::string(kVersion);
  EXPECT_THAT(system.log->lines, ElementsAre(head + " | Empty | Leer", head + " | Missing | Fehlt"));
  system.config.language.LanguageInit("99");
  EXPECT_EQ(system.Text("Call", "Wählen"), "Wählen") << "without a file there is nothing to check";
}

TEST(Files, AreThereOrNot) {
  ConfigSystem system;
  EXPECT_TRUE(system.Init());
  system.File("C:\\Rufmon\\Gr\xF6\xDF\x65.txt") = "x";
  system.File("C:\\Rufmon\\locked.txt") = "x";
  system.files.attributes["c:\\rufmon\\locked.txt"] = 0x21;  // archive and read-only
  system.files.faults.emplace("c:\\rufmon\\locked.txt", ErrorNumber::PermissionDenied);
  modAPI_Files& files = system.config.files;
  EXPECT_TRUE(files.FileExist("C:\\Rufmon\\Größe.txt"));
  EXPECT_TRUE(files.FileExist("C:\\Rufmon\\locked.txt"));
  EXPECT_FALSE(files.FileExist("C:\\Rufmon"));
  EXPECT_FALSE(files.FileExist("C:\\Rufmon\\nothing.txt"));
  EXPECT_EQ(system.files.wideReads, 0);
  EXPECT_TRUE(files.FileDelete("C:\\Rufmon\\nothing.txt"));
  EXPECT_TRUE(files.FileDelete("C:\\Rufmon"));
  EXPECT_EQ(system.files.deletions, 0) << "what is not there needs no deletion";
  EXPECT_TRUE(files.FileDelete("C:\\Rufmon\\Größe.txt"));
  EXPECT_FALSE(files.FileDelete("C:\\Rufmon\\locked.txt"));
  EXPECT_EQ(system.files.deletions, 2);
  system.config.state.wideAttributes = true;
  EXPECT_TRUE(files.FileExist("C:\\Rufmon\\locked.txt"));
  EXPECT_EQ(system.files.wideReads, 1);
  EXPECT_THAT(system.log->errors, IsEmpty());
}

TEST(MessageBox, HandsBackTheAnswerOrNone) {
  ConfigSystem system;
  system.boxes.answer = 6;
  EXPECT_EQ(system.config.messages.MsgBoxForward("Text", 48, ""), 6);
  EXPECT_TRUE(system.Init());
  system.boxes.whileShown = [] { throw std::runtime_error("no desktop"); };
  EXPECT_EQ(system.config.messages.MsgBoxForward("Text", 48, ""), 0);
  EXPECT_THAT(system.log->errors, ElementsAre("modPrivateDummy.MsgBoxForward 1000 no desktop"));
}

TEST(SpecialFolders, AreAskedOfTheShell) {
  ConfigSystem system;
  system.shell.folders = {{CSIDL_COMMON_APPDATA, "C:\\Gr\xFC\xDF\x65"}};
  EXPECT_EQ(system.config.systemPaths.GetSpecialFolder(CSIDL_COMMON_APPDATA), "C:\\Grüße");
  EXPECT_EQ(system.shell.asked, "100 512");
  EXPECT_EQ(system.config.systemPaths.GetSpecialFolder(CSIDL_PROGRAM_FILES), "");
}

}  // namespace
}  // namespace fonklav::test
