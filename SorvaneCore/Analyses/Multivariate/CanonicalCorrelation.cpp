#include "SorvaneCore/Analyses/Multivariate/CanonicalCorrelation.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Analyses/Multivariate/CanonicalWording.h"
#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/Whitening.h"

namespace sorvane::CanonicalCorrelation {

namespace {

namespace wording = CanonicalWording;
using Numbers = std::vector<double>;

/// The complete cases of one set.
struct VariableSet {
    std::vector<Numbers> values{};
    Numbers means{};
    /// Sums of squared deviations.
    Numbers squares{};

    std::size_t width() const { return values.size(); }

    static VariableSet of(std::span<const NumericColumn> columns,
                          std::span<const std::uint32_t> rows) {
        VariableSet set;
        for (const NumericColumn& column : columns) {
            set.values.push_back(CompleteCases::gathered(column, rows));
            set.means.push_back(SampleMoments::mean(set.values.back()));
            set.squares.push_back(SampleMoments::sumOfSquares(set.values.back(), set.means.back()));
        }
        return set;
    }

    double standardDeviation(std::size_t j, std::size_t n) const {
        return std::sqrt(squares[j] / static_cast<double>(n - 1));
    }
};

/// The correlations of the variables of one set with those of another, row-major.
Numbers correlations(const VariableSet& a, const VariableSet& b) {
    Numbers result;
    for (std::size_t i = 0; i < a.width(); ++i) {
        for (std::size_t j = 0; j < b.width(); ++j) {
            result.push_back(
                SampleMoments::sumOfProducts(a.values[i], a.means[i], b.values[j], b.means[j]) /
                std::sqrt(a.squares[i] * b.squares[j]));
        }
    }
    return result;
}

/// inv(L) of the correlations of a set; absent where a variable does not vary or is collinear.
std::optional<Numbers> whitening(const VariableSet& set) {
    if (std::ranges::any_of(set.squares, [](double each) { return !(each > 0.0); })) {
        return std::nullopt;
    }
    return Whitening::inverseOf(correlations(set, set), set.width());
}

Numbers transposed(const Numbers& matrix, std::size_t rows, std::size_t cols) {
    Numbers result(matrix.size());
    for (std::size_t i = 0; i < rows; ++i) {
        for (std::size_t j = 0; j < cols; ++j) {
            result[j * rows + i] = matrix[i * cols + j];
        }
    }
    return result;
}

/// The squared correlations and the standardized coefficients of both sets, one list per function.
struct Directions {
    Numbers squared{};
    std::vector<Numbers> x{};
    std::vector<Numbers> y{};
};

/// Of an eigenvector of K K', with K = inv(L) Rxy inv(M)': its own coefficients, and those of the
/// other set, whose direction K' leads to.
std::pair<Numbers, Numbers> coefficientsOf(const Numbers& vector,
                                           const Numbers& k,
                                           const Numbers& own,
                                           const Numbers& other) {
    const std::size_t p = vector.size();
    const std::size_t q = k.size() / p;
    Numbers image(q, 0.0);
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j < q; ++j) {
            image[j] += k[i * q + j] * vector[i];
        }
    }
    const double length = std::sqrt(ColumnKernels::dot(image.data(), image.data(), q));
    for (double& entry : image) {
        entry = length > 0.0 ? entry / length : 0.0;
    }
    return {Whitening::transposedTimes(own, vector, p),
            Whitening::transposedTimes(other, image, q)};
}

std::optional<Directions> directions(const VariableSet& x,
                                     const VariableSet& y,
                                     const Numbers& whiteX,
                                     const Numbers& whiteY) {
    const std::size_t p = x.width();
    const std::size_t q = y.width();
    const Numbers left = LinearAlgebra::multiply(whiteX, p, p, correlations(x, y), q);
    Numbers k = LinearAlgebra::multiply(left, p, q, transposed(whiteY, q, q), q);
    const bool isTurned = q < p;
    if (isTurned) {
        k = transposed(k, p, q);
    }
    const std::size_t count = std::min(p, q);
    const auto eigen = LinearAlgebra::symmetricEigen(
        LinearAlgebra::gramOfColumns(k, std::max(p, q), count), count);
    if (!eigen) {
        return std::nullopt;
    }
    Directions result;
    for (std::size_t i = 0; i < count; ++i) {
        result.squared.push_back(std::clamp(eigen->values[i], 0.0, 1.0));
        auto [own, other] = coefficientsOf(eigen->vectors[i], k, isTurned ? whiteY : whiteX,
                                           isTurned ? whiteX : whiteY);
        result.x.push_back(isTurned ? std::move(other) : std::move(own));
        result.y.push_back(isTurned ? std::move(own) : std::move(other));
    }
    return result;
}

/// Turns a pair over where the largest coefficient of its first set is negative.
void setSign(Numbers& x, Numbers& y) {
    const auto largest = std::ranges::max_element(x, {}, [](double v) { return std::abs(v); });
    if (*largest < 0.0) {
        for (Numbers* side : {&x, &y}) {
            for (double& value : *side) {
                value = -value;
            }
        }
    }
}

CanonicalSide sideOf(const VariableSet& set,
                     std::size_t n,
                     const Numbers& standardized,
                     double correlation) {
    CanonicalSide side{.standardizedCoefficients = standardized};
    const std::size_t p = set.width();
    side.loadings = LinearAlgebra::multiply(correlations(set, set), p, p, standardized, 1);
    side.adequacy = 0.0;
    for (std::size_t j = 0; j < p; ++j) {
        side.rawCoefficients.push_back(standardized[j] / set.standardDeviation(j, n));
        side.crossLoadings.push_back(side.loadings[j] * correlation);
        side.adequacy += side.loadings[j] * side.loadings[j] / static_cast<double>(p);
    }
    side.redundancy = side.adequacy * correlation * correlation;
    return side;
}

Numbers scores(const VariableSet& set, const CanonicalSide& side, std::size_t n) {
    Numbers result(n, 0.0);
    for (std::size_t j = 0; j < set.width(); ++j) {
        for (std::size_t i = 0; i < n; ++i) {
            result[i] += side.rawCoefficients[j] * (set.values[j][i] - set.means[j]);
        }
    }
    return result;
}

void addFunctions(CanonicalCorrelationResult& result,
                  const VariableSet& x,
                  const VariableSet& y,
                  Directions found) {
    const auto n = static_cast<std::size_t>(result.n);
    result.totalRedundancyX = 0.0;
    result.totalRedundancyY = 0.0;
    for (std::size_t k = 0; k < found.squared.size(); ++k) {
        setSign(found.x[k], found.y[k]);
        const double squared = found.squared[k];
        const double r = std::sqrt(squared);
        CanonicalFunction function{.correlation = r,
                                   .squaredCorrelation = squared,
                                   .eigenvalue = squared / (1.0 - squared),
                                   .x = sideOf(x, n, found.x[k], r),
                                   .y = sideOf(y, n, found.y[k], r)};
        function.xScores = scores(x, function.x, n);
        function.yScores = scores(y, function.y, n);
        result.totalRedundancyX += function.x.redundancy;
        result.totalRedundancyY += function.y.redundancy;
        result.functions.push_back(std::move(function));
    }
    result.tests =
        WilksTests::fromEachFunction(found.squared, static_cast<double>(x.width()),
                                     static_cast<double>(y.width()), static_cast<double>(result.n));
}

/// A name that stands in both sets.
std::optional<std::string> sharedName(const CanonicalCorrelationOptions& options) {
    const auto shared = std::ranges::find_first_of(options.setXNames, options.setYNames);
    return shared == options.setXNames.end() ? std::nullopt : std::optional(*shared);
}

/// Fills in what can be had, or tells what stands in the way.
std::optional<std::string> fitted(CanonicalCorrelationResult& result,
                                  const VariableSet& x,
                                  const VariableSet& y) {
    // Beyond, 1 - r^2 is mostly rounding.
    constexpr double perfect = 1.0 - 1e-12;
    const auto variables = static_cast<std::int64_t>(x.width() + y.width());
    if (result.n <= variables) {
        return wording::tooFewCases(result.n, variables);
    }
    const std::optional<Numbers> whiteX = whitening(x);
    if (!whiteX) {
        return wording::collinear("first");
    }
    const std::optional<Numbers> whiteY = whitening(y);
    if (!whiteY) {
        return wording::collinear("second");
    }
    std::optional<Directions> found = directions(x, y, *whiteX, *whiteY);
    if (!found) {
        return wording::noEigenvalues();
    }
    if (found->squared.front() >= perfect) {
        return wording::perfect();
    }
    addFunctions(result, x, y, std::move(*found));
    return std::nullopt;
}

AnalysisReadiness readiness(const CanonicalCorrelationResult& result,
                            std::int64_t totalRows,
                            const std::optional<std::string>& obstacle) {
    constexpr std::int64_t fewestPerVariable = 10;
    const auto variables =
        static_cast<std::int64_t>(result.setXNames.size() + result.setYNames.size());
    std::vector<AnalysisReadinessIssue> issues;
    if (obstacle) {
        issues.push_back(AnalysisReadinessIssue::blocked(*obstacle));
    }
    if (totalRows > result.n) {
        issues.push_back(
            AnalysisReadinessIssue::caution(wording::rowsDropped(totalRows - result.n)));
    }
    if (!obstacle && result.n < fewestPerVariable * variables) {
        issues.push_back(
            AnalysisReadinessIssue::caution(wording::fewCasesPerVariable(result.n, variables)));
    }
    return AnalysisReadiness::of(std::string(wording::minimumRequired), totalRows, result.n,
                                 std::move(issues));
}

}  // namespace

std::optional<CanonicalCorrelationResult> fit(std::span<const NumericColumn> setX,
                                              std::span<const NumericColumn> setY,
                                              const CanonicalCorrelationOptions& options) {
    if (setX.empty() || setY.empty() || setX.size() != options.setXNames.size() ||
        setY.size() != options.setYNames.size()) {
        return std::nullopt;
    }
    std::vector<const NumericColumn*> all;
    for (const std::span<const NumericColumn> set : {setX, setY}) {
        for (const NumericColumn& column : set) {
            if (column.size() != setX.front().size()) {
                return std::nullopt;
            }
            all.push_back(&column);
        }
    }
    const std::vector<std::uint32_t> rows = CompleteCases::rows(all);
    CanonicalCorrelationResult result{.setXNames = options.setXNames,
                                      .setYNames = options.setYNames,
                                      .n = static_cast<std::int64_t>(rows.size())};
    std::optional<std::string> obstacle;
    if (const auto shared = sharedName(options)) {
        obstacle = wording::inBothSets(*shared);
    } else {
        obstacle = fitted(result, VariableSet::of(setX, rows), VariableSet::of(setY, rows));
    }
    result.readiness = readiness(result, static_cast<std::int64_t>(setX.front().size()), obstacle);
    return result;
}

}  // namespace sorvane::CanonicalCorrelation
