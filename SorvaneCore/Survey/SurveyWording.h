#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The sentences of estimates from a sample with a design.
namespace sorvane::SurveyWording {

inline constexpr std::string_view minimumRequired =
    "At least 2 rows with a value, and a positive sampling weight for every row";

std::string otherLength(std::size_t values, std::int64_t rows);
std::string tooFewRows(std::int64_t validN);
std::string noWeight();
std::string noUsableReplicate();
std::string beyondNumbers();
std::string notZeroOrOne(std::int64_t count);
std::string fewDegreesOfFreedom(std::int64_t df);

}  // namespace sorvane::SurveyWording
