#include <array>

#include "app/Protocol.h"
#include "fuzz/Bytes.h"
#include "platform/DdeValue.h"
#include "tests/fakes/FakePorts.h"

namespace fonklav::test {

// Memory that another program sends as a value, and the command that its text may be.
void Fuzz(Bytes bytes) {
  const auto data = bytes.Rest();
  const auto value = DdeValue::Read(std::as_bytes(data));
  Require(value.has_value() == (data.size() >= 4), "a whole head is read, and no other");
  if (!value) return;
  Require(value->flags == data[0] + 256 * data[1] && value->format == data[2] + 256 * data[3], "the head's words");
  const std::size_t length = value->bytes.size();
  const std::string_view rest = std::string_view(reinterpret_cast<const char*>(data.data()), data.size()).substr(4);
  Require(rest.starts_with(value->bytes), "the bytes as they are");
  Require(length + 4 == data.size() || data[4 + length] == 0, "up to the first NUL or the end");
  Require(value->bytes.find('\0') == std::string::npos, "no NUL");

  const FakeCodePage codePage;
  const std::string text = codePage.ToText(value->bytes);
  Require(codePage.ToBytes(text) == value->bytes, "the text says the same");
  const CommandMessage message = ParseCommand(text);
  Require(text.find(message.argument) != std::string::npos, "an argument is a part of the text");
  Require(message.argument.find('|') == std::string::npos, "one field");
  constexpr std::array kNames{"settings", "unload", "cmd", "debug"};
  const bool known = std::ranges::find(kNames, text.substr(0, text.find('|'))) != kNames.end();
  Require(known == (message.command != Command::Unknown), "the first field names the command");
}

}  // namespace fonklav::test
