#include "SorvaneCore/Analyses/Basics/OrderedClasses.h"

#include <optional>

#include "SorvaneCore/Analyses/Basics/ValueOrder.h"

namespace sorvane {

namespace {

/// The class of each level of a column; levels without a number have none that is read.
std::vector<std::uint32_t> classesOfLevels(std::span<const std::optional<double>> levels) {
    std::vector<double> numbers;
    std::vector<std::size_t> levelOf;
    for (std::size_t level = 0; level < levels.size(); ++level) {
        if (levels[level]) {
            numbers.push_back(*levels[level]);
            levelOf.push_back(level);
        }
    }
    const OrderedClasses ordered = OrderedClasses::of(numbers);
    std::vector<std::uint32_t> result(levels.size(), 0);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        result[levelOf[i]] = ordered.classOf[i];
    }
    return result;
}

/// Leaves out the classes that no value of the sample has.
void dropEmptyClasses(OrderedClasses& classes) {
    std::vector<std::uint32_t> renumbered(classes.counts.size());
    std::vector<std::uint32_t> counts;
    for (std::size_t c = 0; c < classes.counts.size(); ++c) {
        renumbered[c] = static_cast<std::uint32_t>(counts.size());
        if (classes.counts[c] > 0) {
            counts.push_back(classes.counts[c]);
        }
    }
    if (counts.size() == classes.counts.size()) {
        return;
    }
    for (std::uint32_t& c : classes.classOf) {
        c = renumbered[c];
    }
    classes.counts = std::move(counts);
}

}  // namespace

OrderedClasses OrderedClasses::of(std::span<const double> values) {
    const std::vector<std::uint32_t> order = ValueOrder::ascending(values);
    OrderedClasses result{.classOf = std::vector<std::uint32_t>(values.size())};
    double previous = 0.0;
    for (const std::uint32_t index : order) {
        const double value = values[index];
        if (result.counts.empty() || value != previous) {
            result.counts.push_back(0);
            previous = value;
        }
        ++result.counts.back();
        result.classOf[index] = static_cast<std::uint32_t>(result.counts.size() - 1);
    }
    return result;
}

OrderedClasses OrderedClasses::of(const NumericColumn& column,
                                  std::span<const std::uint32_t> rows) {
    const std::span<const std::optional<double>> levels = column.levels();
    if (!column.hasCodes()) {
        std::vector<double> values(rows.size());
        column.withCodes([&](const auto& codes) {
            for (std::size_t i = 0; i < rows.size(); ++i) {
                values[i] = *levels[codes[rows[i]]];
            }
        });
        return of(values);
    }
    const std::vector<std::uint32_t> classOfLevel = classesOfLevels(levels);
    OrderedClasses result{.classOf = std::vector<std::uint32_t>(rows.size()),
                          .counts = std::vector<std::uint32_t>(levels.size(), 0)};
    column.withCodes([&](const auto& codes) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const std::uint32_t c = classOfLevel[codes[rows[i]]];
            result.classOf[i] = c;
            ++result.counts[c];
        }
    });
    dropEmptyClasses(result);
    return result;
}

std::vector<double> OrderedClasses::midranks() const {
    std::vector<double> ranks(counts.size());
    double before = 0.0;
    for (std::size_t c = 0; c < counts.size(); ++c) {
        ranks[c] = before + (static_cast<double>(counts[c]) + 1.0) / 2.0;
        before += static_cast<double>(counts[c]);
    }
    return ranks;
}

double OrderedClasses::tiedPairs() const {
    double pairs = 0.0;
    for (const std::uint32_t count : counts) {
        const auto t = static_cast<double>(count);
        pairs += t * (t - 1.0) / 2.0;
    }
    return pairs;
}

}  // namespace sorvane
