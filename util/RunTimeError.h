#pragma once

#include <exception>
#include <string>

namespace fonklav {

/// The classic numbers of the run-time errors that this program raises, by which the suite's error logs are read. Their
/// texts are in RunTimeError.cpp.
enum class ErrorNumber : int {
  Overflow = 6,
  OutOfMemory = 7,
  SubscriptOutOfRange = 9,
  TypeMismatch = 13,
  FileNotFound = 53,
  DeviceIOError = 57,
  DiskFull = 61,
  PermissionDenied = 70,
  PathFileAccessError = 75,
  PathNotFound = 76,
  ObjectVariableNotSet = 91,
  NoForeignApplication = 282,
  InvalidPropertyValue = 380,
  NeverLogged = 401,  ///< ends a handler without a word: the error log leaves this number out
  DllEntryPointNotFound = 453,
  /// Anything thrown that is not one of our own errors is logged under this number.
  ForeignException = 1000,
};

/// The failure signal inside the program: a number, a description and the source line that raised it. Failures of
/// telephony functions are not run-time errors; they stay codes.
class RunTimeError : public std::exception {
 public:
  /// Raises `number` with its classic text. The line is the caller's, by a compiler builtin: clang 14 has no
  /// std::source_location together with this C++ library.
  explicit RunTimeError(ErrorNumber number, int line = __builtin_LINE());

  /// Raises `number` with a text of its own.
  RunTimeError(ErrorNumber number, std::string description, int line = __builtin_LINE());

  /// As the log shows it: an ErrorNumber's value.
  [[nodiscard]] int Number() const noexcept { return number_; }
  [[nodiscard]] const std::string& Description() const noexcept { return description_; }
  /// The line in the source file, 0 when unknown.
  [[nodiscard]] int Line() const noexcept { return line_; }
  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

 private:
  int number_;
  std::string description_;
  int line_;
};

/// The classic text of a run-time error, "Application-defined or object-defined error" where it has none.
[[nodiscard]] const char* ErrorText(ErrorNumber number) noexcept;

}  // namespace fonklav
