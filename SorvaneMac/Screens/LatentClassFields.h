#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Models/LatentMixtureMode.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class LatentScreenKind { profile, classes, factorMixture };
BOOST_DESCRIBE_ENUM(LatentScreenKind, profile, classes, factorMixture)
/// As the user reads it.
std::string_view displayName(LatentScreenKind value);

/// One fit of the comparison of class counts.
struct LatentSweepRow {
    std::int64_t k = 0;
    double logLik = 0.0;
    double aic = 0.0;
    double bic = 0.0;
    double entropy = 0.0;
    bool converged = false;

    bool operator==(const LatentSweepRow&) const = default;
};
BOOST_DESCRIBE_STRUCT(LatentSweepRow, (), (k, logLik, aic, bic, entropy, converged))

/// The selections of Latent Class and what its comparison of class counts found.
struct LatentClassFields {
    explicit LatentClassFields(FieldRegistry& fields);

    Field<LatentMixtureMode> lcMode;
    Field<NameSet> lcItems;
    Field<std::int64_t> lcClassCount;
    Field<bool> lcHasRun;
    Field<LatentScreenKind> lcKind;
    Field<std::optional<std::vector<LatentSweepRow>>> lcSweepRows;
    Field<bool> fmHasRun;
    Field<std::vector<std::string>> fmDisplayNames;
};

}  // namespace sorvane
