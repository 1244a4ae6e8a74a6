#pragma once

#include <cstring>

#include "platform/PrivateProfile.h"
#include "tests/fakes/FakeFileSystem.h"
#include "util/Text.h"

namespace fonklav::test {

/// The private-profile functions over the files in memory.
class FakePrivateProfile : public PrivateProfile {
 public:
  explicit FakePrivateProfile(FakeFileSystem& files) : files_(files) {}

  std::uint32_t GetString(const std::string& section, const std::string& key, const std::string& defaultValue,
                          std::span<char> buffer, const std::string& file) const override {
    const std::string value = Find(section, key, file).value_or(defaultValue);
    const std::size_t count = std::min(value.size(), buffer.size() - 1);
    std::memcpy(buffer.data(), value.data(), count);
    buffer[count] = 0;
    return static_cast<std::uint32_t>(count);
  }
  [[nodiscard]] std::int32_t GetInt(const std::string& section, const std::string& key, std::int32_t defaultValue,
                                    const std::string& file) const override {
    const auto value = Find(section, key, file);
    return value && !value->empty() ? static_cast<std::int32_t>(std::strtoll(value->c_str(), nullptr, 10))
                                    : defaultValue;
  }
  bool WriteString(const std::string& section, const std::string& key, const std::string& value,
                   const std::string& file) override {
    const auto slash = file.find_last_of('\\');
    if (!files_.folders.contains(FakeFileSystem::Key(file.substr(0, slash)))) return false;
    std::vector<std::string> lines = Split(files_.files[FakeFileSystem::Key(file)], kCrLf);
    if (lines.back().empty()) lines.pop_back();
    std::size_t at = 0;
    while (at < lines.size() && !IsSection(lines[at], section)) ++at;
    if (at == lines.size()) lines.push_back("[" + section + "]");
    std::size_t end = at + 1;
    while (end < lines.size() && !lines[end].starts_with('[') && !IsKey(lines[end], key)) ++end;
    if (end < lines.size() && IsKey(lines[end], key)) {
      lines[end] = key + "=" + value;
    } else {
      lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(end), key + "=" + value);
    }
    std::string text;
    for (const auto& line : lines) text += line + std::string(kCrLf);
    files_.files[FakeFileSystem::Key(file)] = text;
    return true;
  }

 private:
  static bool IsSection(const std::string& line, const std::string& section) {
    return FakeFileSystem::Key(line) == "[" + FakeFileSystem::Key(section) + "]";
  }
  static bool IsKey(const std::string& line, const std::string& key) {
    const auto equals = line.find('=');
    return equals != std::string::npos &&
           FakeFileSystem::Key(std::string(TrimBlanks(line.substr(0, equals)))) == FakeFileSystem::Key(key);
  }
  [[nodiscard]] std::optional<std::string> Find(const std::string& section, const std::string& key,
                                                const std::string& file) const {
    const auto found = files_.files.find(FakeFileSystem::Key(file));
    if (found == files_.files.end()) return std::nullopt;
    bool inside = false;
    for (const auto& line : Split(found->second, kCrLf)) {
      if (line.starts_with('[')) {
        if (inside) break;
        inside = IsSection(line, section);
      } else if (inside && IsKey(line, key)) {
        std::string value(TrimBlanks(std::string_view(line).substr(line.find('=') + 1)));
        if (value.size() >= 2 && value.front() == '"' && value.back() == '"') value = value.substr(1, value.size() - 2);
        return value;
      }
    }
    return std::nullopt;
  }

  FakeFileSystem& files_;
};

}  // namespace fonklav::test
