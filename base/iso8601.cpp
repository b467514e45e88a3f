#include "base/iso8601.h"

#include <algorithm>
#include <charconv>

namespace orvalle::base {
namespace {

using namespace std::chrono;

/// The number that the digits stand for; what is no digit has been sorted out before.
int number(std::string_view digits) {
  int value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

/// Puts the number's digits over the zeros that end before `end`.
void putNumber(std::string& text, std::size_t end, unsigned number) {
  for (; number > 0; number /= 10) text[--end] = static_cast<char>('0' + number % 10);
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
  std::string text = "0000-00-00T00:00:00Z";
  putNumber(text, 4, static_cast<unsigned>(static_cast<int>(date.year())));
  putNumber(text, 7, static_cast<unsigned>(date.month()));
  putNumber(text, 10, static_cast<unsigned>(date.day()));
  putNumber(text, 13, static_cast<unsigned>(time.hours().count()));
  putNumber(text, 16, static_cast<unsigned>(time.minutes().count()));
  putNumber(text, 19, static_cast<unsigned>(time.seconds().count()));
  return text;
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
