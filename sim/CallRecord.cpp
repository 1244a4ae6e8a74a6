#include "sim/CallRecord.h"

namespace fonklav {

namespace {

constexpr std::string_view kDigits = "0123456789abcdef";

}  // namespace

std::string HexText(std::uintptr_t value) {
  const std::string last{kDigits[value & 0xFU]};
  return value < 16 ? "0x" + last : HexText(value >> 4U) + last;
}

void CallRecord::AddRendered(std::string_view name, std::string_view value) {
  if (!arguments.empty()) arguments += ' ';
  arguments.append(name).append("=").append(value);
}

void CallRecord::AddText(std::string_view name, const char* value) {
  if (value == nullptr) return AddRendered(name, "null");
  text = value;
  std::string printable;
  for (const char byte : *text) {
    const auto code = static_cast<unsigned char>(byte);
    const bool plain = byte >= ' ' && byte <= '~';
    printable += plain ? std::string{byte} : std::string{'\\', 'x', kDigits[code >> 4U], kDigits[code & 0xFU]};
  }
  AddRendered(name, '"' + printable + '"');
}

std::string CallRecord::LogLine() const {
  const auto code = HexText(static_cast<std::uint32_t>(result));
  return "call " + function + "(" + arguments + ") = " + (result > 0 ? std::to_string(result) : code);
}

}  // namespace fonklav
