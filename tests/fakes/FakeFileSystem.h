#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/FileSystem.h"
#include "tests/fakes/Faults.h"
#include "util/RunTimeError.h"

namespace fonklav::test {

/// Files in memory. Names are compared without regard to ASCII case; folders are made by hand, and faults too. A test
/// can also kill the program in the middle of a change: from then on nothing reaches the disk any more.
class FakeFileSystem : public FileSystem, public CanFail {
 public:
  [[nodiscard]] std::optional<std::uint32_t> GetAttributesA(const std::string& path) const override {
    if (Due()) return std::nullopt;
    if (folders.contains(Key(path))) return kFileAttributeDirectory;
    if (const auto own = attributes.find(Key(path)); own != attributes.end()) return own->second;
    if (files.contains(Key(path))) return 0x20;
    return std::nullopt;
  }
  [[nodiscard]] std::optional<std::uint32_t> GetAttributesW(const std::string& path) const override {
    ++wideReads;
    return GetAttributesA(path);
  }
  bool DeleteA(const std::string& path) override {
    ++deletions;
    return !faults.contains(Key(path)) && files.erase(Key(path)) != 0;
  }
  [[nodiscard]] std::unique_ptr<FileLock> Lock(const std::string& path) override {
    LetOthersWrite(path);
    if (keptLocks.contains(Key(path))) return nullptr;
    return std::make_unique<CountedLock>(locks_[Key(path)]);
  }
  [[nodiscard]] std::string Read(const std::string& path) const override {
    CheckOpen(path);
    const auto found = files.find(Key(path));
    if (found == files.end()) throw RunTimeError(ErrorNumber::FileNotFound);
    return found->second;
  }
  [[nodiscard]] std::uint64_t Length(const std::string& path) const override {
    LetOthersWrite(path);
    const auto found = files.find(Key(path));
    return found == files.end() ? 0 : found->second.size();
  }
  void Write(const std::string& path, std::string_view bytes) override {
    CheckOpen(path);
    if (Alive()) files[Key(path)].clear();
    if (Alive()) files[Key(path)] = bytes;
  }
  void Append(const std::string& path, std::string_view bytes) override {
    CheckOpen(path);
    if (Alive()) files[Key(path)] += bytes;
  }
  void Replace(const std::string& path, std::string_view bytes) override {
    CheckOpen(path);
    const std::string beside = Key(path) + ".new";
    Write(beside, bytes);
    if (!Alive()) return;
    files[Key(path)] = bytes;
    files.erase(beside);
  }

  static std::string Key(std::string path) {
    std::ranges::transform(path, path.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return path;
  }

  std::map<std::string, std::string> files;
  std::set<std::string> folders;
  std::map<std::string, std::uint32_t> attributes;           ///< of files that have others than the usual
  std::map<std::string, ErrorNumber> faults;                 ///< opening this file raises this
  std::set<std::string> keptLocks;                           ///< of files that another program has locked
  std::function<void(const std::string& key)> otherProgram;  ///< called wherever it may write to a file
  std::optional<int> stepsToLive;                            ///< single changes of the disk until the program is killed
  mutable int opens{0};
  mutable int wideReads{0};
  int deletions{0};

 private:
  struct CountedLock : FileLock {
    explicit CountedLock(int& counter) : count(counter) { ++count; }
    ~CountedLock() override { --count; }
    int& count;
  };

  void LetOthersWrite(const std::string& path) const {
    const auto lock = locks_.find(Key(path));
    if (otherProgram && (lock == locks_.end() || lock->second == 0)) otherProgram(Key(path));
  }
  void CheckOpen(const std::string& path) const {
    ++opens;
    Step();
    LetOthersWrite(path);
    const std::string key = Key(path);
    if (const auto fault = faults.find(key); fault != faults.end()) throw RunTimeError(fault->second);
    if (folders.contains(key)) throw RunTimeError(ErrorNumber::PathFileAccessError);
    const auto slash = key.find_last_of('\\');
    if (!folders.contains(key.substr(0, slash))) throw RunTimeError(ErrorNumber::PathNotFound);
  }
  bool Alive() {
    if (!stepsToLive) return true;
    return *stepsToLive > 0 && (*stepsToLive)-- > 0;
  }

  std::map<std::string, int> locks_;  ///< how many times each file is locked by the program under test
};

}  // namespace fonklav::test
