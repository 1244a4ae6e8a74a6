#include "sim/CallRecord.h"

#include <algorithm>

namespace fonklav {

namespace {

constexpr std::string_view kDigits = "0123456789abcdef";

std::string Printable(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    if (byte >= ' ' && byte <= '~') {
      text += byte;
    } else {
      const auto code = static_cast<unsigned char>(byte);
      text += {'\\', 'x', kDigits[code >> 4U], kDigits[code & 0xFU]};
    }
  }
  return text;
}

}  // namespace

std::string HexText(std::uintptr_t value) {
  std::string digits;
  do {
    digits += kDigits[value & 0xFU];
    value >>= 4U;
  } while (value != 0);
  std::reverse(digits.begin(), digits.end());
  return "0x" + digits;
}

CallArguments& CallArguments::Add(std::string_view name, std::string_view value) {
  if (!rendered_.empty()) rendered_ += ' ';
  rendered_.append(name).append("=").append(value);
  return *this;
}

CallArguments& CallArguments::Hex(std::string_view name, std::uintptr_t value) { return Add(name, HexText(value)); }

CallArguments& CallArguments::Number(std::string_view name, std::uintptr_t value) {
  return Add(name, std::to_string(value));
}

CallArguments& CallArguments::Text(std::string_view name, const char* value) {
  if (value == nullptr) return Add(name, "null");
  text_ = value;
  return Add(name, '"' + Printable(*text_) + '"');
}

CallRecord CallArguments::For(std::string_view function) && {
  return {std::string(function), std::move(rendered_), std::move(text_), 0};
}

std::string LogLine(const CallRecord& record) {
  const bool request = record.result > 0;  // a request's number reads better in decimal than as a code
  return "call " + record.function + "(" + record.arguments +
         ") = " + (request ? std::to_string(record.result) : HexText(static_cast<std::uint32_t>(record.result)));
}

}  // namespace fonklav
