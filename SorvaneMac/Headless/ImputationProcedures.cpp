#include "SorvaneCore/Prepare/Imputation/MICEAnalysis.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

using Copies = std::vector<CompletedColumns>;

/// The settings of an imputation and the names of its columns.
struct ImputationSettings {
    ImputationOptions read(const CallArguments& call) const {
        return {.variableNames = call.columnNames("variableNames", "columns"),
                .m = call.setting("m", start.m),
                .maxIterations = call.setting("maxIterations", start.maxIterations),
                .seed = call.seed("seed", start.seed),
                .donorCount = call.setting("donorCount", start.donorCount)};
    }
    std::vector<ListedArgument> listed() const {
        return {
            {"variableNames", "list of names", ""},
            {"m", "whole number", NumberText::integer(start.m)},
            {"maxIterations", "whole number", NumberText::integer(start.maxIterations)},
            {"seed", "whole number, or text of hexadecimal digits after 0x", "0x9e3779b97f4a7c15"},
            {"donorCount", "whole number", NumberText::integer(start.donorCount)}};
    }
    ImputationOptions start{};
};

Procedure singleImputation(
    std::string name, std::optional<CompletedColumns> (*impute)(std::span<const NumericColumn>)) {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return procedure(
        std::move(name), [impute](const ColumnList& columns) { return impute(columns); },
        Columns{"columns", "variableNames"});
}

}  // namespace

std::vector<Procedure> imputationProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    using Numbers = std::vector<double>;
    using Texts = std::vector<std::string>;
    const Columns columns{"columns", "variableNames"};
    const Setting<double> level{"confidenceLevel", 0.95};
    return {
        procedure(
            "MultipleImputation.impute",
            [](const ColumnList& given, const ImputationOptions& options) {
                return MultipleImputation::impute(given, options);
            },
            columns, ImputationSettings{}),
        procedure(
            "MultipleImputation.pool",
            [](const Numbers& estimates, const Numbers& variances, double confidenceLevel) {
                return MultipleImputation::pool(estimates, variances, confidenceLevel);
            },
            Value<Numbers>{"estimates"}, Value<Numbers>{"variances"}, level),
        procedure(
            "MultipleImputation.pooledMean",
            [](const ColumnList& given, const ImputationOptions& options, const std::string& target,
               double confidenceLevel) {
                return MultipleImputation::pooledMean(given, options, target, confidenceLevel);
            },
            columns, ImputationSettings{}, Value<std::string>{"target"}, level),
        singleImputation("MultipleImputation.meanImpute", &MultipleImputation::meanImpute),
        singleImputation("MultipleImputation.medianImpute", &MultipleImputation::medianImpute),
        singleImputation("MultipleImputation.regressionImpute",
                         &MultipleImputation::regressionImpute),
        procedure(
            "MICEAnalysis.pooledRegression",
            [](const Copies& copies, const Texts& names, const std::string& outcome,
               const Texts& predictors) {
                return MICEAnalysis::pooledRegression(copies, names, outcome, predictors);
            },
            Value<Copies>{"imputedDatasets"}, Value<Texts>{"variableNames"},
            Value<std::string>{"outcome"}, Value<Texts>{"predictors"}),
        procedure(
            "MICEAnalysis.pooledCorrelation",
            [](const Copies& copies, const Texts& names, const std::string& x, const std::string& y,
               const Numbers& correlations, std::int64_t n, double confidenceLevel) {
                return correlations.empty()
                           ? MICEAnalysis::pooledCorrelation(copies, names, x, y, confidenceLevel)
                           : MICEAnalysis::pooledCorrelation(correlations, n, confidenceLevel);
            },
            Setting<Copies>{"imputedDatasets"}, Setting<Texts>{"variableNames"},
            Setting<std::string>{"x"}, Setting<std::string>{"y"}, Setting<Numbers>{"correlations"},
            Setting<std::int64_t>{"n"}, level),
    };
}

}  // namespace sorvane
