#include "SorvaneMac/Screens/ClaimText.h"

namespace sorvane::ClaimText {

std::string joined(const std::vector<std::string>& sentences) {
    std::string text;
    for (const std::string& each : sentences) {
        text += (text.empty() ? "" : " ") + each;
    }
    return text;
}

}  // namespace sorvane::ClaimText
