#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "SorvaneCore/Project/RecordJson.h"

namespace sorvane {

/// A moment in the form that files hold: UTC, to the second, "2026-03-01T09:30:05Z".
namespace ISODate {

std::string text(std::chrono::sys_seconds moment);

/// The moment that a text of exactly that form spells; absent for any other text, and for a day or
/// a time of day that does not exist.
std::optional<std::chrono::sys_seconds> parse(std::string_view text);

}  // namespace ISODate

template <>
struct JsonForm<std::chrono::sys_seconds> {
    template <typename Sink>
    static void write(Sink& sink, std::chrono::sys_seconds moment) {
        sink.text(ISODate::text(moment));
    }
    static std::chrono::sys_seconds from(const Json& json) {
        const auto moment =
            json.is_string() ? ISODate::parse(json.get_ref<const std::string&>()) : std::nullopt;
        if (!moment) {
            record_json::failWanting("a date such as 2026-03-01T09:30:05Z");
        }
        return *moment;
    }
};

}  // namespace sorvane
