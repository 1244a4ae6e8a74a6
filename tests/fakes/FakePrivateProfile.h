#pragma once

#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "platform/Ports.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/Faults.h"
#include "util/Text.h"

namespace fonklav::test {

/// The private-profile functions over the files in memory, by the rules that Windows goes by and a file of ours can
/// tell apart: names without regard to case, the first of two like names counts, ";" begins a comment line, one pair of
/// quotes around a value is taken off. A test sees which keys were read, and may break one.
class FakePrivateProfile : public PrivateProfile, public CanFail {
 public:
  explicit FakePrivateProfile(FakeFileSystem& files) : files_(files) {}

  std::uint32_t GetString(const std::string& section, const std::string& key, const std::string& defaultValue,
                          std::span<char> buffer, const std::string& file) const override {
    Step();
    const std::string value = Find(section, key, file).value_or(defaultValue);
    const std::size_t count = std::min(value.size(), buffer.size() - 1);
    std::memcpy(buffer.data(), value.data(), count);
    buffer[count] = 0;
    return static_cast<std::uint32_t>(count);
  }
  [[nodiscard]] std::int32_t GetInt(const std::string& section, const std::string& key, std::int32_t defaultValue,
                                    const std::string& file) const override {
    Step();
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
    if (at == lines.end()) at = lines.insert(lines.end(), "[" + section + "]");
    at = std::find_if(at + 1, lines.end(), [&](const auto& line) { return line.starts_with('[') || IsKey(line, key); });
    if (at == lines.end() || !IsKey(*at, key)) at = lines.insert(at, key);
    *at = at->substr(0, at->find('=')) + "=" + value;
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
  static bool IsSection(const std::string& line, const std::string& section) {
    return line.starts_with('[') && FakeFileSystem::Key(line) == "[" + FakeFileSystem::Key(section) + "]";
  }
  static bool IsKey(const std::string& line, const std::string& key) {
    return line.find('=') != std::string::npos && !line.starts_with(';') &&
           FakeFileSystem::Key(line.substr(0, line.find('='))) == FakeFileSystem::Key(key);
  }
  [[nodiscard]] std::vector<std::string> Lines(const std::string& file) const {
    const auto found = files_.files.find(FakeFileSystem::Key(file));
    if (found == files_.files.end() || found->second.empty()) return {};
    std::vector<std::string> lines = Split(found->second, kCrLf);
    if (lines.back().empty()) lines.pop_back();
    return lines;
  }
  [[nodiscard]] std::optional<std::string> Find(const std::string& section, const std::string& key,
                                                const std::string& file) const {
    asked.push_back(section + " " + key);
    if (key == brokenKey) throw RunTimeError(ErrorNumber::DeviceIOError, kBrokenLine);
    bool inside = false;
    for (const auto& line : Lines(file)) {
      if (line.starts_with('[')) {
        if (inside) break;
        inside = IsSection(line, section);
      } else if (inside && IsKey(line, key)) {
        const std::string value = line.substr(line.find('=') + 1);
        const bool quoted = value.size() >= 2 && value.front() == value.back() && std::strchr("\"'", value.front());
        return quoted ? value.substr(1, value.size() - 2) : value;
      }
    }
    return std::nullopt;
  }

  FakeFileSystem& files_;
};

}  // namespace fonklav::test
