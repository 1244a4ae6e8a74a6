#include "util/DateTime.h"

#include <array>
#include <cstdio>

namespace fonklav {
namespace {

std::string Padded(int number, int width) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%0*d", width, number);
  return text.data();
}

}  // namespace

std::string GetFormatedDateByString(const LocalTime& time, std::string_view separator, bool yearFirst) {
  const std::string between(separator);
  const std::string year = Padded(time.year, 4);
  const std::string month = Padded(time.month, 2);
  const std::string day = Padded(time.day, 2);
  return yearFirst ? year + between + month + between + day : day + between + month + between + year;
}

std::string GetFormatedTime(const LocalTime& time) {
  return Padded(time.hour, 2) + ":" + Padded(time.minute, 2) + ":" + Padded(time.second, 2);
}

}  // namespace fonklav
