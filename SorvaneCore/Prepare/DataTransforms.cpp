#include "SorvaneCore/Prepare/DataTransforms.h"

#include <algorithm>

#include "SorvaneCore/Prepare/MappedNumbers.h"
#include "SorvaneCore/Prepare/RowTotals.h"

namespace sorvane::DataTransforms {

namespace {

double aggregated(const RowTotal& total, AggregateOp op) {
    switch (op) {
        case AggregateOp::sum:
            return total.sum;
        case AggregateOp::mean:
            return total.sum / static_cast<double>(total.count);
        case AggregateOp::count:
            return static_cast<double>(total.count);
        case AggregateOp::minimum:
            return total.smallest;
        case AggregateOp::maximum:
            return total.largest;
    }
    return 0.0;
}

std::optional<double> combined(double a, double b, PairOp op) {
    if (op == PairOp::difference) {
        return a - b;
    }
    return b == 0.0 ? std::nullopt : std::optional<double>(a / b);
}

bool matches(const ValueRecodeRule& rule, double value) {
    return std::ranges::find(rule.sources, value) != rule.sources.end();
}

bool matches(const RangeRecodeRule& rule, double value) {
    const bool isAbove = rule.lowerInclusive ? value >= rule.lower : value > rule.lower;
    const bool isBelow = rule.upperInclusive ? value <= rule.upper : value < rule.upper;
    return isAbove && isBelow;
}

template <typename Rule>
Numbers recoded(const NumericColumn& column, std::span<const Rule> rules, Unmatched unmatched) {
    return mappedNumbers(column, [rules, unmatched](double value) -> std::optional<double> {
        const auto rule =
            std::ranges::find_if(rules, [value](const Rule& each) { return matches(each, value); });
        if (rule != rules.end()) {
            return rule->output;
        }
        return unmatched == Unmatched::kept ? std::optional<double>(value) : std::nullopt;
    });
}

}  // namespace

Numbers rowAggregate(std::span<const NumericColumn> columns,
                     AggregateOp op,
                     double minimumCompletion) {
    Numbers result;
    result.reserve(RowTotals::rowCount(columns));
    const auto columnCount = static_cast<double>(columns.size());
    RowTotals::forEach(columns, [&](const RowTotal& total) {
        const bool isEnough = op == AggregateOp::count ||
                              (total.count > 0 && !(static_cast<double>(total.count) / columnCount <
                                                    minimumCompletion));
        result.push_back(isEnough ? std::optional<double>(aggregated(total, op)) : std::nullopt);
    });
    return result;
}

Numbers pairCombine(const NumericColumn& a, const NumericColumn& b, PairOp op) {
    Numbers result(std::max(a.size(), b.size()));
    for (std::size_t row = 0; row < std::min(a.size(), b.size()); ++row) {
        const std::optional<double> left = a[row];
        const std::optional<double> right = b[row];
        if (left && right) {
            result[row] = combined(*left, *right, op);
        }
    }
    return result;
}

Numbers recodeValues(const NumericColumn& column,
                     std::span<const ValueRecodeRule> rules,
                     Unmatched unmatched) {
    return recoded(column, rules, unmatched);
}

Numbers recodeRanges(const NumericColumn& column,
                     std::span<const RangeRecodeRule> rules,
                     Unmatched unmatched) {
    return recoded(column, rules, unmatched);
}

Numbers reverseCode(const NumericColumn& column, double minimum, double maximum) {
    return mappedNumbers(column, [minimum, maximum](double value) -> std::optional<double> {
        const bool isOnScale = value >= minimum && value <= maximum;
        return isOnScale ? std::optional<double>(minimum + maximum - value) : std::nullopt;
    });
}

}  // namespace sorvane::DataTransforms
