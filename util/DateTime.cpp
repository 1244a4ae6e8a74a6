#include "util/DateTime.h"

#include <array>

namespace fonklav {

using namespace std::string_view_literals;

void AppendPadded(std::string& text, int number, std::size_t width) {
  std::array<char, 12> digits{};
  std::size_t start = digits.size();
  for (auto rest = static_cast<unsigned>(number); rest > 0 || digits.size() - start < width; rest /= 10) {
    digits.at(--start) = static_cast<char>('0' + rest % 10);
  }
  text.append(digits.data() + start, digits.size() - start);
}

std::string GetFormatedDateByString(const LocalTime& time, std::string_view separator, bool yearFirst) {
  std::string text;
  AppendPadded(text, yearFirst ? time.year : time.day, yearFirst ? 4 : 2);
  AppendPadded(text.append(separator), time.month, 2);
  AppendPadded(text.append(separator), yearFirst ? time.day : time.year, yearFirst ? 2 : 4);
  return text;
}

std::string GetFormatedTime(const LocalTime& time) {
  std::string text;
  AppendPadded(text, time.hour, 2);
  AppendPadded(text += ':', time.minute, 2);
  AppendPadded(text += ':', time.second, 2);
  return text;
}

void AppendStamp(std::string& text, const LocalTime& time) {
  text.append(GetFormatedDateByString(time, "/", true)).append("  "sv).append(GetFormatedTime(time)).append("  "sv);
}

}  // namespace fonklav
