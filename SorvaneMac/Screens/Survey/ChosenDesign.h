#pragma once

#include <memory>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneMac/Screens/Survey/SurveyDesignUsed.h"
#include "SorvaneMac/Screens/Survey/SurveyFields.h"

namespace sorvane {

/// The columns of a sampling design as they were chosen, whether or not they make a sound one. Their
/// cells are read later: replicates are many, and nobody should wait for them.
struct ChosenDesign {
    using Column = std::shared_ptr<const TextColumn>;

    /// Without the counts of strata and units.
    SurveyDesignUsed named;
    Column weight;
    /// Null where not chosen.
    Column strata;
    Column clusters;
    Column fpc;
    std::vector<Column> replicates;
    /// One for each replicate; none for those of the type.
    std::vector<double> replicateScale;
    double confidenceLevel = 0.95;

    static ChosenDesign of(const ImportedDataset& dataset, const SurveyFields& fields);

    /// The same columns and options; a column that was changed is another one.
    bool operator==(const ChosenDesign&) const = default;

    /// Cost       O(rows * columns)
    SurveyDesign design() const;
    /// What the design came to, in words and counts.
    SurveyDesignUsed used(const SurveyDesign& design) const;
};

}  // namespace sorvane
