#include "SorvaneCore/Analyses/Basics/DesignCautions.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::DesignCautions {

bool isLowErrorDF(std::int64_t errorDF) {
    constexpr std::int64_t enough = 20;
    return errorDF < enough;
}

bool isThin(std::int64_t cases) {
    constexpr std::int64_t enough = 5;
    return cases < enough;
}

std::string lowErrorDF(std::int64_t errorDF) {
    return "Error degrees of freedom are low (" + NumberText::integer(errorDF) + ")";
}

std::string onlyCases(const std::string& what, std::int64_t cases) {
    return "The smallest " + what + " has only " + NumberText::integer(cases) + " cases.";
}

}  // namespace sorvane::DesignCautions
