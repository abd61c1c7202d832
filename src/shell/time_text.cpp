#include "shell/time_text.h"

#include <fmt/format.h>

#include <array>
#include <chrono>
#include <cmath>
#include <string_view>

#include "platform/clock.h"

namespace hcr {
namespace {

constexpr i64 kSecondsPerDay = 86'400;
constexpr i64 kEndOfYear9999 = 253'402'300'800;  // the text has room for four digits of a year
constexpr std::array<const char*, 7> kWeekdays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr std::array<const char*, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

i64 lf_now() {
    return static_cast<i64>(std::floor(gf_utcSeconds()));
}

std::string lf_clockText(i64 unixSeconds) {
    const i64 second = unixSeconds % kSecondsPerDay;
    return fmt::format("{:02}:{:02}:{:02}", second / 3600, second / 60 % 60, second % 60);
}

}  // namespace

std::string gf_utcTimeText(i64 unixSeconds) {
    if (unixSeconds < 0 || unixSeconds >= kEndOfYear9999) return "Invalid time";
    const std::chrono::sys_days day{std::chrono::days{unixSeconds / kSecondsPerDay}};
    const std::chrono::year_month_day date{day};
    return fmt::format("{:3} {:3} {:02} {} {:4}", kWeekdays[std::chrono::weekday{day}.c_encoding()],
                       kMonths[static_cast<unsigned>(date.month()) - 1], static_cast<unsigned>(date.day()),
                       lf_clockText(unixSeconds), static_cast<int>(date.year()));
}

std::string gf_utcTimeText() {
    return gf_utcTimeText(lf_now());
}

std::string gf_dateText() {
    const std::string now = gf_utcTimeText();
    const std::string_view text = now;
    if (text.size() < 24) return now;
    return fmt::format("{}, {}", text.substr(4, 6), text.substr(20, 4));
}

std::string gf_timeOfDay() {
    const i64 now = lf_now();
    return lf_clockText(now < 0 ? 0 : now);
}

}  // namespace hcr
