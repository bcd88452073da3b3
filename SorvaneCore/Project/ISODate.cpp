#include "SorvaneCore/Project/ISODate.h"

#include <algorithm>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::ISODate {

namespace {

/// A digit stands where the form has a "0".
constexpr std::string_view localForm = "0000-00-00T00:00:00";

bool hasForm(std::string_view text, std::string_view form) {
    return std::equal(text.begin(), text.end(), form.begin(), form.end(),
                      [](char given, char wanted) {
                          return wanted == '0' ? given >= '0' && given <= '9' : given == wanted;
                      });
}

int digits(std::string_view text, std::size_t from, std::size_t count) {
    int number = 0;
    for (const char digit : text.substr(from, count)) {
        number = 10 * number + (digit - '0');
    }
    return number;
}

/// What local time is ahead of universal time: of "Z", or of a form such as "+01:30".
std::optional<std::chrono::minutes> offsetOf(std::string_view text) {
    if (text == "Z") {
        return std::chrono::minutes(0);
    }
    const bool isAhead = hasForm(text, "+00:00");
    if (!isAhead && !hasForm(text, "-00:00")) {
        return std::nullopt;
    }
    const std::chrono::minutes size =
        std::chrono::hours(digits(text, 1, 2)) + std::chrono::minutes(digits(text, 4, 2));
    return isAhead ? size : -size;
}

std::string padded(std::int64_t number, std::size_t width) {
    const std::string text = NumberText::integer(number);
    return std::string(width - std::min(width, text.size()), '0') + text;
}

}  // namespace

std::string text(std::chrono::sys_seconds moment) {
    const auto midnight = std::chrono::floor<std::chrono::days>(moment);
    const std::chrono::year_month_day day(midnight);
    const std::chrono::hh_mm_ss time(moment - midnight);
    return padded(static_cast<int>(day.year()), 4) + "-" +
           padded(static_cast<unsigned>(day.month()), 2) + "-" +
           padded(static_cast<unsigned>(day.day()), 2) + "T" + padded(time.hours().count(), 2) +
           ":" + padded(time.minutes().count(), 2) + ":" + padded(time.seconds().count(), 2) + "Z";
}

std::optional<std::chrono::sys_seconds> parse(std::string_view text) {
    const std::optional<std::chrono::minutes> offset =
        offsetOf(text.substr(std::min(text.size(), localForm.size())));
    if (!hasForm(text.substr(0, localForm.size()), localForm) || !offset) {
        return std::nullopt;
    }
    const std::chrono::year_month_day day(
        std::chrono::year(digits(text, 0, 4)),
        std::chrono::month(static_cast<unsigned>(digits(text, 5, 2))),
        std::chrono::day(static_cast<unsigned>(digits(text, 8, 2))));
    const std::chrono::hours hours(digits(text, 11, 2));
    const std::chrono::minutes minutes(digits(text, 14, 2));
    const std::chrono::seconds seconds(digits(text, 17, 2));
    if (!day.ok() || hours.count() > 23 || minutes.count() > 59 || seconds.count() > 59) {
        return std::nullopt;
    }
    return std::chrono::sys_days(day) + hours + minutes + seconds - *offset;
}

}  // namespace sorvane::ISODate
