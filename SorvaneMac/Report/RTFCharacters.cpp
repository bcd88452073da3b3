#include "SorvaneMac/Report/RTFCharacters.h"

#include <algorithm>
#include <array>

namespace sorvane::RTFCharacters {
namespace {

/// 0x80 to 0x9F of Windows-1252.
constexpr std::array<char16_t, 32> upperControls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

struct NamedCharacter {
    std::string_view control;
    char32_t character;
};

constexpr std::array<NamedCharacter, 16> namedCharacters{{{"\\", U'\\'},
                                                          {"{", U'{'},
                                                          {"}", U'}'},
                                                          {"tab", U'\t'},
                                                          {"line", U'\n'},
                                                          {"emdash", U'—'},
                                                          {"endash", U'–'},
                                                          {"lquote", U'‘'},
                                                          {"rquote", U'’'},
                                                          {"ldblquote", U'“'},
                                                          {"rdblquote", U'”'},
                                                          {"bullet", U'•'},
                                                          {"~", U'\u00A0'},
                                                          {"_", U'\u2011'},
                                                          {"emspace", U'\u2003'},
                                                          {"nestcell", U' '}}};

}  // namespace

char32_t windows1252(std::uint8_t byte) {
    const bool isUpperControl = byte >= 0x80 && byte <= 0x9F;
    return isUpperControl ? upperControls[byte - 0x80U] : char32_t{byte};
}

std::optional<char32_t> named(std::string_view control) {
    const auto found = std::ranges::find(namedCharacters, control, &NamedCharacter::control);
    if (found == namedCharacters.end()) {
        return std::nullopt;
    }
    return found->character;
}

}  // namespace sorvane::RTFCharacters
