#include "SorvaneCore/Analyses/Basics/RelationshipTests.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/OrderedClasses.h"
#include "SorvaneCore/Analyses/Basics/PairConcordance.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane::RelationshipTests {

namespace {

constexpr std::size_t fewestPairs = 3;
/// Keeps t finite at r = 1; what explains more than this leaves is a perfect correlation.
constexpr double smallestUnexplained = 1e-15;

/// The means, squares and products of two lists of one length.
struct PairMoments {
    double meanX;
    double meanY;
    double sxx;
    double syy;
    double sxy;
};

PairMoments momentsOf(std::span<const double> x, std::span<const double> y) {
    const double meanX = SampleMoments::mean(x);
    const double meanY = SampleMoments::mean(y);
    return {.meanX = meanX,
            .meanY = meanY,
            .sxx = SampleMoments::sumOfSquares(x, meanX),
            .syy = SampleMoments::sumOfSquares(y, meanY),
            .sxy = SampleMoments::sumOfProducts(x, meanX, y, meanY)};
}

CorrelationResult resultOf(double r, std::size_t n, double df) {
    const double t = r * std::sqrt(df / std::max(1.0 - r * r, smallestUnexplained));
    return {.r = r,
            .n = static_cast<std::int64_t>(n),
            .pValue = MathDistributions::studentTPValue(t, df)};
}

CompleteCases::Pairs pairsOf(const NumericColumn& x, const NumericColumn& y) {
    const std::array columns = {&x, &y};
    const std::vector<std::uint32_t> rows = CompleteCases::rows(columns);
    return {.x = CompleteCases::gathered(x, rows), .y = CompleteCases::gathered(y, rows)};
}

std::vector<double> ranksOf(const OrderedClasses& classes) {
    const std::vector<double> midranks = classes.midranks();
    std::vector<double> ranks(classes.size());
    for (std::size_t i = 0; i < ranks.size(); ++i) {
        ranks[i] = midranks[classes.classOf[i]];
    }
    return ranks;
}

/// The classes of two lists of one length.
struct PairClasses {
    OrderedClasses x;
    OrderedClasses y;
};

std::optional<CorrelationResult> spearmanOf(const std::optional<PairClasses>& classes) {
    return classes ? pearson(ranksOf(classes->x), ranksOf(classes->y)) : std::nullopt;
}

std::optional<CorrelationResult> kendallOf(const std::optional<PairClasses>& classes) {
    if (!classes) {
        return std::nullopt;
    }
    const auto& [x, y] = *classes;
    const PairConcordance pairs = PairConcordance::of(x, y);
    const double untied = static_cast<double>(pairs.pairs - pairs.tiedInX) *
                          static_cast<double>(pairs.pairs - pairs.tiedInY);
    if (!(untied > 0.0)) {
        return std::nullopt;
    }
    const auto n = static_cast<double>(x.size());
    const auto balance = static_cast<double>(pairs.balance);
    const double z = 3.0 * balance / std::sqrt(n * (n - 1.0) * (2.0 * n + 5.0) / 2.0);
    const double tail = 2.0 * (1.0 - MathDistributions::standardNormalCDF(std::abs(z)));
    return CorrelationResult{.r = balance / std::sqrt(untied),
                             .n = static_cast<std::int64_t>(x.size()),
                             .pValue = std::isfinite(z) ? std::clamp(tail, 0.0, 1.0) : 0.0};
}

/// The classes of the complete pairs of two columns; absent of too few, and of values that differ
/// only by rounding, whose order says nothing.
std::optional<PairClasses> classesOf(const NumericColumn& x, const NumericColumn& y) {
    const std::array columns = {&x, &y};
    const std::vector<std::uint32_t> rows = CompleteCases::rows(columns);
    if (rows.size() < fewestPairs || SampleMoments::areEqual(CompleteCases::gathered(x, rows)) ||
        SampleMoments::areEqual(CompleteCases::gathered(y, rows))) {
        return std::nullopt;
    }
    return PairClasses{.x = OrderedClasses::of(x, rows), .y = OrderedClasses::of(y, rows)};
}

/// Both lists cut to the length of the shorter.
struct EqualLengths {
    EqualLengths(std::span<const double> first, std::span<const double> second)
        : x(first.first(std::min(first.size(), second.size()))), y(second.first(x.size())) {}
    std::span<const double> x;
    std::span<const double> y;
};

std::optional<PairClasses> classesOf(const EqualLengths& lists) {
    if (lists.x.size() < fewestPairs || SampleMoments::areEqual(lists.x) ||
        SampleMoments::areEqual(lists.y)) {
        return std::nullopt;
    }
    return PairClasses{.x = OrderedClasses::of(lists.x), .y = OrderedClasses::of(lists.y)};
}

/// The Pearson matrix of columns of one length, row-major; absent when a correlation is.
std::optional<std::vector<double>> pearsonMatrix(const std::vector<std::vector<double>>& columns) {
    const std::size_t size = columns.size();
    std::vector<double> matrix(size * size, 1.0);
    for (std::size_t i = 0; i < size; ++i) {
        for (std::size_t j = i + 1; j < size; ++j) {
            const std::optional<CorrelationResult> cell = pearson(columns[i], columns[j]);
            if (!cell || !std::isfinite(cell->r)) {
                return std::nullopt;
            }
            matrix[i * size + j] = cell->r;
            matrix[j * size + i] = cell->r;
        }
    }
    return matrix;
}

}  // namespace

std::optional<double> correlationFromSums(double sxy, double sxx, double syy) {
    if (!(sxx > 0.0) || !(syy > 0.0)) {
        return std::nullopt;
    }
    const double product = sxx * syy;
    // Beyond the range of a double the roots are taken one by one.
    const double scale =
        std::isnormal(product) ? std::sqrt(product) : std::sqrt(sxx) * std::sqrt(syy);
    const double r = sxy / scale;
    // Squares beyond the range of a double leave nothing to compare.
    if (std::isinf(sxx) || std::isinf(syy) || !std::isfinite(r)) {
        return std::nullopt;
    }
    return 1.0 - r * r < smallestUnexplained ? std::copysign(1.0, r) : r;
}

std::optional<CorrelationResult> pearson(std::span<const double> x, std::span<const double> y) {
    const EqualLengths lists(x, y);
    if (lists.x.size() < fewestPairs) {
        return std::nullopt;
    }
    const PairMoments moments = momentsOf(lists.x, lists.y);
    const std::optional<double> r = correlationFromSums(moments.sxy, moments.sxx, moments.syy);
    if (!r) {
        return std::nullopt;
    }
    return resultOf(*r, lists.x.size(), static_cast<double>(lists.x.size() - 2));
}

std::optional<CorrelationResult> pearson(std::span<const std::optional<double>> x,
                                         std::span<const std::optional<double>> y) {
    const CompleteCases::Pairs pairs = CompleteCases::pairs(x, y);
    return pearson(pairs.x, pairs.y);
}

std::optional<CorrelationResult> pearson(const NumericColumn& x, const NumericColumn& y) {
    const CompleteCases::Pairs pairs = pairsOf(x, y);
    return pearson(pairs.x, pairs.y);
}

std::optional<CorrelationResult> spearman(std::span<const double> x, std::span<const double> y) {
    return spearmanOf(classesOf(EqualLengths(x, y)));
}

std::optional<CorrelationResult> spearman(std::span<const std::optional<double>> x,
                                          std::span<const std::optional<double>> y) {
    const CompleteCases::Pairs pairs = CompleteCases::pairs(x, y);
    return spearman(pairs.x, pairs.y);
}

std::optional<CorrelationResult> spearman(const NumericColumn& x, const NumericColumn& y) {
    return spearmanOf(classesOf(x, y));
}

std::optional<CorrelationResult> kendallTauB(std::span<const double> x, std::span<const double> y) {
    return kendallOf(classesOf(EqualLengths(x, y)));
}

std::optional<CorrelationResult> kendallTauB(std::span<const std::optional<double>> x,
                                             std::span<const std::optional<double>> y) {
    const CompleteCases::Pairs pairs = CompleteCases::pairs(x, y);
    return kendallTauB(pairs.x, pairs.y);
}

std::optional<CorrelationResult> kendallTauB(const NumericColumn& x, const NumericColumn& y) {
    return kendallOf(classesOf(x, y));
}

std::optional<CorrelationResult> partialCorrelation(const NumericColumn& x,
                                                    const NumericColumn& y,
                                                    std::span<const NumericColumn> covariates) {
    std::vector<const NumericColumn*> columns = {&x, &y};
    for (const NumericColumn& covariate : covariates) {
        columns.push_back(&covariate);
    }
    const auto fits = [&x](const NumericColumn* column) {
        return column->size() == x.size();
    };
    if (!std::ranges::all_of(columns, fits)) {
        return std::nullopt;
    }
    const std::vector<std::uint32_t> rows = CompleteCases::rows(columns);
    const std::size_t size = columns.size();
    if (rows.size() <= size + 1) {
        return std::nullopt;
    }
    std::vector<std::vector<double>> values;
    for (const NumericColumn* column : columns) {
        values.push_back(CompleteCases::gathered(*column, rows));
    }
    const std::optional<std::vector<double>> matrix = pearsonMatrix(values);
    const auto inverse = matrix ? LinearAlgebra::invert(*matrix, size) : std::nullopt;
    if (!inverse) {
        return std::nullopt;
    }
    const double product = (*inverse)[0] * (*inverse)[size + 1];
    if (!(product > 0.0)) {
        return std::nullopt;
    }
    const double r = std::clamp(-(*inverse)[1] / std::sqrt(product), -1.0, 1.0);
    return resultOf(r, rows.size(), static_cast<double>(rows.size() - size));
}

std::optional<SimpleRegressionResult> simpleLinearRegression(std::span<const double> x,
                                                             std::span<const double> y) {
    const EqualLengths lists(x, y);
    if (lists.x.size() < fewestPairs) {
        return std::nullopt;
    }
    const PairMoments moments = momentsOf(lists.x, lists.y);
    const std::optional<double> r = correlationFromSums(moments.sxy, moments.sxx, moments.syy);
    if (!r) {
        return std::nullopt;
    }
    const double slope = *r * (std::sqrt(moments.syy) / std::sqrt(moments.sxx));
    return SimpleRegressionResult{.slope = slope,
                                  .intercept = moments.meanY - slope * moments.meanX,
                                  .rSquared = *r * *r,
                                  .n = static_cast<std::int64_t>(lists.x.size())};
}

std::optional<SimpleRegressionResult> simpleLinearRegression(
    std::span<const std::optional<double>> x, std::span<const std::optional<double>> y) {
    const CompleteCases::Pairs pairs = CompleteCases::pairs(x, y);
    return simpleLinearRegression(pairs.x, pairs.y);
}

std::optional<SimpleRegressionResult> simpleLinearRegression(const NumericColumn& x,
                                                             const NumericColumn& y) {
    const CompleteCases::Pairs pairs = pairsOf(x, y);
    return simpleLinearRegression(pairs.x, pairs.y);
}

}  // namespace sorvane::RelationshipTests
