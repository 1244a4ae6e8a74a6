#include "util/DateTime.h"

namespace fonklav {
namespace {

/// Adds a number to the `width` zeros that stand at a place.
void PutDigits(char* place, std::size_t width, int number) {
  for (auto rest = static_cast<unsigned>(number); width > 0; rest /= 10) {
    place[--width] = static_cast<char>('0' + rest % 10);
  }
}

}  // namespace

void PutStamp(std::string& line, const LocalTime& time) {
  char* const stamp = line.insert(0, "0000/00/00  00:00:00  ").data();
  PutDigits(stamp, 4, time.year);
  PutDigits(stamp + 5, 2, time.month);
  PutDigits(stamp + 8, 2, time.day);
  PutDigits(stamp + 12, 2, time.hour);
  PutDigits(stamp + 15, 2, time.minute);
  PutDigits(stamp + 18, 2, time.second);
}

std::string GetFormatedDateByString(const LocalTime& time, std::string_view separator, bool yearFirst) {
  std::string stamp;
  PutStamp(stamp, time);
  const std::string year = stamp.substr(0, 4);
  const std::string day = stamp.substr(8, 2);
  std::string date = yearFirst ? year : day;
  date.append(separator).append(stamp, 5, 2).append(separator);
  return date += yearFirst ? day : year;
}

std::string GetFormatedTime(const LocalTime& time) {
  std::string stamp;
  PutStamp(stamp, time);
  return stamp.substr(12, 8);
}

}  // namespace fonklav
