#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/Uuid.h"
#include "SorvaneCore/Dataset/ValueLabels.h"

namespace sorvane {

/// The research role of a variable, in the order in which roles are listed.
enum class VariableKind {
    demographicBackground,
    status,
    psychometricItem,
    testItem,
    rubricItem,
    outcome,
    grouping,
    textResponse,
    administrative,
    exclude,
};
BOOST_DESCRIBE_ENUM(VariableKind,
                    demographicBackground,
                    status,
                    psychometricItem,
                    testItem,
                    rubricItem,
                    outcome,
                    grouping,
                    textResponse,
                    administrative,
                    exclude)

/// The stored text of a role, such as "psychometric_item".
std::string_view rawValue(VariableKind kind);
/// The text shown to the user; `exclude` is shown as "Ignore".
std::string_view displayName(VariableKind kind);

bool isReliabilityEligible(VariableKind kind);
bool includedInDescriptivesByDefault(VariableKind kind);
bool canServeAsDependentVariable(VariableKind kind);
bool canServeAsIndependentGroupingVariable(VariableKind kind);
bool isIgnoredForAnalysis(VariableKind kind);

/// The declared or inferred valid range of a variable.
struct ScaleRange {
    std::optional<double> minimum;
    std::optional<double> maximum;

    bool operator==(const ScaleRange&) const = default;

    /// "1-5", "1.50+", "up to 7" or "Not set".
    std::string displayText() const;
};
BOOST_DESCRIBE_STRUCT(ScaleRange, (), (minimum, maximum))

/// Summary of the cells of a column that parse as numbers.
struct NumericSummary {
    double minimum = 0.0;
    double maximum = 0.0;
    double mean = 0.0;

    bool operator==(const NumericSummary&) const = default;
};
BOOST_DESCRIBE_STRUCT(NumericSummary, (), (minimum, maximum, mean))

/// One column's record: its role, its counts and what the classifier had to say.
struct DataVariable {
    Uuid id;
    std::string name;
    std::optional<std::string> label;
    std::optional<ValueLabels> valueLabels;
    /// What the classifier decided; never changed by the user.
    VariableKind inferredType = VariableKind::status;
    /// The working role; starts as `inferredType`.
    VariableKind assignedType = VariableKind::status;
    std::optional<std::string> assignedConstruct;
    std::optional<ScaleRange> scaleRange;
    bool includeInReliability = false;
    bool includeInDescriptives = false;
    std::int64_t missingCount = 0;
    std::int64_t nonMissingCount = 0;
    /// Distinct non-missing cells after trimming and lower-casing.
    std::int64_t uniqueCount = 0;
    std::optional<NumericSummary> numericSummary;
    /// At most the first four non-missing cells, as they stand.
    std::vector<std::string> sampleValues;
    std::vector<std::string> warnings;

    bool operator==(const DataVariable&) const = default;

    /// Whether the variable is offered as a numeric outcome.
    bool isOutcomeSelectionCandidate() const;

    /// Whether the variable is offered as a grouping factor in a table of `rowCount` rows.
    ///
    /// Method     at least 2 distinct values and at most 12 (up to 23 rows), half the rows (up to
    ///            59 rows) or 30
    bool isGroupingSelectionCandidate(std::int64_t rowCount) const;
};
BOOST_DESCRIBE_STRUCT(DataVariable,
                      (),
                      (id,
                       name,
                       label,
                       valueLabels,
                       inferredType,
                       assignedType,
                       assignedConstruct,
                       scaleRange,
                       includeInReliability,
                       includeInDescriptives,
                       missingCount,
                       nonMissingCount,
                       uniqueCount,
                       numericSummary,
                       sampleValues,
                       warnings))

}  // namespace sorvane
