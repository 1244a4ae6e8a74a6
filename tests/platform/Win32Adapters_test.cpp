#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <thread>
#include <tuple>

#include "platform/win32/Handles.h"
#include "platform/win32/WideText.h"
#include "platform/win32/Win32FileSystem.h"
#include "platform/win32/Win32System.h"
#include "platform/win32/Win32Telephony.h"
#include "util/RunTimeError.h"

// The adapters on the system that this runs on: what the fakes of the other tests take for granted.
namespace fonklav {
namespace {

/// A folder that is empty at first and gone at last.
class Win32 : public testing::Test {
 protected:
  Win32() { std::filesystem::create_directory(folder); }
  ~Win32() override { std::filesystem::remove_all(folder); }
  [[nodiscard]] std::string At(const std::string& name) const { return Utf8(folder.wstring()) + "\\" + name; }

  const std::filesystem::path folder = std::filesystem::absolute("adapters");
  Win32FileSystem files;
};

/// The number of the run-time error that `work` ends with, 0 for none.
template <typename Work>
int NumberOf(Work work) {
  try {
    work();
    return 0;
  } catch (const RunTimeError& fault) {
    return fault.Number();
  }
}

TEST_F(Win32, ProfileKeepsWhatIsWrittenAndReadsAsThePlatformDoes) {
  Win32PrivateProfile profile;
  const std::string file = BytesFrom(CP_ACP, (folder / "a.ini").wstring());
  files.Write(At("a.ini"), "[S]\r\nquoted=\" a \"\r\nnumber=12x\r\nword=x\r\n");
  EXPECT_TRUE(profile.WriteString("new", "k\xFC", "v", file));
  EXPECT_FALSE(profile.WriteString("s", "k", "v", "none\\a.ini"));
  using Row = std::tuple<const char*, const char*, const char*, int>;
  for (const auto& [section, key, text, number] :
       {Row{"s", "QUOTED", " a ", 0}, Row{"S", "number", "12x", 12}, Row{"S", "word", "x", 0},
        Row{"S", "none", "default", -7}, Row{"NEW", "k\xFC", "v", 0}}) {
    std::array<char, 32> value{};
    profile.GetString(section, key, "default", value, file);
    EXPECT_STREQ(value.data(), text) << key;
    EXPECT_EQ(profile.GetInt(section, key, -7, file), number) << key;
  }
}

TEST_F(Win32, FilesAreSharedReplacedAndRefusedByTheirNumbers) {
  const std::string file = At("größe.log");
  files.Append(file, "one\r\n");
  files.Append(file, "two\r\n");
  EXPECT_EQ(files.Read(file), "one\r\ntwo\r\n");
  files.Replace(file, "new");
  EXPECT_EQ(files.Read(file), "new");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1) << "something stayed beside the file";
  EXPECT_EQ(files.Length(At("missing")), 0U);
  EXPECT_EQ(NumberOf([&] { (void)files.Read(At("missing")); }), 53);
  EXPECT_EQ(NumberOf([&] { files.Append(Utf8(folder.wstring()), "x"); }), 75);
  EXPECT_EQ(NumberOf([&] { files.Write(At("no folder\\a"), "x"); }), 76);
  const UniqueFile held{CreateFileW((folder / "held").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr)};
  EXPECT_EQ(NumberOf([&] { files.Append(At("held"), "x"); }), 70);
}

TEST_F(Win32, LockKeepsAnotherThreadOutAndItsOwnThreadNot) {
  const auto lock = files.Lock(At("log"));
  EXPECT_NE(files.Lock(At("LOG")), nullptr);
  std::thread([&] { EXPECT_EQ(Win32FileSystem().Lock(At("Log")), nullptr); }).join();
}

TEST_F(Win32, SystemTellsOfItself) {
  const Win32Clock clock;
  const auto before = clock.Ticks();
  Sleep(50);
  EXPECT_GE(clock.Ticks() - before, std::chrono::milliseconds(30));
  const Win32Process process;
  EXPECT_FALSE(process.OtherInstanceRunning());
  EXPECT_TRUE(Win32Process().OtherInstanceRunning());
  EXPECT_TRUE(std::filesystem::exists(Wide(process.ProgramFolder() + "\\" + process.ExecutableName() + ".exe")));
  EXPECT_GE(process.SystemVersion().major, 6U);
  EXPECT_FALSE(Win32NumberLocale().Separators().decimal.empty());
  std::array<char, MAX_PATH> path{};
  EXPECT_TRUE(Win32ShellFolders().GetPath(0, CSIDL_COMMON_APPDATA, path));
  EXPECT_TRUE(std::filesystem::is_directory(path.data()));
  EXPECT_EQ(NumberOf([] { TelephonyLibrary().Call("lineSing"); }), 453);
  const Win32CodePage codePage;
  EXPECT_EQ(codePage.ToText(codePage.ToBytes(std::string("plain\0text", 10))), std::string("plain\0text", 10));
}

}  // namespace
}  // namespace fonklav
