#pragma once

#include <boost/describe/class.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Prepare/RecodeRules.h"
#include "SorvaneCore/Prepare/VariableOperations.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The operations as the user reads them and as columns made by them say.
std::string_view displayName(AggregateOp value);
std::string_view displayName(PairOp value);

/// A recoding rule while it is being typed.
struct RecodeDraft {
    /// Values to match, parted by commas.
    std::string sources;
    std::string lower;
    std::string upper;
    bool lowerInclusive = true;
    bool upperInclusive = true;
    /// Blank: recode to missing.
    std::string output;

    bool operator==(const RecodeDraft&) const = default;
};
BOOST_DESCRIBE_STRUCT(RecodeDraft,
                      (),
                      (sources, lower, upper, lowerInclusive, upperInclusive, output))

/// The forms that compute, rename, delete and recode variables.
struct VariableEditorFields {
    explicit VariableEditorFields(FieldRegistry& fields);

    Field<std::string> cvName;
    /// "aggregate" or "pair".
    Field<std::string> cvKind;
    Field<AggregateOp> cvAggOp;
    Field<NameSet> cvSources;
    /// The share of sources that a row must have.
    Field<double> cvMinCompletion;
    Field<VariableName> cvVarA;
    Field<VariableName> cvVarB;
    Field<PairOp> cvPairOp;
    Field<std::optional<std::string>> cvMessage;
    Field<VariableName> dvName;
    Field<std::string> dvNewName;
    Field<std::optional<std::string>> dvMessage;
    Field<VariableName> rcSource;
    Field<std::string> rcName;
    Field<bool> rcReplace;
    /// "value", "range" or "reverse".
    Field<std::string> rcMode;
    Field<std::vector<ValueRecodeRule>> rcValueRules;
    Field<std::vector<RangeRecodeRule>> rcRangeRules;
    Field<RecodeDraft> rcDraft;
    Field<bool> rcCopyUnmatched;
    Field<double> rcReverseMin;
    Field<double> rcReverseMax;
    Field<std::optional<std::string>> rcMessage;
};

}  // namespace sorvane
