#include "util/RunTimeError.h"

#include <array>
#include <utility>

namespace fonklav {
namespace {

struct ErrorTextRow {
  ErrorNumber number;
  const char* text;
};

constexpr std::array kErrorTexts{
    ErrorTextRow{ErrorNumber::Overflow, "Overflow"},
    ErrorTextRow{ErrorNumber::OutOfMemory, "Out of memory"},
    ErrorTextRow{ErrorNumber::SubscriptOutOfRange, "Subscript out of range"},
    ErrorTextRow{ErrorNumber::TypeMismatch, "Type mismatch"},
    ErrorTextRow{ErrorNumber::FileNotFound, "File not found"},
    ErrorTextRow{ErrorNumber::DeviceIOError, "Device I/O error"},
    ErrorTextRow{ErrorNumber::DiskFull, "Disk full"},
    ErrorTextRow{ErrorNumber::PermissionDenied, "Permission denied"},
    ErrorTextRow{ErrorNumber::PathFileAccessError, "Path/File access error"},
    ErrorTextRow{ErrorNumber::PathNotFound, "Path not found"},
    ErrorTextRow{ErrorNumber::ObjectVariableNotSet, "Object variable not set"},
    ErrorTextRow{ErrorNumber::NoForeignApplication, "No foreign application responded to a DDE initiate"},
    ErrorTextRow{ErrorNumber::InvalidPropertyValue, "Invalid property value"},
    ErrorTextRow{ErrorNumber::DllEntryPointNotFound, "Can't find DLL entry point"},
};

}  // namespace

const char* ErrorText(ErrorNumber number) noexcept {
  for (const auto& row : kErrorTexts) {
    if (row.number == number) return row.text;
  }
  return "Application-defined or object-defined error";
}

RunTimeError::RunTimeError(ErrorNumber number, int line) : RunTimeError(number, ErrorText(number), line) {}

RunTimeError::RunTimeError(ErrorNumber number, std::string description, int line)
    : number_(static_cast<int>(number)), description_(std::move(description)), line_(line) {}

}  // namespace fonklav
