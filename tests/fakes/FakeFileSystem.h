#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "platform/FileSystem.h"
#include "util/RunTimeError.h"

namespace fonklav::test {

/// Files in memory. Names are compared without regard to ASCII case; folders are made by hand, and faults too.
class FakeFileSystem : public FileSystem {
 public:
  [[nodiscard]] std::optional<std::uint32_t> GetAttributesA(const std::string& path) const override {
    if (folders.contains(Key(path))) return kFileAttributeDirectory;
    if (files.contains(Key(path))) return 0x20;
    return std::nullopt;
  }
  [[nodiscard]] std::optional<std::uint32_t> GetAttributesW(const std::string& path) const override {
    return GetAttributesA(path);
  }
  bool DeleteA(const std::string& path) override { return files.erase(Key(path)) != 0; }
  [[nodiscard]] std::string Read(const std::string& path) const override {
    CheckOpen(path);
    const auto found = files.find(Key(path));
    if (found == files.end()) throw RunTimeError(ErrorNumber::FileNotFound);
    return found->second;
  }
  [[nodiscard]] std::uint64_t Length(const std::string& path) const override {
    const auto found = files.find(Key(path));
    return found == files.end() ? 0 : found->second.size();
  }
  void Write(const std::string& path, std::string_view bytes) override {
    CheckOpen(path);
    files[Key(path)] = bytes;
  }
  void Append(const std::string& path, std::string_view bytes) override {
    CheckOpen(path);
    files[Key(path)] += bytes;
  }
  void Replace(const std::string& path, std::string_view bytes) override { Write(path, bytes); }

  static std::string Key(std::string path) {
    std::ranges::transform(path, path.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return path;
  }

  std::map<std::string, std::string> files;
  std::set<std::string> folders;
  std::map<std::string, ErrorNumber> faults;  ///< opening this file raises this

 private:
  void CheckOpen(const std::string& path) const {
    const std::string key = Key(path);
    if (const auto fault = faults.find(key); fault != faults.end()) throw RunTimeError(fault->second);
    if (folders.contains(key)) throw RunTimeError(ErrorNumber::PathFileAccessError);
    const auto slash = key.find_last_of('\\');
    if (!folders.contains(key.substr(0, slash))) throw RunTimeError(ErrorNumber::PathNotFound);
  }
};

}  // namespace fonklav::test
