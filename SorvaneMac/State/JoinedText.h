#pragma once

#include <string>
#include <string_view>

namespace sorvane {

/// The texts of a list in one, with the separator between them: "a, b, c".
template <typename Texts>
std::string joinedText(const Texts& texts, std::string_view separator = ", ") {
    std::string whole;
    for (const std::string& text : texts) {
        whole += whole.empty() ? std::string_view() : separator;
        whole += text;
    }
    return whole;
}

}  // namespace sorvane
