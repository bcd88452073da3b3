#pragma once

#include <cstdint>
#include <optional>
#include <span>
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
    /// Those that its degrees of freedom are counted from.
    std::int64_t stratumCount = 0;
    std::int64_t psuCount = 0;
    std::int64_t degreesOfFreedom = 1;
    std::optional<double> effectiveSampleSize;
    DesignVarianceMethod method = DesignVarianceMethod::naiveWeighted;

    /// Of a result that names all of them.
    template <typename Result>
    static Figures of(const Result& result) {
        return {.sumOfWeights = result.sumOfWeights,
                .stratumCount = result.stratumCount,
                .psuCount = result.psuCount,
                .degreesOfFreedom = result.designDegreesOfFreedom,
                .effectiveSampleSize = result.effectiveSampleSize,
                .method = result.varianceMethod};
    }
};

/// How variances were had, such as "Taylor linearization".
std::string_view methodName(const SurveyDesignUsed& design, DesignVarianceMethod method);
/// The same in a sentence, such as "80 replicate weights, jackknife".
std::string methodWords(const SurveyDesignUsed& design, DesignVarianceMethod method);
/// Strata and PSUs of the rows in use are told beside those of the whole design where the result
/// counts them and they are fewer.
ReportTable table(const SurveyDesignUsed& design, const Figures& figures);
/// The same for several results of one method, each of rows of its own: from the least of each
/// figure to the most.
///
/// Input      one result at least
ReportTable table(const SurveyDesignUsed& design, std::span<const Figures> all);

}  // namespace sorvane::SurveyDesignTable
