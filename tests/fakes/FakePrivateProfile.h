#pragma once

#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Ports.h"
#include "tests/fakes/FakeFileSystem.h"
#include "util/Text.h"

#include "tests/fakes/Faults.h"

namespace fonklav::test {

/// The private-profile functions over the files in memory, by the rules that Windows goes by: names without regard to
/// case, the first of two like names counts, ";" begins a comment line, one pair of quotes around a value is taken off,
/// what a value is written as is not changed, folders are never made. A test sees which keys were read, and may break
/// one.
class FakePrivateProfile : public PrivateProfile, public CanFail {
 public:
  explicit FakePrivateProfile(FakeFileSystem& files) : files_(files) {}

  std::uint32_t GetString(const std::string& section, const std::string& key, const std::string& defaultValue,
                          std::span<char> buffer, const std::string& file) const override {
    Step();
    Ask(section, key);
    const std::string value = Find(section, key, file).value_or(WithoutBlanksBehind(defaultValue));
    const std::size_t count = std::min(value.size(), buffer.size() - 1);
    std::memcpy(buffer.data(), value.data(), count);
    buffer[count] = 0;
    return static_cast<std::uint32_t>(count);
  }
  [[nodiscard]] std::int32_t GetInt(const std::string& section, const std::string& key, std::int32_t defaultValue,
                                    const std::string& file) const override {
    Step();
    Ask(section, key);
    const auto value = Find(section, key, file);
    if (!value || value->empty()) return defaultValue;
    std::int32_t number = 0;  // of text that is no number, too
    std::from_chars(value->data(), value->data() + value->size(), number);
    return number;
  }
  bool WriteString(const std::string& section, const std::string& key, const std::string& value,
                   const std::string& file) override {
    if (Due()) return false;
    std::vector<std::string> lines = Lines(file);
    auto at = std::ranges::find_if(lines, [&](const auto& line) { return IsSection(line, section); });
    if (at == lines.end()) at = lines.insert(lines.end(), "[" + Blankless(section) + "]");
    const auto isNext = [&](const auto& line) { return Trimmed(line).starts_with('[') || IsKey(line, key); };
    at = std::find_if(at + 1, lines.end(), isNext);
    if (at != lines.end() && IsKey(*at, key)) {
      *at = at->substr(0, at->find('=')) + "=" + value;
    } else {
      lines.insert(at, Blankless(key) + "=" + value);
    }
    std::string text;
    for (const auto& line : lines) text.append(line).append(kCrLf);
    try {
      files_.Write(file, text);
    } catch (const RunTimeError&) {
      return false;
    }
    return true;
  }

  static constexpr int kBrokenLine = 4711;
  std::string brokenKey;                   ///< reading it raises error 57 of that line
  mutable std::vector<std::string> asked;  ///< "section key" of each read

 private:
  void Ask(const std::string& section, const std::string& key) const {
    asked.push_back(section + " " + key);
    if (key == brokenKey) throw RunTimeError(ErrorNumber::DeviceIOError, kBrokenLine);
  }
  static std::string Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\v");
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(" \t\v") - first + 1));
  }
  static std::string Blankless(const std::string& name) { return std::string(TrimBlanks(name)); }
  static std::string WithoutBlanksBehind(std::string text) { return text.erase(text.find_last_not_of(' ') + 1); }
  static bool SameName(std::string_view inFile, const std::string& asked) {
    return FakeFileSystem::Key(Trimmed(inFile)) == FakeFileSystem::Key(Blankless(asked));
  }
  static bool IsSection(const std::string& line, const std::string& section) {
    const std::string text = Trimmed(line);
    return text.starts_with('[') && SameName(text.substr(1, text.find(']') - 1), section);
  }
  static bool IsKey(const std::string& line, const std::string& key) {
    const auto equals = line.find('=');
    return equals != std::string::npos && !Trimmed(line).starts_with(';') && SameName(line.substr(0, equals), key);
  }
  static std::string Unquoted(std::string value) {
    const bool quoted = value.size() >= 2 && value.front() == value.back() && std::strchr("\"'", value.front());
    return quoted ? value.substr(1, value.size() - 2) : value;
  }
  [[nodiscard]] std::vector<std::string> Lines(const std::string& file) const {
    const auto found = files_.files.find(FakeFileSystem::Key(file));
    if (found == files_.files.end() || found->second.empty()) return {};
    std::vector<std::string> lines = Split(ReplaceAll(found->second, kCrLf, "\n"), "\n");
    if (lines.back().empty()) lines.pop_back();
    return lines;
  }
  [[nodiscard]] std::optional<std::string> Find(const std::string& section, const std::string& key,
                                                const std::string& file) const {
    bool inside = false;
    for (const auto& line : Lines(file)) {
      if (Trimmed(line).starts_with('[')) {
        if (inside) break;
        inside = IsSection(line, section);
      } else if (inside && IsKey(line, key)) {
        return Unquoted(Trimmed(line.substr(line.find('=') + 1)));
      }
    }
    return std::nullopt;
  }

  FakeFileSystem& files_;
};

}  // namespace fonklav::test
