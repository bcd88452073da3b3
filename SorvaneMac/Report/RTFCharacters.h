#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// The characters that Rich Text does not write as themselves.
namespace sorvane::RTFCharacters {

/// The character of a byte in Windows-1252; the undefined bytes keep their own number.
char32_t windows1252(std::uint8_t byte);

/// The character that a control such as "emdash" or "~" stands for; absent for other controls.
std::optional<char32_t> named(std::string_view control);

}  // namespace sorvane::RTFCharacters
