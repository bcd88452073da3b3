#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "SorvaneCore/Survey/WeightedEstimators.h"
#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Survey/SurveyDesignUsed.h"

/// The sampling design under which a result was made, as words and as a table.
namespace sorvane::SurveyDesignTable {

/// What a result says of its design.
struct Figures {
    double sumOfWeights = 0.0;
    std::int64_t degreesOfFreedom = 1;
    std::optional<double> effectiveSampleSize;
    DesignVarianceMethod method = DesignVarianceMethod::naiveWeighted;
};

/// How variances were had, such as "Taylor linearization".
std::string_view methodName(const SurveyDesignUsed& design, DesignVarianceMethod method);
/// The same in a sentence, such as "80 replicate weights, jackknife".
std::string methodWords(const SurveyDesignUsed& design, DesignVarianceMethod method);
ReportTable table(const SurveyDesignUsed& design, const Figures& figures);

}  // namespace sorvane::SurveyDesignTable
