#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace fonklav {

/// A local date and time of day as a wall clock shows them.
struct LocalTime {
  int year{1601};
  int month{1};
  int day{1};
  int hour{0};
  int minute{0};
  int second{0};
};

/// Adds a number in decimal, zeros in front up to `width` digits.
void AppendPadded(std::string& text, int number, std::size_t width);

/// The date with the separator between its fields, year first ("2015/03/07") or day first ("07/03/2015").
[[nodiscard]] std::string GetFormatedDateByString(const LocalTime& time, std::string_view separator, bool yearFirst);

/// The time of day on a 24-hour clock, "09:05:31".
[[nodiscard]] std::string GetFormatedTime(const LocalTime& time);

/// Adds what every line of a log begins with: "2015/03/07  09:05:31  ".
void AppendStamp(std::string& text, const LocalTime& time);

}  // namespace fonklav
