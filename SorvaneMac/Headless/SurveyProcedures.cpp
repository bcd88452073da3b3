#include <algorithm>
#include <cmath>
#include <numeric>

#include "SorvaneCore/Survey/SurveyCategorical.h"
#include "SorvaneCore/Survey/SurveyCorrelation.h"
#include "SorvaneCore/Survey/SurveyGLM.h"
#include "SorvaneCore/Survey/SurveyOrdinal.h"
#include "SorvaneCore/Survey/SurveyRegression.h"
#include "SorvaneCore/Survey/SurveyVariance.h"
#include "SorvaneCore/Survey/WeightedEstimators.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

/// A column of one number per row, NaN where a cell has none.
std::vector<double> numbers(const NumericColumn& column) {
    std::vector<double> result(column.size());
    for (std::size_t row = 0; row < result.size(); ++row) {
        result[row] = column[row].value_or(std::nan(""));
    }
    return result;
}

/// The parts of a survey design, of which only the weights must be given.
struct Design {
    SurveyDesign read(const CallArguments& call) const {
        SurveyDesign design{.weights = numbers(call.numericColumn("weights")),
                            .confidenceLevel = call.setting("confidenceLevel", 0.95)};
        if (call.isGiven("strata")) {
            design.strata = call.codedColumn("strata");
        }
        if (call.isGiven("clusters")) {
            design.clusters = call.codedColumn("clusters");
        }
        if (call.isGiven("fpc")) {
            design.fpc = numbers(call.numericColumn("fpc"));
        }
        ReplicateWeights replicates{
            .type = call.setting("type", ReplicateType::jackknife),
            .fayRho = call.setting("fayRho", 0.0),
            .replicateScale =
                call.setting<std::optional<std::vector<double>>>("replicateScale", std::nullopt)};
        if (call.isGiven("replicateWeights")) {
            for (const NumericColumn& each :
                 call.numericColumns("replicateWeights", "replicateWeights")) {
                replicates.weights.push_back(numbers(each));
            }
            design.replicateWeights = std::move(replicates);
        }
        return design;
    }
    std::vector<ListedArgument> listed() const {
        return {{"weights", "column of numbers"},
                {"strata", "column of texts", ""},
                {"clusters", "column of texts", ""},
                {"fpc", "column of numbers", ""},
                {"replicateWeights", "list of columns of numbers", ""},
                {"type", formOf<ReplicateType>(), "jackknife"},
                {"fayRho", "number", "0"},
                {"replicateScale", "list of numbers", ""},
                {"confidenceLevel", "number", "0.95"}};
    }
};

template <typename Compute>
Procedure ofDesign(std::string name, Compute compute) {
    return procedure(std::move(name), compute, Design{});
}

template <typename Estimate>
Procedure ofVariable(std::string name, Estimate estimate) {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return procedure(
        std::move(name),
        [estimate](const NumericColumn& values, const SurveyDesign& design,
                   const std::string& variableName) {
            return estimate(values, design,
                            variableName.empty() ? std::nullopt : std::optional(variableName));
        },
        Column{"variable"}, Design{}, ColumnName{"variableName", "variable"});
}

std::vector<Procedure> designProcedures() {
    return {
        ofDesign("SurveyDesign.structuralErrors",
                 [](const SurveyDesign& design) { return design.structuralErrors(); }),
        ofDesign("SurveyDesign.readinessIssues",
                 [](const SurveyDesign& design) { return design.readinessIssues(); }),
        ofDesign("SurveyDesign.observationCount",
                 [](const SurveyDesign& design) { return design.observationCount(); }),
        ofDesign("SurveyDesign.stratumCount",
                 [](const SurveyDesign& design) { return design.stratumCount(); }),
        ofDesign("SurveyDesign.sampledPSUCount",
                 [](const SurveyDesign& design) { return design.sampledPSUCount(); }),
        ofDesign("SurveyDesign.designDegreesOfFreedom",
                 [](const SurveyDesign& design) { return design.designDegreesOfFreedom(); }),
        ofDesign("SurveyDesign.singlePSUStrata",
                 [](const SurveyDesign& design) { return design.singlePSUStrata(); }),
    };
}

double totalVariance(const NumericColumn& scores,
                     const SurveyDesign& design,
                     const std::optional<std::vector<std::int64_t>>& activeRows) {
    std::vector<std::size_t> rows(scores.size());
    std::iota(rows.begin(), rows.end(), std::size_t{0});
    if (activeRows) {
        rows.assign(activeRows->begin(), activeRows->end());
    }
    const bool isSound = scores.size() == design.weights.size() &&
                         design.structuralErrors().empty() &&
                         std::ranges::all_of(rows, [&](auto row) { return row < scores.size(); });
    if (!isSound) {
        throw CallError("The scores, the active rows and the design do not fit each other.");
    }
    return WeightedEstimators::linearizedTotalVariance(numbers(scores), design, rows);
}

/// Whether a list has that many rows of one column or more. It is divided: a product of sizes beyond
/// reason may be anything.
bool hasShape(const std::vector<double>& list, std::size_t rows, std::size_t cols) {
    return cols > 0 && list.size() % cols == 0 && list.size() / cols == rows;
}

std::vector<double> scoreCovariance(const std::vector<double>& u,
                                    const SurveyDesign& design,
                                    std::int64_t p) {
    const auto size = static_cast<std::size_t>(std::max<std::int64_t>(p, 0));
    if (!hasShape(u, design.weights.size(), size) || !design.structuralErrors().empty()) {
        throw CallError(
            "The scores \"u\" take one row of \"p\" numbers per row of a sound design.");
    }
    return SurveyVariance::scoreCovariance(u, design, size);
}

template <typename Product>
auto squareProduct(Product product) {
    return [product](const std::vector<double>& a, const std::vector<double>& b, std::int64_t p) {
        const auto size = static_cast<std::size_t>(std::max<std::int64_t>(p, 0));
        if (size > 0 ? !hasShape(a, size, size) || !hasShape(b, size, size)
                     : !a.empty() || !b.empty()) {
            throw CallError("Both matrices take \"p\" times \"p\" numbers.");
        }
        return product(a, b, size);
    };
}

std::vector<Procedure> linearizationProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    using Numbers = std::vector<double>;
    return {
        procedure("WeightedEstimators.linearizedTotalVariance", &totalVariance, Column{"of"},
                  Design{}, Setting<std::optional<std::vector<std::int64_t>>>{"activeRows"}),
        procedure("SurveyVariance.scoreCovariance", &scoreCovariance, Value<Numbers>{"u"}, Design{},
                  Value<std::int64_t>{"p"}),
        procedure("SurveyVariance.sandwich", squareProduct(&SurveyVariance::sandwich),
                  Value<Numbers>{"bread"}, Value<Numbers>{"meat"}, Value<std::int64_t>{"p"}),
        procedure("SurveyVariance.multiply", squareProduct(&SurveyVariance::multiply),
                  Value<Numbers>{"a"}, Value<Numbers>{"b"}, Value<std::int64_t>{"p"}),
    };
}

using ModelFit = std::optional<SurveyModelResult> (*)(const NumericColumn&,
                                                      std::span<const NumericColumn>,
                                                      const SurveyDesign&,
                                                      const SurveyModelOptions&);

Procedure modelProcedure(std::string name, ModelFit fit) {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return procedure(
        std::move(name),
        [fit](const NumericColumn& outcome, const ColumnList& predictors,
              const std::vector<std::string>& names, const std::string& outcomeName,
              const SurveyDesign& design) {
            return fit(outcome, predictors, design,
                       {.predictorNames = names, .outcomeName = outcomeName});
        },
        Column{"outcome"}, Columns{"predictors", "predictorNames"},
        Names{"predictorNames", "predictors"}, ColumnName{"outcomeName", "outcome"}, Design{});
}

std::vector<Procedure> populationModelProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return {
        modelProcedure("SurveyRegression.fit", &SurveyRegression::fit),
        modelProcedure("SurveyGLM.fitLogistic", &SurveyGLM::fitLogistic),
        modelProcedure("SurveyGLM.fitPoisson", &SurveyGLM::fitPoisson),
        modelProcedure("SurveyOrdinal.fit", &SurveyOrdinal::fit),
        procedure(
            "SurveyCorrelation.pearson",
            [](const NumericColumn& x, const NumericColumn& y, const std::string& xName,
               const std::string& yName, const SurveyDesign& design) {
                return SurveyCorrelation::pearson(x, y, design, xName, yName);
            },
            Column{"x"}, Column{"y"}, ColumnName{"xName", "x"}, ColumnName{"yName", "y"}, Design{}),
        procedure(
            "SurveyCorrelation.matrix",
            [](const ColumnList& variables, const std::vector<std::string>& names,
               const SurveyDesign& design) {
                return SurveyCorrelation::matrix(variables, design, names);
            },
            Columns{"variables", "variableNames"}, Names{"variableNames", "variables"}, Design{}),
        procedure(
            "SurveyCategorical.test",
            [](const CodedColumn& rows, const CodedColumn& columns, const std::string& rowName,
               const std::string& columnName, const SurveyDesign& design) {
                return SurveyCategorical::test(*rows, *columns, design, rowName, columnName);
            },
            Categories{"rowVariable"}, Categories{"columnVariable"},
            ColumnName{"rowName", "rowVariable"}, ColumnName{"columnName", "columnVariable"},
            Design{}),
    };
}

}  // namespace

std::vector<Procedure> surveyProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    std::vector<Procedure> all = {
        ofVariable("WeightedEstimators.mean", &WeightedEstimators::mean),
        ofVariable("WeightedEstimators.total", &WeightedEstimators::total),
        ofVariable("WeightedEstimators.proportion", &WeightedEstimators::proportion),
        procedure(
            "WeightedEstimators.ratio",
            [](const NumericColumn& numerator, const NumericColumn& denominator,
               const SurveyDesign& design, const std::optional<std::string>& variableName) {
                return WeightedEstimators::ratio(numerator, denominator, design, variableName);
            },
            Column{"numerator"}, Column{"denominator"}, Design{},
            Setting<std::optional<std::string>>{"variableName"}),
        procedure(
            "WeightedEstimators.byGroup",
            [](WeightedEstimand estimand, const NumericColumn& values, const CodedColumn& groups,
               const SurveyDesign& design) {
                return WeightedEstimators::byGroup(estimand, values, *groups, design);
            },
            Setting<WeightedEstimand>{"estimand"}, Column{"variable"}, Categories{"group"},
            Design{}),
        procedure(
            "WeightedEstimators.ratioByGroup",
            [](const NumericColumn& numerator, const NumericColumn& denominator,
               const CodedColumn& groups, const SurveyDesign& design) {
                return WeightedEstimators::ratioByGroup(numerator, denominator, *groups, design);
            },
            Column{"numerator"}, Column{"denominator"}, Categories{"group"}, Design{}),
        procedure("WeightedEstimators.standardDeviation", &WeightedEstimators::standardDeviation,
                  Column{"variable"}, Design{}),
    };
    for (const std::vector<Procedure>& more :
         {designProcedures(), linearizationProcedures(), populationModelProcedures()}) {
        all.insert(all.end(), more.begin(), more.end());
    }
    return all;
}

}  // namespace sorvane
