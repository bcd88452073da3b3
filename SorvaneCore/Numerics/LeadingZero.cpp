#include "SorvaneCore/Numerics/LeadingZero.h"

namespace sorvane::NumberText {

std::string withoutLeadingZero(std::string text) {
    if (text.starts_with("0.")) {
        text.erase(0, 1);
    } else if (text.starts_with("-0.")) {
        text.erase(1, 1);
    }
    return text;
}

}  // namespace sorvane::NumberText
