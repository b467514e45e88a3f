#include "base/iso8601.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace orvalle::base {
namespace {

using namespace std::chrono;

/// The number that the digits stand for; what is no digit has been sorted out before.
int number(std::string_view digits) {
  int value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

bool matches(std::string_view text, std::string_view form) {
  return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char character, char expected) {
    return expected == '0' ? character >= '0' && character <= '9' : character == expected;
  });
}

}  // namespace

std::string writeIso8601(sys_seconds moment) {
  const auto day = floor<days>(moment);
  const year_month_day date(day);
  const hh_mm_ss time(moment - day);
  char text[64];
  const int length =
      std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                    static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                    static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                    static_cast<int>(time.seconds().count()));
  return {text, static_cast<std::size_t>(length)};
}

std::optional<sys_seconds> readIso8601(std::string_view text) {
  if (!matches(text, "0000-00-00T00:00:00Z")) return {};
  const year_month_day date{year(number(text.substr(0, 4))),
                            month(static_cast<unsigned>(number(text.substr(5, 2)))),
                            day(static_cast<unsigned>(number(text.substr(8, 2))))};
  const int hour = number(text.substr(11, 2));
  const int minute = number(text.substr(14, 2));
  const int second = number(text.substr(17, 2));
  if (!date.ok() || hour > 23 || minute > 59 || second > 59) return {};
  return sys_days(date) + hours(hour) + minutes(minute) + seconds(second);
}

}  // namespace orvalle::base
