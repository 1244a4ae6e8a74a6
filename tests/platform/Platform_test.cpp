#include <gtest/gtest.h>

#include "platform/DdeValue.h"
#include "platform/FileSystem.h"

// What the ports have of their own, besides what they are implemented by.
namespace fonklav {
namespace {

TEST(Value, IsReadFromWhateverMemoryThereIs) {
  const auto memory = [](const char* text, std::size_t size) { return std::string(text, size); };
  const std::tuple<const char*, std::string, bool, const char*> rows[] = {
      {"none", "", false, ""},
      {"headCutShort", memory("\0\x20\1", 3), false, ""},
      {"headAlone", memory("\0\x20\1\0", 4), true, ""},
      {"whole", memory("\0\xA0\1\0abc\0def", 11), true, "abc"},
      {"withoutAnEnd", memory("\0\0\1\0abc", 7), true, "abc"},
      {"otherFormat", memory("\0\0\2\0abc\0", 8), true, "abc"}};
  for (const auto& [name, bytes, readable, text] : rows) {
    SCOPED_TRACE(name);
    const auto value = DdeValue::Read(std::as_bytes(std::span(bytes)));
    ASSERT_EQ(value.has_value(), readable);
    if (!value) continue;
    EXPECT_EQ(value->bytes, text);
    EXPECT_EQ(value->IsText(), bytes[2] == 1);
    EXPECT_EQ(value->ToBeReleased(), (bytes[1] & 0x20) != 0);
    EXPECT_EQ(value->WantsAnswer(), (bytes[1] & 0x80) != 0);
  }
}

TEST(FileLock, IsNamedAfterItsFileByWhoeverAsks) {
  const std::string name = FileLockName("C:\\ProgramData\\Größe\\log\\error.log");
  EXPECT_EQ(name, "Global\\FonklavTAPI log c:/programdata/größe/log/error.log");
  EXPECT_EQ(FileLockName("c:\\PROGRAMDATA\\GRÖSSE\\log\\Error.LOG").find("größe"), std::string::npos);
  EXPECT_EQ(FileLockName("c:\\PROGRAMDATA\\GRÖßE\\log\\Error.LOG"), name);
  const std::string deep = "C:" + std::string(1000, '\\') + "log\\";
  EXPECT_LE(FileLockName(deep + "error.log").size(), 260U);
  EXPECT_NE(FileLockName(deep + "error.log"), FileLockName(deep + "trace.log"));
}

}  // namespace
}  // namespace fonklav
