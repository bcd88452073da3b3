#include <algorithm>
#include <functional>

#include "SorvaneCore/Analyses/AssumptionAudit/AssumptionAudit.h"
#include "SorvaneCore/Analyses/AssumptionAudit/BreuschPagan.h"
#include "SorvaneCore/Analyses/AssumptionAudit/VarianceInflation.h"
#include "SorvaneCore/Analyses/Basics/BayesFactors.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonEngine.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

using GroupList = std::vector<NamedNumericGroup>;

/// The outcome and the group of each row, with the names by which results quote them.
struct ComparedColumns {
    CodedColumn groups;
    NumericColumn outcomes;
    std::string groupName;
    std::string outcomeName;
};

/// "outcomeValues" and "groupValues", or "outcome" and "group" for short; a column given by its
/// name gives that name where none is given.
struct ComparedColumnsArgument {
    ComparedColumns read(const CallArguments& call) const {
        const std::string outcome = call.has("outcome") ? "outcome" : "outcomeValues";
        const std::string group = call.has("group") ? "group" : "groupValues";
        return {.groups = call.codedColumn(group),
                .outcomes = call.numericColumn(outcome),
                .groupName = call.columnName("groupName", group),
                .outcomeName = call.columnName("outcomeName", outcome)};
    }
    std::vector<ListedArgument> listed() const {
        return {{"outcomeValues", "column of numbers"},
                {"groupValues", "column of texts"},
                {"outcomeName", "text", "the name of the column"},
                {"groupName", "text", "the name of the column"}};
    }
};

/// The two samples of a t-test: "a" and "b", or two groups by name, the first two by default.
struct TwoSamples {
    GroupList read(const CallArguments& call) const {
        if (call.has("a") || call.has("b")) {
            return {{.name = "a", .values = call.numericColumn("a").present()},
                    {.name = "b", .values = call.numericColumn("b").present()}};
        }
        const GroupList groups = call.namedGroups("groups");
        if (groups.size() < 2) {
            throw CallError("The test needs two groups of two values or more.");
        }
        return {pick(groups, call.label("groupA", groups[0].name)),
                pick(groups, call.label("groupB", groups[1].name))};
    }
    std::vector<ListedArgument> listed() const {
        std::vector<ListedArgument> list = {{"a", "column of numbers", ""},
                                            {"b", "column of numbers", ""}};
        for (ListedArgument& argument : arguments::Groups{}.listed()) {
            list.push_back(std::move(argument));
        }
        list.push_back({"groupA", "text", "the first group"});
        list.push_back({"groupB", "text", "the second group"});
        return list;
    }

private:
    static NamedNumericGroup pick(const GroupList& groups, const std::string& name) {
        const auto found = std::ranges::find(groups, name, &NamedNumericGroup::name);
        return found == groups.end() ? NamedNumericGroup{.name = name} : *found;
    }
};

VarianceAssumption assumption(bool equalVariances) {
    return equalVariances ? VarianceAssumption::equal : VarianceAssumption::unequal;
}

/// Whether the deciding test leaves the variances of the groups equal, as the analysis has it.
bool seemEqual(const GroupList& groups) {
    const auto test = HomogeneityTests::leveneTest(groups, LeveneCenter::median);
    return !test || test->warningLevel == WarningLevel::info;
}

/// The p-values after one method, or after each that there is.
void writeAdjusted(const CallArguments& call, JsonValueSink& sink) {
    const auto pValues = call.required<std::vector<double>>("pValues");
    const auto method = call.setting<std::optional<PostHocMethod>>("method", std::nullopt);
    call.expectNoOthers();
    if (method) {
        writeJson(sink, GroupComparisonEngine::adjust(pValues, *method));
        return;
    }
    sink.beginObject();
    for (const PostHocMethod each :
         {PostHocMethod::holmPairwiseT, PostHocMethod::bonferroniPairwiseT}) {
        sink.key(record_json::enumeratorText(each));
        writeJson(sink, GroupComparisonEngine::adjust(pValues, each));
    }
    sink.endObject();
}

Procedure adjustProcedure() {
    return {.name = "GroupComparisonEngine.adjust",
            .arguments = {{"pValues", formOf<std::vector<double>>()},
                          {"method", formOf<PostHocMethod>(), "each that adjusts"}},
            .answer = writeAdjusted};
}

std::vector<Procedure> testProcedures() {
    using namespace arguments;             // NOLINT(google-build-using-namespace)
    using namespace GroupComparisonTests;  // NOLINT(google-build-using-namespace)
    const Groups groups{};
    return {
        procedure(
            "GroupComparisonTests.oneSampleTTest",
            [](const std::vector<double>& values, double mean) {
                return oneSampleTTest(values, mean);
            },
            OnlyPresentNumbers{}, Setting<double>{"populationMean"}),
        procedure(
            "GroupComparisonTests.pairedSamplesTTest",
            [](const NumericColumn& before, const NumericColumn& after) {
                return pairedSamplesTTest(before.rows(), after.rows());
            },
            Column{"before"}, Column{"after"}),
        procedure(
            "GroupComparisonTests.independentSamplesTTest",
            [](const GroupList& two, bool equal) {
                return independentSamplesTTest(two[0].values, two[1].values, assumption(equal));
            },
            TwoSamples{}, Setting<bool>{"equalVariances"}),
        procedure(
            "GroupComparisonTests.oneWayANOVA",
            [](const GroupList& compared) { return oneWayANOVA(compared); }, groups),
        procedure(
            "GroupComparisonTests.pairwiseComparisons",
            [](const GroupList& compared, std::optional<ANOVAResult> anova, double level) {
                anova = anova ? anova : oneWayANOVA(compared);
                return anova ? pairwiseComparisons(compared, *anova, level)
                             : std::vector<ANOVAPairwiseComparison>();
            },
            groups, Setting<std::optional<ANOVAResult>>{"anova"},
            Setting<double>{"familyConfidenceLevel", 0.95}),
    };
}

std::vector<Procedure> omnibusProcedures() {
    using namespace arguments;              // NOLINT(google-build-using-namespace)
    using namespace GroupComparisonEngine;  // NOLINT(google-build-using-namespace)
    const Groups groups{};
    return {
        procedure(
            "GroupComparisonEngine.readiness",
            [](const ComparedColumns& columns) {
                return readiness(*columns.groups, columns.outcomes);
            },
            ComparedColumnsArgument{}),
        procedure(
            "GroupComparisonEngine.analyze",
            [](const ComparedColumns& columns, GroupComparisonOptions options) {
                options.outcomeName = columns.outcomeName;
                options.groupName = columns.groupName;
                return analyze(*columns.groups, columns.outcomes, options);
            },
            ComparedColumnsArgument{}, Settings<GroupComparisonOptions>{}),
        procedure(
            "GroupComparisonEngine.welchANOVA",
            [](const GroupList& compared) { return welchANOVA(compared); }, groups),
        procedure(
            "GroupComparisonEngine.brownForsytheANOVA",
            [](const GroupList& compared) { return brownForsytheANOVA(compared); }, groups),
        procedure(
            "GroupComparisonEngine.kruskalWallis",
            [](const GroupList& compared) { return kruskalWallis(compared); }, groups),
        procedure(
            "GroupComparisonEngine.leveneTest",
            [](const GroupList& compared, LeveneCenter center) {
                return leveneTest(compared, center);
            },
            groups, Setting<LeveneCenter>{"center", LeveneCenter::median}),
        procedure(
            "GroupComparisonEngine.homogeneityTests",
            [](const GroupList& compared) { return homogeneityTests(compared); }, groups),
    };
}

std::vector<Procedure> postHocProcedures() {
    using namespace arguments;              // NOLINT(google-build-using-namespace)
    using namespace GroupComparisonEngine;  // NOLINT(google-build-using-namespace)
    const Groups groups{};
    return {
        procedure(
            "GroupComparisonEngine.tukeyHSD",
            [](const GroupList& compared, std::optional<double> meanSquare,
               std::optional<std::int64_t> df) {
                const ANOVAResult anova =
                    GroupComparisonTests::oneWayANOVA(compared).value_or(ANOVAResult());
                const auto anovaDf = static_cast<double>(anova.dfWithin);
                return tukeyHSD(compared, meanSquare.value_or(anova.ssWithin / anovaDf),
                                df.value_or(anova.dfWithin));
            },
            groups, Setting<std::optional<double>>{"msWithin"},
            Setting<std::optional<std::int64_t>>{"dfWithin"}),
        procedure(
            "GroupComparisonEngine.gamesHowell",
            [](const GroupList& compared) { return gamesHowell(compared); }, groups),
        procedure(
            "GroupComparisonEngine.dunnTest",
            [](const GroupList& compared) { return dunnTest(compared); }, groups),
        procedure(
            "GroupComparisonEngine.pairwiseTTests",
            [](const GroupList& compared, PostHocMethod method, std::optional<bool> equal) {
                return pairwiseTTests(compared, method,
                                      assumption(equal.value_or(seemEqual(compared))));
            },
            groups, Setting<PostHocMethod>{"method", PostHocMethod::holmPairwiseT},
            Setting<std::optional<bool>>{"equalVariances"}),
        adjustProcedure(),
    };
}

std::vector<Procedure> bayesFactorProcedures() {
    using namespace arguments;     // NOLINT(google-build-using-namespace)
    using namespace BayesFactors;  // NOLINT(google-build-using-namespace)
    using Whole = std::int64_t;
    const Value<Whole> n{"n"};
    return {
        procedure(
            "BayesFactors.jzsTTest",
            [](double t, Whole n1, std::optional<Whole> n2, double scale) {
                return jzsTTest(t, n1, n2, scale);
            },
            Value<double>{"t"}, Value<Whole>{"n1"}, Setting<std::optional<Whole>>{"n2"},
            Setting<double>{"rscale", tTestScale}),
        procedure(
            "BayesFactors.correlationBF",
            [](double r, Whole cases) { return correlationBF(r, cases); }, Value<double>{"r"}, n),
        procedure(
            "BayesFactors.gPriorLinearModel",
            [](Whole cases, Whole p, double r2, double scale) {
                return gPriorLinearModel(cases, p, r2, scale);
            },
            n, Value<Whole>{"p"}, Value<double>{"r2"}, Setting<double>{"rscale", correlationScale}),
        procedure(
            "BayesFactors.oneWayAnovaBF",
            [](double f, Whole groups, Whole perGroupN, double scale) {
                return oneWayAnovaBF(f, groups, perGroupN, scale);
            },
            Value<double>{"F"}, Value<Whole>{"groups"}, Value<Whole>{"perGroupN"},
            Setting<double>{"rscale", anovaScale}),
        procedure(
            "BayesFactors.semApproximateBF",
            [](double chiSquare, Whole df, Whole cases) {
                return semApproximateBF(chiSquare, df, cases);
            },
            Value<double>{"chiSquare"}, Value<Whole>{"degreesOfFreedom"}, n),
        procedure(
            "BayesFactors.evidenceLabel",
            [](double bf10, const std::string& alternative, const std::string& null) {
                return evidenceLabel(bf10, alternative, null);
            },
            Value<double>{"bf10"}, Value<std::string>{"alternative"}, Value<std::string>{"null"}),
    };
}

/// The differences of pairs, or "before" less "after".
struct Differences {
    std::vector<double> read(const CallArguments& call) const {
        if (!call.has("before")) {
            return call.numericColumn("differences").present();
        }
        const NumericColumn before = call.numericColumn("before");
        const NumericColumn after = call.numericColumn("after");
        const CompleteCases::Pairs pairs = CompleteCases::pairs(before.rows(), after.rows());
        std::vector<double> differences(pairs.x.size());
        std::ranges::transform(pairs.x, pairs.y, differences.begin(), std::minus());
        return differences;
    }
    std::vector<ListedArgument> listed() const {
        return {{"differences", "column of numbers", ""},
                {"before", "column of numbers, in place of differences", ""},
                {"after", "column of numbers, in place of differences", ""}};
    }
};

/// Predictors without the rows that have no outcome, where one is given.
ColumnList rowsOfModel(ColumnList predictors, const ColumnList& outcome) {
    if (outcome.empty()) {
        return predictors;
    }
    for (NumericColumn& predictor : predictors) {
        std::vector<std::optional<double>> rows = predictor.rows();
        for (std::size_t i = 0; i < std::min(rows.size(), outcome[0].size()); ++i) {
            rows[i] = outcome[0][i] ? rows[i] : std::nullopt;
        }
        predictor = NumericColumn(std::move(rows));
    }
    return predictors;
}

/// A column that may be left out: none, or one.
struct OptionalColumn {
    std::string name;
    ColumnList read(const CallArguments& call) const {
        return call.has(name) ? std::vector{call.numericColumn(name)} : ColumnList();
    }
    std::vector<ListedArgument> listed() const { return {{name, "column of numbers", ""}}; }
};

std::vector<Procedure> auditProcedures() {
    using namespace arguments;        // NOLINT(google-build-using-namespace)
    using namespace AssumptionAudit;  // NOLINT(google-build-using-namespace)
    return {
        procedure(
            "AssumptionAudit.groupComparisonAudit",
            [](const GroupList& compared) { return groupComparisonAudit(compared); }, Groups{}),
        procedure(
            "AssumptionAudit.pairedAudit",
            [](const std::vector<double>& differences) { return pairedAudit(differences); },
            Differences{}),
        procedure(
            "AssumptionAudit.correlationAudit",
            [](const ColumnList& columns, const NameList& names) {
                std::vector<std::vector<double>> values;
                for (const NumericColumn& column : columns) {
                    values.push_back(column.present());
                }
                return correlationAudit(values, names);
            },
            Columns{"variables", "names"}, Names{"names", "variables"}),
        procedure(
            "AssumptionAudit.regressionAudit",
            [](const ColumnList& predictors, const NameList& names, const NumericColumn& outcome) {
                return regressionAudit(predictors, names, outcome);
            },
            Columns{"predictors", "predictorNames"}, Names{"predictorNames", "predictors"},
            Column{"outcome"}),
        procedure(
            "BreuschPagan.test",
            [](const ColumnList& predictors, const NumericColumn& outcome) {
                return BreuschPagan::test(predictors, outcome);
            },
            Columns{"predictors", "predictorNames"}, Column{"outcome"}),
        procedure(
            "VarianceInflation.factors",
            [](const ColumnList& predictors, const NameList& names, const ColumnList& outcome) {
                return VarianceInflation::factors(rowsOfModel(predictors, outcome), names);
            },
            Columns{"predictors", "names"}, Names{"names", "predictors"},
            OptionalColumn{"outcome"}),
    };
}

}  // namespace

std::vector<Procedure> groupComparisonProcedures() {
    std::vector<Procedure> procedures;
    for (std::vector<Procedure> some : {testProcedures(), omnibusProcedures(), postHocProcedures(),
                                        bayesFactorProcedures(), auditProcedures()}) {
        procedures.insert(procedures.end(), std::make_move_iterator(some.begin()),
                          std::make_move_iterator(some.end()));
    }
    return procedures;
}

}  // namespace sorvane
