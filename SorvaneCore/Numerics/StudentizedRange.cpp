#include <algorithm>
#include <cmath>
#include <limits>
#include <math.h>
#include <memory>
#include <numbers>
#include <vector>

#include "SorvaneCore/Numerics/GaussLegendre.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane::MathDistributions {

namespace {

using GaussLegendre::forEachNode;

// Below this a node adds nothing that a probability could show.
constexpr double negligibleShare = 1e-20;

double wholePower(double base, int exponent) {
    double power = 1.0;
    for (; exponent > 0; exponent /= 2) {
        if (exponent % 2 == 1) {
            power *= base;
        }
        base *= base;
    }
    return power;
}

/// The distribution of the range of k standard normal values.
class NormalRange {
public:
    explicit NormalRange(int k) : k_(k) {
        double total = 0.0;
        for (const Node& node : nodes()) {
            totalsBefore_.push_back(total);
            total += node.weight * wholePower(node.lower, k - 1);
        }
        totalsBefore_.push_back(total);
        const auto useful = std::ranges::upper_bound(totalsBefore_, negligibleShare);
        firstUseful_ = static_cast<std::size_t>(useful - totalsBefore_.begin()) - 1;
    }

    /// P(range <= width) for a positive width.
    double cdf(double width) const {
        const std::vector<Node>& all = nodes();
        // Up to here Phi(z - width) is exactly 0, and the sum is known whatever the width.
        const auto open = std::ranges::partition_point(
            all, [width](const Node& node) { return node.z < width - normalCDFVanishes; });
        const auto first = std::max(firstUseful_, static_cast<std::size_t>(open - all.begin()));
        double sum = totalsBefore_[first];
        for (std::size_t i = first; i < all.size(); ++i) {
            const double between = all[i].lower - standardNormalCDF(all[i].z - width);
            sum += all[i].weight * wholePower(between < 0.0 ? 0.0 : between, k_ - 1);
        }
        return std::clamp(k_ * sum, 0.0, 1.0);
    }

private:
    struct Node {
        double z = 0.0;
        double lower = 0.0;   ///< Phi(z)
        double weight = 0.0;  ///< of the rule, times phi(z)
    };

    static const std::vector<Node>& nodes();

    // (1 + erf(z / sqrt 2)) / 2 is exactly 0 below minus this.
    static constexpr double normalCDFVanishes = 8.5;

    int k_;
    std::size_t firstUseful_ = 0;
    std::vector<double> totalsBefore_;
};

const std::vector<NormalRange::Node>& NormalRange::nodes() {
    constexpr double rootTwoPi = 2.5066282746310002;
    static const std::vector<Node> all = [] {
        std::vector<Node> list;
        forEachNode(-8.5, 1.0625, 16, [&list](double z, double weight) {
            const double density = std::exp(-z * z / 2.0) / rootTwoPi;
            list.push_back({.z = z, .lower = standardNormalCDF(z), .weight = weight * density});
        });
        return list;
    }();
    return all;
}

/// The distribution of `NormalRange` from polynomials, each made when it is first asked for.
class TabulatedRange {
public:
    explicit TabulatedRange(int k) : range_(k), panels_(panelCount) {}

    double cdf(double width) {
        if (!(width < end)) {
            return range_.cdf(width);
        }
        const auto index = static_cast<std::size_t>(width / panelWidth);
        std::vector<double>& panel = panels_[index];
        const double start = static_cast<double>(index) * panelWidth;
        if (panel.empty()) {
            panel = coefficients(start);
        }
        return std::clamp(value(panel, 2.0 * (width - start) / panelWidth - 1.0), 0.0, 1.0);
    }

private:
    // Entire functions no steeper than a normal density: the 14th term of half a unit is below
    // 1e-15 up to hundreds of means.
    static constexpr double panelWidth = 0.5;
    static constexpr std::size_t panelCount = 34;
    static constexpr double end = panelWidth * panelCount;
    static constexpr std::size_t termCount = 14;

    /// Of the Chebyshev polynomials on a panel, from the values at their nodes.
    std::vector<double> coefficients(double start) const {
        const double step = std::numbers::pi / static_cast<double>(termCount);
        std::vector<double> terms(termCount);
        for (std::size_t node = 0; node < termCount; ++node) {
            const double angle = (static_cast<double>(node) + 0.5) * step;
            const double width = start + panelWidth / 2.0 * (1.0 + std::cos(angle));
            const double share = 2.0 * range_.cdf(width) / static_cast<double>(termCount);
            for (std::size_t term = 0; term < termCount; ++term) {
                terms[term] += share * std::cos(static_cast<double>(term) * angle);
            }
        }
        terms[0] /= 2.0;
        return terms;
    }

    /// Clenshaw's sum.
    static double value(const std::vector<double>& terms, double x) {
        double next = 0.0;
        double afterNext = 0.0;
        for (std::size_t term = termCount; term-- > 1;) {
            const double current = 2.0 * x * next - afterNext + terms[term];
            afterNext = next;
            next = current;
        }
        return x * next - afterNext + terms[0];
    }

    NormalRange range_;
    std::vector<std::vector<double>> panels_;
};

/// The distribution of the range of k means over an estimate of their standard deviation.
template <typename Range>
class StudentizedRange {
public:
    StudentizedRange(Range& range, double df) : range_(range) {
        constexpr double largestFiniteDf = 25000.0;
        if (df > largestFiniteDf) {
            scales_ = {{.s = 1.0, .share = 1.0}};
            return;
        }
        const double logConstant =
            df / 2.0 * std::log(df) + std::log(2.0) - df / 2.0 * std::log(2.0) - logGamma(df / 2.0);
        const double panelWidth = (18.0 / std::sqrt(std::max(df, 1.0)) + 1.0) / 20.0;
        forEachNode(0.0, panelWidth, 20, [&](double s, double weight) {
            const double density =
                std::exp(logConstant + (df - 1.0) * std::log(s) - df * s * s / 2.0);
            if (weight * density > negligibleShare) {
                scales_.push_back({.s = s, .share = weight * density});
            }
        });
    }

    /// P(Q <= q) for a positive q.
    double cdf(double q) const {
        double sum = 0.0;
        for (const Scale& scale : scales_) {
            sum += scale.share * range_.cdf(q * scale.s);
        }
        return std::clamp(sum, 0.0, 1.0);
    }

private:
    struct Scale {
        double s = 0.0;
        double share = 0.0;  ///< of the density, with the weight of the rule
    };

    static double logGamma(double x) {
        int sign = 0;
        // Unlike lgamma, this form writes no global.
        return ::lgamma_r(x, &sign);
    }

    Range& range_;
    std::vector<Scale> scales_;
};

/// Tells on which side of the quantile of p a value lies. It remembers the nearest value of each
/// side, so that a question outside of these two costs no integral.
template <typename Range>
class QuantileSide {
public:
    QuantileSide(const StudentizedRange<Range>& range, double p) : range_(range), p_(p) {}

    bool isBelow(double q) {
        if (q <= below_.q) {
            return true;
        }
        return q < above_.q && evaluate(q) < 0.0;
    }

    /// Brings the two values as near to each other as the bisection ends.
    void closeIn() {
        constexpr double goal = 1e-7;
        constexpr int stepLimit = 6;
        for (int step = 0; step < stepLimit && above_.q - below_.q > goal; ++step) {
            const double slope = (above_.excess - below_.excess) / (above_.q - below_.q);
            if (!(slope > 0.0)) {
                return;  // a side is still unknown
            }
            const double q = below_.q - below_.excess / slope;
            const double excess = evaluate(q);
            // Twice the way back to the level, and a little more, lands on its other side.
            evaluate(q - 2.0 * excess / slope - std::copysign(goal / 4.0, excess));
        }
    }

private:
    struct Known {
        double q = 0.0;
        double excess = 0.0;  ///< of the probability over p
    };

    double evaluate(double q) {
        const double excess = range_.cdf(q) - p_;
        Known& side = excess < 0.0 ? below_ : above_;
        if (q > below_.q && q < above_.q) {
            side = {.q = q, .excess = excess};
        }
        return excess;
    }

    const StudentizedRange<Range>& range_;
    double p_;
    Known below_{.q = -std::numeric_limits<double>::infinity()};
    Known above_{.q = std::numeric_limits<double>::infinity()};
};

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

bool isRangeDomain(int k, double df) {
    return k >= 2 && df >= 2.0;
}

/// P(Q <= q) within the domain of k and df.
template <typename Range>
double cdfOf(Range& range, double q, double df) {
    if (q <= 0.0) {
        return 0.0;
    }
    return std::isfinite(q) ? StudentizedRange<Range>(range, df).cdf(q) : 1.0;
}

/// The quantile within the domain of k, df and p.
template <typename Range>
double quantileOf(Range& range, double p, double df) {
    constexpr int halvings = 26;
    constexpr int halvingsBeforeClosingIn = 4;
    const StudentizedRange<Range> studentized(range, df);
    QuantileSide<Range> side(studentized, p);
    double low = 0.5;
    double high = 15.0;
    for (int i = 0; i < halvings; ++i) {
        if (i == halvingsBeforeClosingIn) {
            side.closeIn();
        }
        const double middle = (low + high) / 2.0;
        (side.isBelow(middle) ? low : high) = middle;
    }
    return (low + high) / 2.0;
}

}  // namespace

double standardRangeCDF(double q, int k) {
    if (k < 2) {
        return q > 0.0 ? 1.0 : 0.0;
    }
    return q <= 0.0 ? 0.0 : NormalRange(k).cdf(q);
}

double studentizedRangeCDF(double q, int k, double df) {
    if (!isRangeDomain(k, df)) {
        return notANumber;
    }
    NormalRange range(k);
    return cdfOf(range, q, df);
}

double studentizedRangeQuantile(double p, int k, double df) {
    if (!(p > 0.0 && p < 1.0) || !isRangeDomain(k, df)) {
        return notANumber;
    }
    NormalRange range(k);
    return quantileOf(range, p, df);
}

class StudentizedRangeFamily::Table : public TabulatedRange {
    using TabulatedRange::TabulatedRange;
};

StudentizedRangeFamily::StudentizedRangeFamily(int k)
    : k_(k), table_(std::make_unique<Table>(std::max(k, 2))) {}

StudentizedRangeFamily::~StudentizedRangeFamily() = default;

double StudentizedRangeFamily::cdf(double q, double df) {
    return isRangeDomain(k_, df) ? cdfOf<TabulatedRange>(*table_, q, df) : notANumber;
}

double StudentizedRangeFamily::quantile(double p, double df) {
    if (!(p > 0.0 && p < 1.0) || !isRangeDomain(k_, df)) {
        return notANumber;
    }
    return quantileOf<TabulatedRange>(*table_, p, df);
}

}  // namespace sorvane::MathDistributions
