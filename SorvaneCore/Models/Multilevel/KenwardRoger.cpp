#include "SorvaneCore/Models/Multilevel/KenwardRoger.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane::KenwardRoger {

namespace {

using Matrix = std::vector<double>;

/// The parameters are variances over the residual one, which changes neither the adjustment nor the
/// degrees of freedom but keeps the information of order n.
struct Sums {
    std::size_t p = 0;
    /// Covariance entries and the residual variance, which is the last.
    std::size_t parameters = 0;
    /// P of each parameter.
    std::vector<Matrix> p1{};
    /// Q of each pair, i * parameters + j.
    std::vector<Matrix> q{};
    /// tr(V^-1 G_i V^-1 G_j).
    Matrix traces{};
};

RandomCovariance product(const RandomCovariance& a, const RandomCovariance& b) {
    return {a[0] * b[0] + a[1] * b[2], a[0] * b[1] + a[1] * b[3], a[2] * b[0] + a[3] * b[2],
            a[2] * b[1] + a[3] * b[3]};
}

/// (I + R G R')^-1.
RandomCovariance inverseOf(const SmallFactor& factor) {
    const double a = 1.0 / factor.l00;
    const double c = 1.0 / factor.l11;
    const double b = -factor.l10 * a * c;
    return {a * a + b * b, b * c, b * c, c * c};
}

/// The derivatives of G in its entries.
std::vector<RandomCovariance> entryDerivatives(const ClusterSums& sums, bool correlated) {
    std::vector<RandomCovariance> result = {{1.0, 0.0, 0.0, 0.0}};
    if (sums.effects() == 2 && correlated) {
        result.push_back({0.0, 1.0, 1.0, 0.0});
    }
    if (sums.effects() == 2) {
        result.push_back({0.0, 0.0, 0.0, 1.0});
    }
    return result;
}

/// Adds C'MC, C the projected fixed effects of a cluster.
void addSandwich(Matrix& sum, const RandomCovariance& m, std::span<const double> projection) {
    const auto p = static_cast<std::size_t>(std::lround(std::sqrt(sum.size())));
    const std::size_t width = p + 1;
    const bool hasSlope = projection.size() > width;
    for (std::size_t i = 0; i < p; ++i) {
        const double c0 = projection[i];
        const double c1 = hasSlope ? projection[width + i] : 0.0;
        const double first = c0 * m[0] + c1 * m[2];
        const double second = c0 * m[1] + c1 * m[3];
        for (std::size_t j = 0; j < p; ++j) {
            sum[i * p + j] +=
                first * projection[j] + (hasSlope ? second * projection[width + j] : 0.0);
        }
    }
}

void addWithin(Matrix& sum, const ClusterSums& sums) {
    const std::size_t width = sums.width();
    for (std::size_t i = 0; i + 1 < width; ++i) {
        for (std::size_t j = 0; j + 1 < width; ++j) {
            sum[i * (width - 1) + j] += sums.within()[i * width + j];
        }
    }
}

void addCluster(Sums& result,
                const ClusterSums& sums,
                std::size_t cluster,
                const RandomCovariance& g,
                const std::vector<RandomCovariance>& derivatives) {
    const RandomCovariance inverse = inverseOf(sums.factor(cluster, g));
    const std::span<const double> projection = sums.projection(cluster);
    // V^-1 G_i on the columns of Q.
    std::vector<RandomCovariance> steps;
    for (const RandomCovariance& derivative : derivatives) {
        steps.push_back(product(inverse, sums.sandwiched(cluster, derivative)));
    }
    steps.push_back(inverse);
    for (std::size_t i = 0; i < result.parameters; ++i) {
        addSandwich(result.p1[i], product(steps[i], inverse), projection);
        for (std::size_t j = 0; j < result.parameters; ++j) {
            const RandomCovariance both = product(steps[i], steps[j]);
            addSandwich(result.q[i * result.parameters + j], product(both, inverse), projection);
            const double second = sums.effects() == 2 ? both[3] : 0.0;
            result.traces[i * result.parameters + j] += both[0] + second;
        }
    }
}

Sums sumsAt(const ClusterSums& sums, const RandomCovariance& g, bool correlated) {
    const std::vector<RandomCovariance> derivatives = entryDerivatives(sums, correlated);
    Sums result{.p = sums.width() - 1, .parameters = derivatives.size() + 1};
    result.p1.assign(result.parameters, Matrix(result.p * result.p, 0.0));
    result.q.assign(result.parameters * result.parameters, Matrix(result.p * result.p, 0.0));
    result.traces.assign(result.parameters * result.parameters, 0.0);
    double rest = 0.0;
    for (std::size_t c = 0; c < sums.clusterCount(); ++c) {
        addCluster(result, sums, c, g, derivatives);
        rest += static_cast<double>(sums.clusterSize(c)) - static_cast<double>(sums.effects());
    }
    // Outside the columns of Q both V and the derivative in the residual variance are the identity.
    addWithin(result.p1.back(), sums);
    addWithin(result.q.back(), sums);
    result.traces.back() += rest;
    return result;
}

Matrix times(const Matrix& a, const Matrix& b, std::size_t p) {
    return LinearAlgebra::multiply(a, p, p, b, p);
}

double trace(const Matrix& a, std::size_t p) {
    double sum = 0.0;
    for (std::size_t i = 0; i < p; ++i) {
        sum += a[i * p + i];
    }
    return sum;
}

/// 2 IE^-1.
std::optional<Matrix> parameterCovariance(const Sums& sums, const Matrix& phi) {
    constexpr double ridge = 1e-10;
    const std::size_t t = sums.parameters;
    const std::size_t p = sums.p;
    Matrix information(t * t);
    for (std::size_t i = 0; i < t; ++i) {
        const Matrix phiPi = times(phi, sums.p1[i], p);
        for (std::size_t j = 0; j < t; ++j) {
            information[i * t + j] = sums.traces[i * t + j] -
                                     2.0 * trace(times(phi, sums.q[i * t + j], p), p) +
                                     trace(times(phiPi, times(phi, sums.p1[j], p), p), p);
        }
    }
    // To unit diagonal, on which the test for singularity and the ridge have a meaning.
    std::vector<double> roots(t);
    for (std::size_t i = 0; i < t; ++i) {
        const double diagonal = information[i * t + i];
        roots[i] = diagonal > 0.0 ? std::sqrt(diagonal) : 1.0;
    }
    for (std::size_t i = 0; i < t * t; ++i) {
        information[i] /= roots[i / t] * roots[i % t];
    }
    std::optional<Matrix> inverse = LinearAlgebra::invert(information, t);
    if (!inverse) {
        for (std::size_t i = 0; i < t; ++i) {
            information[i * t + i] += ridge;
        }
        inverse = LinearAlgebra::invert(information, t);
    }
    for (std::size_t i = 0; inverse && i < t * t; ++i) {
        (*inverse)[i] *= 2.0 / (roots[i / t] * roots[i % t]);
    }
    return inverse;
}

Matrix adjusted(const Sums& sums, const Matrix& phi, const Matrix& w) {
    const std::size_t t = sums.parameters;
    const std::size_t p = sums.p;
    Matrix middle(p * p, 0.0);
    for (std::size_t i = 0; i < t; ++i) {
        const Matrix piPhi = times(sums.p1[i], phi, p);
        for (std::size_t j = 0; j < t; ++j) {
            const Matrix second = times(piPhi, sums.p1[j], p);
            for (std::size_t c = 0; c < p * p; ++c) {
                middle[c] += w[i * t + j] * (sums.q[i * t + j][c] - second[c]);
            }
        }
    }
    Matrix result = times(times(phi, middle, p), phi, p);
    for (std::size_t c = 0; c < p * p; ++c) {
        result[c] = phi[c] + 2.0 * result[c];
    }
    return result;
}

/// The df of one linear combination from the two sums over pairs of parameters.
double degreesFrom(double a1, double a2) {
    constexpr double nothing = 1e-18;
    constexpr double nextToZero = 1e-10;
    constexpr double bothZero = 1e-14;
    const double b = (a1 + 6.0 * a2) / 2.0;
    const double g = std::abs(a2) < nothing ? 1.0 : (2.0 * a1 - 5.0 * a2) / (3.0 * a2);
    const double d = 3.0 + 2.0 * (1.0 - g);
    const double c1 = g / d;
    const double c2 = (1.0 - g) / d;
    const double c3 = (3.0 - g) / d;
    double numerator = 1.0 + c1 * b;
    numerator = std::abs(numerator) < nextToZero ? std::abs(numerator) : numerator;
    const double denominator = 1.0 - c3 * b;
    const double first = denominator == 0.0 ? 0.0 : numerator / denominator;
    const double above = 1.0 - a2;
    const double below = 1.0 - c2 * b;
    const double ratio =
        std::abs(above) < bothZero && std::abs(below) < bothZero ? 1.0 : above / below;
    const double df = 4.0 + 3.0 / (first * ratio * ratio - 1.0);
    return std::isfinite(df) && df >= 1.0 ? df : 1.0;
}

/// The df of the linear combination l of the scaled effects.
double degreesOf(std::span<const double> l, const Sums& sums, const Matrix& phi, const Matrix& w) {
    const std::size_t t = sums.parameters;
    const std::size_t p = sums.p;
    const double variance = quadraticForm(phi, l);
    const Matrix phiL = LinearAlgebra::multiply(phi, p, p, l, 1);
    // With one combination the traces are products of l'Phi P_i Phi l / l'Phi l.
    std::vector<double> shares(t);
    for (std::size_t i = 0; i < t; ++i) {
        shares[i] = quadraticForm(sums.p1[i], phiL) / variance;
    }
    double sum = 0.0;
    for (std::size_t i = 0; i < t; ++i) {
        for (std::size_t j = 0; j < t; ++j) {
            sum += w[i * t + j] * shares[i] * shares[j];
        }
    }
    return degreesFrom(sum, sum);
}

}  // namespace

std::optional<Adjustment> adjust(const ClusterSums& sums,
                                 const ScaledDesign& design,
                                 const MultilevelProfile& profile,
                                 const RandomCovariance& g,
                                 bool correlated) {
    constexpr double degreesWithout = 1e6;
    const Sums at = sumsAt(sums, g, correlated);
    const std::optional<Matrix> phi = LinearAlgebra::invert(profile.xtwx, at.p);
    const std::optional<Matrix> w = phi ? parameterCovariance(at, *phi) : std::nullopt;
    if (!w) {
        return std::nullopt;
    }
    const Matrix adjustedPhi = adjusted(at, *phi, *w);
    Adjustment result;
    for (std::size_t j = 0; j < at.p; ++j) {
        const std::span<const double> l = design.weights(j);
        result.variances.push_back(std::max(profile.sigma2 * quadraticForm(adjustedPhi, l), 0.0));
        const bool hasVariance = profile.sigma2 * quadraticForm(*phi, l) > 0.0;
        result.degrees.push_back(hasVariance ? degreesOf(l, at, *phi, *w) : degreesWithout);
    }
    return result;
}

}  // namespace sorvane::KenwardRoger
