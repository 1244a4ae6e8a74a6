#pragma once

#include <cstdint>
#include <string>

namespace fonklav {

/// Message-box styles: the published icon numbers.
inline constexpr std::uint32_t kMessageBoxCritical = 16;
inline constexpr std::uint32_t kMessageBoxExclamation = 48;
inline constexpr std::uint32_t kMessageBoxInformation = 64;

/// The platform's modal message box.
class MessageBoxes {
 public:
  MessageBoxes() = default;
  MessageBoxes(const MessageBoxes&) = delete;
  MessageBoxes& operator=(const MessageBoxes&) = delete;
  virtual ~MessageBoxes() = default;

  /// Shows `prompt` until the user answers and returns the button pressed. Messages are pumped meanwhile, so anything
  /// may have happened when it returns.
  virtual std::int32_t Show(const std::string& prompt, std::uint32_t style, const std::string& title) = 0;
};

}  // namespace fonklav
