#include <algorithm>
#include <memory>

#include "SorvaneCore/Analyses/Categorical/CategoricalTests.h"
#include "SorvaneCore/Analyses/Categorical/CrossTabulation.h"
#include "SorvaneCore/Analyses/Categorical/FisherExactTests.h"
#include "SorvaneCore/Analyses/Categorical/GoodnessOfFit.h"
#include "SorvaneCore/Analyses/Categorical/McNemarTests.h"
#include "SorvaneCore/Analyses/NonparametricTests.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

using Proportions = std::optional<std::vector<double>>;

/// The values of two groups: two columns, or an outcome in the rows of two categories.
struct TwoGroups {
    struct Values {
        std::vector<double> group1;
        std::vector<double> group2;
    };

    Values read(const CallArguments& call) const {
        if (!call.has("outcome")) {
            return {.group1 = call.numericColumn("group1").present(),
                    .group2 = call.numericColumn("group2").present()};
        }
        const NumericColumn outcome = call.numericColumn("outcome");
        const CodedColumn groups = call.codedColumn("group");
        return {.group1 = valuesOf(outcome, *groups, call.cell("group1")),
                .group2 = valuesOf(outcome, *groups, call.cell("group2"))};
    }
    std::vector<ListedArgument> listed() const {
        return {{"group1", "column of numbers, or a category of group"},
                {"group2", "column of numbers, or a category of group"},
                {"outcome", "column of numbers", ""},
                {"group", "column of texts", ""}};
    }

private:
    static std::vector<double> valuesOf(const NumericColumn& outcome,
                                        const TextColumn& groups,
                                        const std::string& category) {
        std::vector<double> values;
        for (std::size_t row = 0; row < std::min(outcome.size(), groups.size()); ++row) {
            if (groups[row] == category && outcome[row]) {
                values.push_back(*outcome[row]);
            }
        }
        return values;
    }
};

/// Repeated measurements: rows of values, one per subject, or columns, one per condition.
struct Subjects {
    static constexpr const char* rowsKey = "rowsBySubject";
    static constexpr const char* conditionsKey = "conditions";
    using Rows = std::vector<std::vector<std::optional<double>>>;

    std::optional<FriedmanResult> read(const CallArguments& call) const {
        if (call.hasRows(rowsKey)) {
            return NonparametricTests::friedman(complete(call.required<Rows>(rowsKey)));
        }
        return NonparametricTests::friedman(call.numericColumns(rowsKey, conditionsKey));
    }
    std::vector<ListedArgument> listed() const {
        return {{rowsKey, "list of rows, or of column names", ""},
                {conditionsKey, "list of columns of numbers", ""}};
    }

private:
    /// The rows without a gap.
    static std::vector<std::vector<double>> complete(const Rows& rows) {
        std::vector<std::vector<double>> result;
        for (const std::vector<std::optional<double>>& row : rows) {
            std::vector<double> values;
            for (const std::optional<double>& value : row) {
                if (value) {
                    values.push_back(*value);
                }
            }
            if (values.size() == row.size()) {
                result.push_back(std::move(values));
            }
        }
        return result;
    }
};

/// A table of two rows and two columns: its counts, or the two columns that it counts.
struct TwoByTwo {
    std::string rowsKey;
    std::string columnsKey;

    struct Table {
        std::optional<FourCells> counts{};
        CodedColumn rows{};
        CodedColumn columns{};
    };

    Table read(const CallArguments& call) const {
        if (call.has(rowsKey) || call.has(columnsKey)) {
            return {.rows = call.codedColumn(rowsKey), .columns = call.codedColumn(columnsKey)};
        }
        using Count = std::int64_t;
        return {.counts = FourCells{.a = call.required<Count>("a"),
                                    .b = call.required<Count>("b"),
                                    .c = call.required<Count>("c"),
                                    .d = call.required<Count>("d")}};
    }
    std::vector<ListedArgument> listed() const {
        std::vector<ListedArgument> result = {{rowsKey, "column of texts", ""},
                                              {columnsKey, "column of texts", ""}};
        for (const char* count : {"a", "b", "c", "d"}) {
            result.push_back({count, "whole number", ""});
        }
        return result;
    }
};

/// Counts of categories, or the column that they count.
struct CountsOrCategories {
    struct Table {
        CodedColumn categories{};
        std::vector<std::int64_t> observed{};
        std::vector<std::string> labels{};
    };

    Table read(const CallArguments& call) const {
        if (call.has("categories")) {
            return {.categories = call.codedColumn("categories")};
        }
        return {.observed = call.required<std::vector<std::int64_t>>("observed"),
                .labels = call.setting<std::vector<std::string>>("categoryLabels", {})};
    }
    std::vector<ListedArgument> listed() const {
        return {{"categories", "column of texts", ""},
                {"observed", "list, each a whole number", ""},
                {"categoryLabels", "list of names", ""}};
    }
};

std::vector<Procedure> rankProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return {
        procedure(
            "NonparametricTests.mannWhitneyU",
            [](const TwoGroups::Values& values) {
                return NonparametricTests::mannWhitneyU(values.group1, values.group2);
            },
            TwoGroups{}),
        procedure(
            "NonparametricTests.wilcoxonSignedRank",
            [](const NumericColumn& before, const NumericColumn& after) {
                return NonparametricTests::wilcoxonSignedRank(before, after);
            },
            Column{"before"}, Column{"after"}),
        procedure(
            "NonparametricTests.friedman",
            [](const std::optional<FriedmanResult>& result) { return result; }, Subjects{}),
    };
}

std::vector<Procedure> tableProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Categories rows{"rowCategories"};
    const Categories columns{"columnCategories"};
    return {
        procedure(
            "CategoricalTests.chiSquare",
            [](const CodedColumn& r, const CodedColumn& c) {
                return CategoricalTests::chiSquare(*r, *c);
            },
            rows, columns),
        procedure(
            "CrossTabulation.crosstab",
            [](const CodedColumn& r, const CodedColumn& c) {
                return CrossTabulation::crosstab(*r, *c);
            },
            rows, columns),
        procedure(
            "FisherExactTests.test",
            [](const TwoByTwo::Table& table) {
                return table.counts ? FisherExactTests::test(*table.counts)
                                    : FisherExactTests::test(*table.rows, *table.columns);
            },
            TwoByTwo{"exposure", "outcome"}),
        procedure(
            "McNemarTests.test",
            [](const TwoByTwo::Table& table) {
                return table.counts ? McNemarTests::test(*table.counts)
                                    : McNemarTests::test(*table.rows, *table.columns);
            },
            TwoByTwo{"before", "after"}),
        procedure(
            "GoodnessOfFit.chiSquare",
            [](const CountsOrCategories::Table& table, const Proportions& given) {
                const std::vector<double> proportions = given.value_or(std::vector<double>());
                return table.categories
                           ? GoodnessOfFit::chiSquare(*table.categories, proportions)
                           : GoodnessOfFit::chiSquare(table.observed, table.labels, proportions);
            },
            CountsOrCategories{}, Setting<Proportions>{"expectedProportions"}),
    };
}

}  // namespace

std::vector<Procedure> rankAndTableProcedures() {
    std::vector<Procedure> procedures = rankProcedures();
    for (Procedure& each : tableProcedures()) {
        procedures.push_back(std::move(each));
    }
    return procedures;
}

}  // namespace sorvane
