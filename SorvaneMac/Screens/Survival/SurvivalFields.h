#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Models/Survival/SurvivalAnalysis.h"
#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

enum class SurvivalAnalysisMode { kaplanMeier, cox };
BOOST_DESCRIBE_ENUM(SurvivalAnalysisMode, kaplanMeier, cox)
/// As the user reads it.
std::string_view displayName(SurvivalAnalysisMode value);

/// Survival curves as they were run.
struct KaplanMeierRun {
    std::string time;
    std::string event;
    /// Empty for one curve.
    std::string group;
    /// Absent where no case counts.
    std::optional<KaplanMeierResult> result;
    /// Both from the cases of the run.
    Chart curves;
    ReportTable atRisk;

    bool operator==(const KaplanMeierRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(KaplanMeierRun, (), (time, event, group, result))

/// A proportional-hazards model as it was run.
struct CoxRun {
    std::string time;
    std::string event;
    std::vector<std::string> predictors;
    std::optional<CoxResult> result;

    bool operator==(const CoxRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(CoxRun, (), (time, event, predictors, result))

/// The selections of Survival, and each analysis as it was last run.
struct SurvivalFields {
    explicit SurvivalFields(FieldRegistry& fields);

    Field<SurvivalAnalysisMode> survMode;
    Field<VariableName> survTime;
    Field<VariableName> survEvent;
    Field<VariableName> survGroup;
    Field<NameSet> survPredictors;
    Field<bool> survHasRun;
    Field<std::optional<KaplanMeierRun>> survKMResult;
    Field<std::optional<CoxRun>> survCoxResult;
};

}  // namespace sorvane
