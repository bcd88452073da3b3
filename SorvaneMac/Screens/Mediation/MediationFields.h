#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Models/Mediation/MediationAnalysis.h"
#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class MediationScreenMode { mediation, moderation };
BOOST_DESCRIBE_ENUM(MediationScreenMode, mediation, moderation)
/// As the user reads it.
std::string_view displayName(MediationScreenMode value);

/// The columns of either analysis, by name.
struct MediationVariables {
    std::string x;
    /// The mediator or the moderator.
    std::string middle;
    std::string y;
    std::vector<std::string> covariates;

    bool operator==(const MediationVariables&) const = default;
};
BOOST_DESCRIBE_STRUCT(MediationVariables, (), (x, middle, y, covariates))

/// A mediation as it was run.
struct MediationRun {
    MediationVariables variables;
    /// Absent where the models could not be fitted.
    std::optional<MediationResult> result;
    /// From the cases of the run: what speaks against linear models.
    std::vector<std::string> remarks;

    bool operator==(const MediationRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(MediationRun, (), (variables, result))

/// A moderation as it was run.
struct ModerationRun {
    MediationVariables variables;
    std::optional<ModerationResult> result;
    /// From the cases of the run: the lines of the simple slopes, and what must be said of their
    /// levels and of the model.
    Chart slopes;
    std::vector<std::string> remarks;

    bool operator==(const ModerationRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(ModerationRun, (), (variables, result))

/// The selections of Mediation & Moderation, and each analysis as it was last run.
struct MediationFields {
    explicit MediationFields(FieldRegistry& fields);

    Field<MediationScreenMode> medMode;
    Field<VariableName> medX;
    /// The mediator.
    Field<VariableName> medM;
    /// The moderator.
    Field<VariableName> medW;
    Field<VariableName> medY;
    Field<NameSet> medCovariates;
    Field<bool> medHasRun;
    Field<std::optional<MediationRun>> medResult;
    Field<std::optional<ModerationRun>> modResult;
};

}  // namespace sorvane
