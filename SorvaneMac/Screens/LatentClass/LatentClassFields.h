#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Models/FactorMixtureModel.h"
#include "SorvaneCore/Models/LatentClassModel.h"
#include "SorvaneCore/Models/LatentSweepRow.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class LatentScreenKind { profile, classes, factorMixture };
BOOST_DESCRIBE_ENUM(LatentScreenKind, profile, classes, factorMixture)
/// As the user reads it.
std::string_view displayName(LatentScreenKind value);
/// "Latent profile analysis", "Latent class analysis" or "Factor mixture analysis".
std::string_view analysisName(LatentScreenKind kind);
/// What the kind takes for indicators.
LatentMixtureMode modeOf(LatentScreenKind kind);

/// What a comparison of class counts was made of.
struct SweepBasis {
    LatentScreenKind kind = LatentScreenKind::profile;
    std::vector<std::string> items;

    bool operator==(const SweepBasis&) const = default;
};
BOOST_DESCRIBE_STRUCT(SweepBasis, (), (kind, items))

/// A mixture as it was run.
struct MixtureRun {
    LatentMixtureMode mode = LatentMixtureMode::profile;
    std::vector<std::string> items;
    std::int64_t classCount = 0;
    /// Absent where no such mixture can be asked for.
    std::optional<LatentClassResult> result;

    bool operator==(const MixtureRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(MixtureRun, (), (mode, items, classCount, result))

/// The selections of Latent Class, each kind as it was last run, and what the comparison of class
/// counts found.
struct LatentClassFields {
    explicit LatentClassFields(FieldRegistry& fields);

    Field<LatentMixtureMode> lcMode;
    Field<NameSet> lcItems;
    Field<std::int64_t> lcClassCount;
    Field<bool> lcHasRun;
    Field<LatentScreenKind> lcKind;
    Field<std::optional<std::vector<LatentSweepRow>>> lcSweepRows;
    Field<std::optional<SweepBasis>> lcSweepBasis;
    /// Of profiles; of classes the next one.
    Field<std::optional<MixtureRun>> lcResult;
    Field<std::optional<MixtureRun>> lcClassesResult;
    Field<std::optional<FactorMixtureResult>> fmResult;
    Field<bool> fmHasRun;
    /// The names by which the indicators of `fmResult` are shown, in their order.
    Field<std::vector<std::string>> fmDisplayNames;
};

}  // namespace sorvane
