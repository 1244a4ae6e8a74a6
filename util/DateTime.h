#pragma once

#include <string>
#include <string_view>

namespace fonklav {

/// A local date and time of day as a wall clock shows them. Years are written with four digits, all else with two.
struct LocalTime {
  int year{1601};
  int month{1};
  int day{1};
  int hour{0};
  int minute{0};
  int second{0};
};

/// The date with the separator between its fields, year first ("2015/03/07") or day first ("07/03/2015").
[[nodiscard]] std::string GetFormatedDateByString(const LocalTime& time, std::string_view separator, bool yearFirst);

/// The time of day on a 24-hour clock, "09:05:31".
[[nodiscard]] std::string GetFormatedTime(const LocalTime& time);

/// Puts in front of a line what every line of a log begins with: "2015/03/07  09:05:31  ".
void PutStamp(std::string& line, const LocalTime& time);

}  // namespace fonklav
