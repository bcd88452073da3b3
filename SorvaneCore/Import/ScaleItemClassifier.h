#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/TextTable.h"

namespace sorvane {

/// How likely one column is to be a scale item, and why.
struct ScaleItemClassification {
    enum class Category { likelyScale, likelyInformational, likelyIDMetadata, unclear };
    BOOST_DESCRIBE_NESTED_ENUM(
        Category, likelyScale, likelyInformational, likelyIDMetadata, unclear)

    std::string columnName;
    Category category = Category::unclear;
    /// From 0 to 1, rounded to two decimals.
    double scaleProbability = 0.0;
    /// At most the first four.
    std::vector<std::string> reasons;
    /// Whether the column is taken into the reliability item set on its own.
    bool autoSelectAsScale = false;

    bool operator==(const ScaleItemClassification&) const = default;
};
BOOST_DESCRIBE_STRUCT(ScaleItemClassification,
                      (),
                      (columnName, category, scaleProbability, reasons, autoSelectAsScale))

/// Weighs the evidence that columns are scale items, all columns together.
namespace ScaleItemClassifier {

/// One classification per header, in header order.
///
/// Input      `columns` parallel to `headers`, one beyond their end counts as empty; `questionText`
///            header to question wording, empty where there is none
/// Method     three running scores (scale, identifier, informational) from keywords of name and
///            wording, the range of the values, that of the neighbours, and what the values look
///            like
/// Cost       O(levels) of each column beside its profile
std::vector<ScaleItemClassification> classify(
    std::span<const std::string> headers,
    std::span<const TextTable::Column> columns,
    const std::map<std::string, std::string>& questionText);

}  // namespace ScaleItemClassifier

}  // namespace sorvane
