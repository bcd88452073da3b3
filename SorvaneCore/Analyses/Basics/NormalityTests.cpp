#include "SorvaneCore/Analyses/Basics/NormalityTests.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Analyses/Basics/ValueOrder.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::NormalityTests {

namespace {

using Method = NormalityTestResult::Method;

constexpr std::size_t fewestForShapiroWilk = 3;
constexpr std::size_t mostForShapiroWilk = 5000;
constexpr std::size_t fewestForLilliefors = 4;
constexpr std::int64_t manyValues = 300;
constexpr std::int64_t fewValues = 19;
constexpr double significance = 0.05;

/// A polynomial by its coefficients in ascending powers.
template <std::size_t Count>
double polynomial(const std::array<double, Count>& coefficients, double x) {
    double sum = 0.0;
    for (std::size_t i = Count; i-- > 0;) {
        sum = sum * x + coefficients[i];
    }
    return sum;
}

std::vector<double> sortedFinite(std::span<const double> values) {
    std::vector<double> finite;
    std::ranges::copy_if(values, std::back_inserter(finite),
                         [](double value) { return std::isfinite(value); });
    return ValueOrder::sorted(finite);
}

std::vector<double> present(std::span<const std::optional<double>> values) {
    std::vector<double> result;
    for (const std::optional<double>& value : values) {
        if (value) {
            result.push_back(*value);
        }
    }
    return result;
}

std::string sizeMessage(std::int64_t n) {
    if (n >= manyValues) {
        return "With N at " + NumberText::integer(n) +
               ", this test is over-sensitive and may flag trivial departures from normality. Pair "
               "it with a histogram, Q-Q plot, and skewness or kurtosis.";
    }
    if (n <= fewValues) {
        return "With N at " + NumberText::integer(n) +
               ", the test has low power to detect non-normality. Read the result as exploratory.";
    }
    return "";
}

AnalysisReadiness makeReadiness(Method method, double pValue, std::int64_t n) {
    std::vector<AnalysisReadinessIssue> issues = {AnalysisReadinessIssue::caution(
        "Normality is an assumption check, not a goal. A non-significant result does not prove the "
        "data are normal.")};
    if (const std::string message = sizeMessage(n); !message.empty()) {
        issues.push_back(AnalysisReadinessIssue::caution(message));
    }
    if (pValue < significance) {
        issues.push_back(AnalysisReadinessIssue::caution(
            "p is below 0.05, so the data depart from normality at this sample size. Consider "
            "whether the departure is large enough to matter for your analysis."));
    }
    return AnalysisReadiness::of(method == Method::shapiroWilk
                                     ? "at least 3 values (Shapiro-Wilk supports n 3 to 5000)"
                                     : "at least 4 values",
                                 n, n, std::move(issues));
}

NormalityTestResult resultOf(Method method, double statistic, double pValue, std::size_t count) {
    const auto n = static_cast<std::int64_t>(count);
    return {.method = method,
            .statistic = statistic,
            .pValue = pValue,
            .n = n,
            .readiness = makeReadiness(method, pValue, n)};
}

/// Held to [0, 1]; NaN falls to 0.
double heldProbability(double p) {
    return p > 0.0 ? std::min(p, 1.0) : 0.0;
}

/// The weights of the upper half, the largest first; those of the lower half are their negatives.
std::vector<double> upperWeights(std::size_t count) {
    const auto n = static_cast<double>(count);
    std::vector<double> scores(count / 2);
    double squares = 0.0;
    for (std::size_t i = 0; i < scores.size(); ++i) {
        scores[i] = inverseStandardNormalCDF((n - static_cast<double>(i) - 0.375) / (n + 0.25));
        squares += 2.0 * scores[i] * scores[i];
    }
    if (count == 3) {
        return {0.7071067811865476};
    }
    const double rsn = 1.0 / std::sqrt(n);
    const double first =
        polynomial<6>({0.0, 0.221157, -0.147981, -2.07119, 4.434685, -2.706056}, rsn) +
        scores[0] / std::sqrt(squares);
    double left = squares - 2.0 * scores[0] * scores[0];
    double unit = 1.0 - 2.0 * first * first;
    std::vector<double> weights = {first};
    if (count >= 6) {
        const double second =
            polynomial<6>({0.0, 0.042981, -0.293762, -1.752461, 5.682633, -3.582633}, rsn) +
            scores[1] / std::sqrt(squares);
        left -= 2.0 * scores[1] * scores[1];
        unit -= 2.0 * second * second;
        weights.push_back(second);
    }
    const double scale = std::sqrt(left / unit);
    for (std::size_t i = weights.size(); i < scores.size(); ++i) {
        weights.push_back(scores[i] / scale);
    }
    return weights;
}

double shapiroWilkPValue(double w, std::size_t count) {
    const auto n = static_cast<double>(count);
    if (count == 3) {
        return heldProbability((std::asin(std::sqrt(w)) - 1.0471975511965976) * 1.909859317102744);
    }
    double y = std::log(1.0 - w);
    double mu = 0.0;
    double sigma = 0.0;
    if (count <= 11) {
        const double gamma = polynomial<2>({-2.273, 0.459}, n);
        y = -std::log(gamma - y);
        mu = polynomial<4>({0.544, -0.39978, 0.025054, -0.0006714}, n);
        sigma = std::exp(polynomial<4>({1.3822, -0.77857, 0.062767, -0.0020322}, n));
    } else {
        const double x = std::log(n);
        mu = polynomial<4>({-1.5861, -0.31082, -0.083751, 0.0038915}, x);
        sigma = std::exp(polynomial<3>({-0.4803, -0.082676, 0.0030302}, x));
    }
    return heldProbability(1.0 - MathDistributions::standardNormalCDF((y - mu) / sigma));
}

double lillieforsPValue(double d, std::size_t count) {
    if (d <= 0.0) {
        return 1.0;
    }
    const auto n = static_cast<double>(count);
    const double z = d * ((n + 0.83) / std::sqrt(n) - 0.01);
    if (z <= 0.302) {
        return 1.0;
    }
    if (z < 0.5) {
        return heldProbability(
            polynomial<5>({2.76773, -19.828315, 80.709644, -138.55152, 81.218052}, z));
    }
    if (z < 0.9) {
        return heldProbability(
            polynomial<5>({-4.901232, 40.662806, -97.490286, 94.029866, -32.355711}, z));
    }
    if (z < 1.31) {
        return heldProbability(
            polynomial<5>({6.198765, -19.558097, 23.186922, -12.234627, 2.423045}, z));
    }
    return 0.0;
}

}  // namespace

std::optional<NormalityTestResult> shapiroWilk(std::span<const double> values) {
    const std::vector<double> x = sortedFinite(values);
    const std::size_t count = x.size();
    if (count < fewestForShapiroWilk || count > mostForShapiroWilk || x.front() == x.back()) {
        return std::nullopt;
    }
    const double squares = SampleMoments::sumOfSquares(x, SampleMoments::mean(x));
    if (!(squares > 0.0) || std::isinf(squares)) {
        return std::nullopt;
    }
    const std::vector<double> weights = upperWeights(count);
    double sum = 0.0;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        sum += weights[i] * (x[count - 1 - i] - x[i]);
    }
    const double w = std::min(1.0, sum * sum / squares);
    return resultOf(Method::shapiroWilk, w, shapiroWilkPValue(w, count), count);
}

std::optional<NormalityTestResult> shapiroWilk(std::span<const std::optional<double>> values) {
    return shapiroWilk(present(values));
}

std::optional<NormalityTestResult> shapiroWilk(const NumericColumn& values) {
    return shapiroWilk(values.present());
}

std::optional<NormalityTestResult> lillieforsKS(std::span<const double> values) {
    const std::vector<double> x = sortedFinite(values);
    if (x.size() < fewestForLilliefors) {
        return std::nullopt;
    }
    const auto n = static_cast<double>(x.size());
    const double mean = SampleMoments::mean(x);
    const double deviation = std::sqrt(SampleMoments::sumOfSquares(x, mean) / (n - 1.0));
    if (!(deviation > 0.0) || std::isinf(deviation)) {
        return std::nullopt;
    }
    double d = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        const double expected = MathDistributions::standardNormalCDF((x[i] - mean) / deviation);
        const auto before = static_cast<double>(i);
        d = std::max({d, std::abs((before + 1.0) / n - expected), std::abs(expected - before / n)});
    }
    return resultOf(Method::lillieforsKS, d, lillieforsPValue(d, x.size()), x.size());
}

std::optional<NormalityTestResult> lillieforsKS(std::span<const std::optional<double>> values) {
    return lillieforsKS(present(values));
}

std::optional<NormalityTestResult> lillieforsKS(const NumericColumn& values) {
    return lillieforsKS(values.present());
}

NormalityReport report(std::span<const std::optional<double>> values) {
    const std::vector<double> dense = present(values);
    return {.shapiroWilk = shapiroWilk(dense), .lillieforsKS = lillieforsKS(dense)};
}

NormalityReport report(const NumericColumn& values) {
    const std::vector<double> dense = values.present();
    return {.shapiroWilk = shapiroWilk(dense), .lillieforsKS = lillieforsKS(dense)};
}

}  // namespace sorvane::NormalityTests
