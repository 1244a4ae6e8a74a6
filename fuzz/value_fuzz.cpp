#include <array>

#include "app/Protocol.h"
#include "fuzz/Bytes.h"
#include "platform/DdeValue.h"
#include "tests/fakes/FakePorts.h"

// Memory that another program sends as a value, and the command that its text may be.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace fonklav;
  using test::Require;
  const auto value = DdeValue::Read(std::as_bytes(std::span(data, size)));
  Require(value.has_value() == (size >= 4), "a whole head is read, and no other");
  if (!value) return 0;
  Require(value->flags == data[0] + 256 * data[1] && value->format == data[2] + 256 * data[3], "the head's words");
  const std::size_t length = value->bytes.size();
  const std::string_view rest = std::string_view(reinterpret_cast<const char*>(data), size).substr(4);
  Require(rest.starts_with(value->bytes), "the bytes as they are");
  Require(length + 4 == size || data[4 + length] == 0, "up to the first NUL or the end");
  Require(value->bytes.find('\0') == std::string::npos, "no NUL");

  const test::FakeCodePage codePage;
  const std::string text = codePage.ToText(value->bytes);
  Require(codePage.ToBytes(text) == value->bytes, "the text says the same");
  const CommandMessage message = ParseCommand(text);
  Require(text.find(message.argument) != std::string::npos, "an argument is a part of the text");
  Require(message.argument.find('|') == std::string::npos, "one field");
  constexpr std::array kNames{"settings", "unload", "cmd", "debug"};
  const bool known = std::ranges::find(kNames, text.substr(0, text.find('|'))) != kNames.end();
  Require(known == (message.command != Command::Unknown), "the first field names the command");
  return 0;
}
