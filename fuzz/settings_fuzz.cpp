#include <array>

#include "fuzz/Bytes.h"
#include "tests/config/ConfigSystem.h"

// A settings file that is also the language file, with any bytes in it, read through every accessor.
namespace fonklav::test {

void Fuzz(Bytes bytes) {
  static ConfigSystem system;
  static const bool initialised = system.Init();
  Require(initialised, "the start succeeds");
  constexpr std::array kKeys{"Key", "k", "Language", " ", "\xC3\xA4"};
  constexpr std::array<std::int32_t, 5> kBounds{0, 1, -5, 100, 0x7FFFFFFF};
  constexpr const char* kFile = "C:\\Rufmon\\base\\language_EN.ini";
  const std::string key = bytes.OneOf(kKeys);
  const std::int32_t lower = bytes.OneOf(kBounds);
  const std::int32_t upper = bytes.OneOf(kBounds);
  const bool flag = bytes.Flag();
  const bool write = bytes.Flag();
  std::string content = bytes.Text(4096);
  if (flag) content.insert(0, "[Data]\r\n" + key + "=");
  system.File(kFile) = content;
  const modAPI_INI& ini = system.config.ini;

  const std::string text = ini.GetSettStr("Data", key, "default", kFile, flag, write);
  Require(system.codePage.ToBytes(text).size() < 2048, "a text fits its buffer");
  Require(!flag || !text.empty(), "an empty text is the default where that is wanted");
  Require(!write || text == "default" || IsNumeric(text, system.locale.Separators()), "a number, or the default");
  const std::int32_t number = ini.GetSettLng("Data", key, 7, lower, upper, flag, kFile);
  const bool ordered = lower <= upper && (lower != 0 || upper != 0);
  const bool inside = number >= lower && (number <= upper || (upper == 0 && !flag));
  Require(!ordered || inside || (flag && number == 7), "a number keeps its bounds, or is the default");
  const bool ifMissing = ini.GetSettBool("Data", key, true, kFile);
  Require(ifMissing || !ini.GetSettBool("Data", key, false, kFile), "the default makes no stored value true");

  system.config.language.LanguageInit("EN");
  const std::string loaded = system.config.language.LoadLangKey(key, "a<CR>b");
  Require(!loaded.empty() && loaded.find("<TAB>") == std::string::npos, "a text, with its tabs");
  if (write) {
    const std::string before = ini.GetSettStr("Other", key, "", kFile, false, false);
    system.config.ini.SetSettStr("Data", key, "12", kFile);
    Require(ini.GetSettLng("Data", key, 0, 0, 0, false, kFile) == 12, "what was written is read");
    Require(ini.GetSettStr("Other", key, "", kFile, false, false) == before, "and nothing else has changed");
  }
  Require(system.log->errors.empty(), "no accessor fails");
  system.log->steps.clear();
  system.log->lines.clear();
  system.profile.asked.clear();
}

}  // namespace fonklav::test
