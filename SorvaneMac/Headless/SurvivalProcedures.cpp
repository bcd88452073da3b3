#include "SorvaneCore/Models/Survival/SurvivalAnalysis.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

/// A column of texts that may be left out, or null.
struct OptionalCategories {
    std::string name;
    CodedColumn read(const CallArguments& call) const {
        return call.isGiven(name) ? call.codedColumn(name) : nullptr;
    }
    std::vector<ListedArgument> listed() const { return {{name, "column of texts", ""}}; }
};

}  // namespace

std::vector<Procedure> survivalProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Column time{"time"};
    const Column event{"event"};
    const CoxOptions start;
    return {
        procedure(
            "SurvivalAnalysis.kaplanMeier",
            [](const NumericColumn& times, const NumericColumn& events, const CodedColumn& group) {
                return SurvivalAnalysis::kaplanMeier(times, events, group.get());
            },
            time, event, OptionalCategories{"group"}),
        procedure(
            "SurvivalAnalysis.coxPH",
            [](const NumericColumn& times, const NumericColumn& events,
               const ColumnList& predictors, const std::vector<std::string>& names, double level,
               std::int64_t maxIterations) {
                return SurvivalAnalysis::coxPH(times, events, predictors,
                                               {.predictorNames = names,
                                                .confidenceLevel = level,
                                                .maxIterations = maxIterations});
            },
            time, event, Columns{"predictors", "predictorNames"},
            Names{"predictorNames", "predictors"},
            Setting<double>{"confidenceLevel", start.confidenceLevel},
            Setting<std::int64_t>{"maxIterations", start.maxIterations}),
    };
}

}  // namespace sorvane
