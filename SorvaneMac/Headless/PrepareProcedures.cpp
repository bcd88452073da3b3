#include <algorithm>

#include "SorvaneCore/Analyses/Basics/ValueOrder.h"
#include "SorvaneCore/Analyses/Categorical/SampleComposition.h"
#include "SorvaneCore/Prepare/BinnedVariableBuilder.h"
#include "SorvaneCore/Prepare/ComputedVariableBuilder.h"
#include "SorvaneCore/Prepare/DataCleaning.h"
#include "SorvaneCore/Prepare/DataTransforms.h"
#include "SorvaneCore/Prepare/MissingDataAnalysis.h"
#include "SorvaneCore/Prepare/ScaleScoreBuilder.h"
#include "SorvaneCore/Prepare/SubgroupMissingness.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

using Texts = std::vector<std::string>;
using One = const NumericColumn&;
using Bound = std::optional<double>;
using DataTransforms::Unmatched;

constexpr double applicationCompletion = 0.8;
constexpr std::int64_t applicationBands = 4;

Texts cellsOf(const TextColumn& column) {
    Texts cells;
    cells.reserve(column.size());
    for (std::size_t row = 0; row < column.size(); ++row) {
        cells.emplace_back(column[row]);
    }
    return cells;
}

Unmatched unmatched(bool copied) {
    return copied ? Unmatched::kept : Unmatched::missing;
}

/// Recoding rules as a call gives them, whose ids may be left out.
struct GivenValueRule {
    std::optional<Uuid> id{};
    std::vector<double> sources{};
    std::optional<double> output{};

    ValueRecodeRule rule() const {
        return {.id = id.value_or(Uuid()), .sources = sources, .output = output};
    }
};
BOOST_DESCRIBE_STRUCT(GivenValueRule, (), (id, sources, output))

struct GivenRangeRule {
    std::optional<Uuid> id{};
    double lower = 0.0;
    double upper = 0.0;
    std::optional<bool> lowerInclusive{};
    std::optional<bool> upperInclusive{};
    std::optional<double> output{};

    RangeRecodeRule rule() const {
        return {.id = id.value_or(Uuid()),
                .lower = lower,
                .upper = upper,
                .lowerInclusive = lowerInclusive.value_or(true),
                .upperInclusive = upperInclusive.value_or(true),
                .output = output};
    }
};
BOOST_DESCRIBE_STRUCT(GivenRangeRule,
                      (),
                      (id, lower, upper, lowerInclusive, upperInclusive, output))

template <typename Given>
auto rulesOf(const std::vector<Given>& given) {
    std::vector<decltype(Given().rule())> rules;
    for (const Given& each : given) {
        rules.push_back(each.rule());
    }
    return rules;
}

/// A table by rows of cells or by the names of its columns, and those of them that make the key.
struct KeyedTable {
    struct Table {
        TextTable rows{};
        std::vector<std::size_t> key{};
    };

    Table read(const CallArguments& call) const {
        if (!call.has("rows")) {
            return tableOf(call.codedColumns("keyColumns", "columns"));
        }
        if (!call.hasRows("rows")) {
            Table table = tableOf(call.codedColumns("rows", "rows"));
            return keyed(std::move(table), call);
        }
        const auto rows = call.required<std::vector<Texts>>("rows");
        std::size_t width = 0;
        for (const Texts& row : rows) {
            width = std::max(width, row.size());
        }
        Table table = keyed({.rows = TextTable::fromRows(rows, width)}, call);
        return table.key.empty() ? Table{.rows = joined(rows)} : table;
    }
    std::vector<ListedArgument> listed() const {
        return {{"rows", "list of rows of texts, or of column names", ""},
                {"keyColumns", "list of positions counted from 0, or of column names", ""}};
    }

private:
    static Table tableOf(std::vector<TextTable::Column> columns) {
        const std::size_t rows = columns.empty() ? 0 : columns.front()->size();
        return {.rows = TextTable(std::move(columns), rows)};
    }
    /// One column of the rows as they are compared, so that a row is not like one with a blank more.
    static TextTable joined(const std::vector<Texts>& rows) {
        std::vector<Texts> keys;
        for (const Texts& row : rows) {
            std::string key;
            for (const std::string& cell : row) {
                key += (&cell == &row.front() ? "" : "\x1F") + cell;
            }
            keys.push_back({key});
        }
        return TextTable::fromRows(keys, 1);
    }
    static Table keyed(Table table, const CallArguments& call) {
        table.key = call.setting<std::vector<std::size_t>>("keyColumns", {});
        for (const std::size_t column : table.key) {
            if (column >= table.rows.columnCount()) {
                throw CallError("The argument \"keyColumns\" names a column that is not there.");
            }
        }
        return table;
    }
};

std::vector<Procedure> transformProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    using ValueRules = std::vector<GivenValueRule>;
    using RangeRules = std::vector<GivenRangeRule>;
    const Setting<bool> copyUnmatched{"copyUnmatched", true};
    return {
        procedure(
            "DataTransforms.rowAggregate",
            [](const ColumnList& columns, AggregateOp op, double completion) {
                return DataTransforms::rowAggregate(columns, op, completion);
            },
            Columns{"columns", "columnNames"}, Setting<AggregateOp>{"op", AggregateOp::mean},
            Setting<double>{"minimumCompletion", 0.0}),
        procedure("DataTransforms.pairCombine", &DataTransforms::pairCombine, Column{"a"},
                  Column{"b"}, Setting<PairOp>{"op", PairOp::difference}),
        procedure(
            "DataTransforms.recodeValues",
            [](One column, const ValueRules& rules, bool copied) {
                return DataTransforms::recodeValues(column, rulesOf(rules), unmatched(copied));
            },
            OnlyColumn{}, Value<ValueRules>{"rules"}, copyUnmatched),
        procedure(
            "DataTransforms.recodeRanges",
            [](One column, const RangeRules& rules, bool copied) {
                return DataTransforms::recodeRanges(column, rulesOf(rules), unmatched(copied));
            },
            OnlyColumn{}, Value<RangeRules>{"rules"}, copyUnmatched),
        procedure("DataTransforms.reverseCode", &DataTransforms::reverseCode, OnlyColumn{},
                  Setting<double>{"minimum", 1.0}, Setting<double>{"maximum", 5.0}),
    };
}

std::vector<Procedure> derivedProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Matrix matrix{"matrix", "columns"};
    const Setting<ComputedVariableMethod> method{"method", ComputedVariableMethod::sum};
    const Setting<double> completion{"minimumCompletion", applicationCompletion};
    const Setting<std::int64_t> bands{"binCount", applicationBands};
    return {
        procedure(
            "ComputedVariableBuilder.numericValues",
            [](const ColumnList& columns, ComputedVariableMethod how, double share) {
                return ComputedVariableBuilder::numericValues(columns, how, share);
            },
            matrix, method, completion),
        procedure(
            "ComputedVariableBuilder.textValues",
            [](const ColumnList& columns, ComputedVariableMethod how, double share) {
                return ComputedVariableBuilder::textValues(columns, how, share);
            },
            matrix, method, completion),
        procedure(
            "BinnedVariableBuilder.equalWidth",
            [](One column, std::int64_t count) {
                return cellsOf(*BinnedVariableBuilder::equalWidth(column, count));
            },
            OnlyColumn{}, bands),
        procedure(
            "BinnedVariableBuilder.quantile",
            [](One column, std::int64_t count) {
                return cellsOf(*BinnedVariableBuilder::quantile(column, count));
            },
            OnlyColumn{}, bands),
        procedure(
            "ScaleScoreBuilder.score",
            [](const std::vector<std::optional<double>>& row, const ScaleScoreOptions& options) {
                return ScaleScoreBuilder::score(row, options);
            },
            Value<std::vector<std::optional<double>>>{"row"}, Settings<ScaleScoreOptions>{}),
        procedure(
            "ScaleScoreBuilder.scores",
            [](const ColumnList& items, const ScaleScoreOptions& options) {
                return ScaleScoreBuilder::scores(items, options);
            },
            matrix, Settings<ScaleScoreOptions>{}),
    };
}

std::vector<Procedure> cleaningProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Setting<Bound> lower{"lower"};
    const Setting<Bound> upper{"upper"};
    return {
        procedure("DataCleaning.outOfRange", &DataCleaning::outOfRange, OnlyColumn{}, lower, upper),
        procedure("DataCleaning.clampToMissing", &DataCleaning::clampToMissing, OnlyColumn{}, lower,
                  upper),
        procedure("DataCleaning.outliers", &DataCleaning::outliers, OnlyColumn{},
                  Setting<OutlierMethod>{"method", OutlierMethod::iqr}),
        procedure(
            "DataCleaning.percentile",
            [](const std::vector<double>& values, double p) {
                return DataCleaning::percentile(ValueOrder::sorted(values), p);
            },
            OnlyPresentNumbers{}, Value<double>{"p"}),
        procedure(
            "DataCleaning.duplicateRows",
            [](const KeyedTable::Table& table) {
                return table.key.empty() ? DataCleaning::duplicateRows(table.rows)
                                         : DataCleaning::duplicateRows(table.rows, table.key);
            },
            KeyedTable{}),
    };
}

std::vector<Procedure> missingnessProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Columns columns{"columns", "variableNames"};
    const Names names{"variableNames", "columns"};
    return {
        procedure(
            "MissingDataAnalysis.summary",
            [](const ColumnList& given, const Texts& called) {
                return MissingDataAnalysis::summary(given, called);
            },
            columns, names),
        procedure(
            "MissingDataAnalysis.littleMCAR",
            [](const ColumnList& given, const Texts& called) {
                return MissingDataAnalysis::littleMCAR(given, called);
            },
            columns, names),
        procedure(
            "SubgroupMissingness.byGroup",
            [](const ColumnList& given, const Texts& called, const CodedColumn& groups) {
                return SubgroupMissingness::byGroup(given, called, *groups);
            },
            columns, names, Categories{"groups"}),
        procedure(
            "SampleComposition.compare",
            [](const CodedColumn& categories, const std::map<std::string, double>& benchmarks) {
                return SampleComposition::compare(*categories, benchmarks);
            },
            Categories{"categories"}, Value<std::map<std::string, double>>{"benchmarks"}),
    };
}

}  // namespace

std::vector<Procedure> prepareProcedures() {
    std::vector<Procedure> procedures;
    for (std::vector<Procedure> some : {transformProcedures(), derivedProcedures(),
                                        cleaningProcedures(), missingnessProcedures()}) {
        procedures.insert(procedures.end(), std::make_move_iterator(some.begin()),
                          std::make_move_iterator(some.end()));
    }
    return procedures;
}

}  // namespace sorvane
