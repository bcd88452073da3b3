#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

/// A moment in the form that files hold: UTC, to the second, "2026-03-01T09:30:05Z".
namespace sorvane::ISODate {

std::string text(std::chrono::sys_seconds moment);

/// The moment that a text of exactly that form spells; absent for any other text, and for a day or
/// a time of day that does not exist.
std::optional<std::chrono::sys_seconds> parse(std::string_view text);

}  // namespace sorvane::ISODate
