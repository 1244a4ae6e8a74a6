#include "util/DateTime.h"

namespace fonklav {

void PutStamp(std::string& line, const LocalTime& time) {
  struct Field {
    int number;
    std::size_t last;  ///< place of its last digit
  };
  line.insert(0, "0000/00/00  00:00:00  ");
  for (auto [number, place] : {Field{time.year % 10000, 3}, Field{time.month, 6}, Field{time.day, 9},
                               Field{time.hour, 13}, Field{time.minute, 16}, Field{time.second, 19}}) {
    for (; number > 0; number /= 10) line[place--] = static_cast<char>('0' + number % 10);
  }
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
