#include <algorithm>

#include "SorvaneCore/Analyses/GeneralizedRegression/LogisticRegressionTests.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/OrdinalRegressionTests.h"
#include "SorvaneCore/Analyses/GeneralizedRegression/PoissonRegressionTests.h"
#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

/// An outcome column under one of several names.
struct OutcomeCells {
    NameList names;
    CodedColumn read(const CallArguments& call) const {
        const auto given = std::ranges::find_if(
            names, [&call](const std::string& name) { return call.has(name); });
        return call.codedColumn(given == names.end() ? names.front() : *given);
    }
    std::vector<ListedArgument> listed() const {
        std::vector<ListedArgument> result = {{names.front(), "column of numbers or texts"}};
        for (std::size_t i = 1; i < names.size(); ++i) {
            result.push_back({names[i], "column, in place of " + names.front(), ""});
        }
        return result;
    }
};

/// The levels of an ordered outcome, lowest first; none where its numbers give the order.
struct LevelOrder {
    NameList read(const CallArguments& call) const {
        const auto given = [&call](const char* name) {
            return call.has(name) ? call.textColumn(name) : NameList();
        };
        const NameList order = given("levelOrder");
        return order.empty() ? given("order") : order;
    }
    std::vector<ListedArgument> listed() const {
        return {{"levelOrder", "list of levels, lowest first", ""},
                {"order", "list of levels, in place of levelOrder", ""}};
    }
};

/// Whether every cell that is not missing is 0 or 1.
bool isBinary(const TextColumn& column) {
    for (std::size_t code = 0; code < column.levelCount(); ++code) {
        const std::optional<double> number = numericCell(column.level(code));
        if (!MissingValue::isMissing(column.level(code)) && number != 0.0 && number != 1.0) {
            return false;
        }
    }
    return true;
}

Procedure logisticProcedure() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return procedure(
        "LogisticRegressionTests.binaryLogistic",
        [](const ColumnList& predictors, const NameList& names, const CodedColumn& outcome,
           double confidenceLevel, int maxIterations, double tolerance) {
            const LogisticRegressionOptions options{.predictorNames = names,
                                                    .confidenceLevel = confidenceLevel,
                                                    .maxIterations = maxIterations,
                                                    .tolerance = tolerance};
            return isBinary(*outcome)
                       ? LogisticRegressionTests::binaryLogistic(predictors, NumericColumn(outcome),
                                                                 options)
                       : LogisticRegressionTests::binaryLogistic(predictors, *outcome, options);
        },
        Columns{"predictors", "predictorNames"}, Names{"predictorNames", "predictors"},
        OutcomeCells{{"outcome", "outcomeLabels"}}, Setting<double>{"confidenceLevel", 0.95},
        Setting<int>{"maxIterations", LogisticRegressionOptions().maxIterations},
        Setting<double>{"tolerance", LogisticRegressionOptions().tolerance});
}

Procedure poissonProcedure() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return procedure(
        "PoissonRegressionTests.poisson",
        [](const ColumnList& predictors, const NameList& names, const NumericColumn& outcome,
           double confidenceLevel, int maxIterations, double tolerance) {
            return PoissonRegressionTests::poisson(predictors, outcome,
                                                   {.predictorNames = names,
                                                    .confidenceLevel = confidenceLevel,
                                                    .maxIterations = maxIterations,
                                                    .tolerance = tolerance});
        },
        Columns{"predictors", "predictorNames"}, Names{"predictorNames", "predictors"},
        Column{"outcome"}, Setting<double>{"confidenceLevel", 0.95},
        Setting<int>{"maxIterations", PoissonRegressionOptions().maxIterations},
        Setting<double>{"tolerance", PoissonRegressionOptions().tolerance});
}

Procedure ordinalProcedure() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return procedure(
        "OrdinalRegressionTests.proportionalOdds",
        [](const ColumnList& predictors, const NameList& names, const CodedColumn& outcome,
           const NameList& order, int maxIterations, double tolerance) {
            const OrdinalRegressionOptions options{
                .predictorNames = names, .maxIterations = maxIterations, .tolerance = tolerance};
            return order.empty() ? OrdinalRegressionTests::proportionalOdds(
                                       predictors, NumericColumn(outcome), options)
                                 : OrdinalRegressionTests::proportionalOdds(predictors, *outcome,
                                                                            order, options);
        },
        Columns{"predictors", "predictorNames"}, Names{"predictorNames", "predictors"},
        OutcomeCells{{"outcome", "outcomeLevels", "outcomeLabels"}}, LevelOrder{},
        Setting<int>{"maxIterations", OrdinalRegressionOptions().maxIterations},
        Setting<double>{"tolerance", OrdinalRegressionOptions().tolerance});
}

}  // namespace

std::vector<Procedure> generalizedRegressionProcedures() {
    return {logisticProcedure(), poissonProcedure(), ordinalProcedure()};
}

}  // namespace sorvane
