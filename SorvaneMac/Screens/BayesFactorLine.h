#pragma once

#include <optional>
#include <string_view>

#include "SorvaneCore/Analyses/Basics/BayesFactors.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// The line of evidence beside a test.
namespace sorvane::BayesFactorLine {

inline constexpr std::string_view tTestCaption =
    "JZS Cauchy prior on the standardized effect, r scale 0.71";
inline constexpr std::string_view anovaCaption =
    "Applies to the classic one-way F. JZS fixed-effects prior, r scale 0.5, balanced-design "
    "approximation";
inline constexpr std::string_view correlationCaption =
    "Applies to the Pearson r. JZS linear-model prior, r scale 0.35";

/// What the factor compares, and the prior that it rests on.
struct Sides {
    std::string_view alternative;
    std::string_view null;
    std::string_view caption;
};

/// The factor with its label and caption; absent without a factor.
std::optional<Passage> passage(const std::optional<BayesFactors::Result>& factor,
                               const Sides& sides);

}  // namespace sorvane::BayesFactorLine
