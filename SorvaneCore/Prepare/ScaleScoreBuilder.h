#pragma once

#include <boost/describe/class.hpp>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Analyses/Basics/ScaleScoring.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

struct ScaleScoreOptions {
    /// Listwise deletion asks for every item; the two others for a share of them.
    ReliabilityMissingDataRule missingDataRule = ReliabilityMissingDataRule::listwiseDeletion;
    ScaleScoreMethod scaleScoreMethod = ScaleScoreMethod::mean;
    /// The share of items that a person must have answered; unused under listwise deletion.
    double minimumItemCompletion = 0.8;

    bool operator==(const ScaleScoreOptions&) const = default;
};
BOOST_DESCRIBE_STRUCT(ScaleScoreOptions,
                      (),
                      (missingDataRule, scaleScoreMethod, minimumItemCompletion))

/// One score a person from the items of a scale.
namespace ScaleScoreBuilder {

/// The score of one person.
///
/// Method     the mean of the answers given, or for a sum that mean times the number of items: a
///            person who left items out does not score lower on that account. Under listwise
///            deletion the plain sum or mean
/// Failure    no items, or too few answers for the rule -> absent
std::optional<double> score(std::span<const std::optional<double>> row,
                            const ScaleScoreOptions& options);

/// The scores of all rows; items as columns.
///
/// Cost       O(rows * items)
std::vector<std::optional<double>> scores(std::span<const NumericColumn> matrix,
                                          const ScaleScoreOptions& options);

}  // namespace ScaleScoreBuilder

}  // namespace sorvane
