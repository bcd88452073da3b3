#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <string>

#include "SorvaneCore/Survey/SurveyDesign.h"

namespace sorvane {

/// The columns that make up a sampling design, and what they came to.
struct SurveyDesignUsed {
    std::string weight;
    /// Empty where the design has none.
    std::string strata;
    std::string clusters;
    std::string fpc;
    std::int64_t replicateCount = 0;
    ReplicateType replicateType = ReplicateType::jackknife;
    double fayRho = 0.0;
    /// Whether the replicates bring multipliers that stand in place of those of their type.
    bool isScaled = false;
    std::int64_t stratumCount = 0;
    std::int64_t psuCount = 0;

    bool operator==(const SurveyDesignUsed&) const = default;
};
BOOST_DESCRIBE_STRUCT(SurveyDesignUsed,
                      (),
                      (weight,
                       strata,
                       clusters,
                       fpc,
                       replicateCount,
                       replicateType,
                       fayRho,
                       isScaled,
                       stratumCount,
                       psuCount))

}  // namespace sorvane
