#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "SorvaneMac/Screens/Survey/SurveyFields.h"

/// What the reader of an estimate under a sampling design must be warned of.
namespace sorvane::SurveyCautions {

inline constexpr std::string_view notToClaim =
    "The estimate stands for the population only as far as the weights are sampling weights of "
    "this survey and the cases left out do not differ from those that answered.";

/// The engine's cautions, those of the design's columns, and those of the figures.
std::vector<std::string> warnings(const SurveyRun& run);

}  // namespace sorvane::SurveyCautions
