#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace fonklav {

/// One call that was made on the simulated telephony.
struct CallRecord {
  std::string function;             ///< published name, without the A of the 8-bit variant
  std::string arguments;            ///< "line=0x20001 address=\"0301234567\" …"
  std::optional<std::string> text;  ///< the string argument: the number of lineMakeCall and lineTranslateAddress, the
                                    ///< device class of the dialogs; nothing for a null pointer
  std::int32_t result{0};
};

/// Renders arguments for a CallRecord. Bytes outside printable ASCII are written as \xNN.
class CallArguments {
 public:
  CallArguments& Hex(std::string_view name, std::uintptr_t value);
  CallArguments& Number(std::string_view name, std::uintptr_t value);
  /// The string argument, a null pointer as null.
  CallArguments& Text(std::string_view name, const char* value);

  [[nodiscard]] CallRecord For(std::string_view function) &&;

 private:
  CallArguments& Add(std::string_view name, std::string_view value);

  std::string rendered_;
  std::optional<std::string> text_;
};

/// "0x" and the number in hexadecimal digits.
[[nodiscard]] std::string HexText(std::uintptr_t value);

/// One log line: "call lineOpen(app=…) = 0x00000000" without a line end.
[[nodiscard]] std::string LogLine(const CallRecord& record);

}  // namespace fonklav
