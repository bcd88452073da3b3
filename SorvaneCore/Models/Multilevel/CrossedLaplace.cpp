#include "SorvaneCore/Models/Multilevel/CrossedLaplace.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "SorvaneCore/Models/Multilevel/LevelBlock.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane {

/// The joint log density of outcomes and effects, with its derivatives in the effects.
struct CrossedLaplace::State {
    std::vector<double> u{};
    double value = 0.0;
    /// Becomes the Newton step.
    std::vector<double> gradient{};
    /// The negative Hessian: the larger factor's diagonal, the mixed entries by meeting, the smaller
    /// factor's block, which becomes the factor of what elimination leaves of it.
    std::vector<double> diagonal{};
    std::vector<double> mixed{};
    LevelBlock block;
    double logDeterminant = 0.0;
};

CrossedLaplace::CrossedLaplace(const LinkedDesign& design, const MultilevelRows& rows)
    : design_(design),
      larger_(rows.cluster.count() >= rows.cluster2.count() ? rows.cluster : rows.cluster2),
      smaller_(rows.cluster.count() >= rows.cluster2.count() ? rows.cluster2 : rows.cluster),
      firstIsLarger_(rows.cluster.count() >= rows.cluster2.count()),
      meetings_(LevelMeetings::of(larger_, smaller_)),
      meetingOfRow_(rows.count()),
      mode_(larger_.count() + smaller_.count(), 0.0) {
    for (std::size_t i = 0; i < rows.count(); ++i) {
        meetingOfRow_[i] =
            static_cast<std::uint32_t>(meetings_.find(larger_.codes[i], smaller_.codes[i]));
    }
}

CrossedLaplace::State CrossedLaplace::at(const std::vector<double>& u,
                                         std::span<const double> predictor,
                                         Spread spread) const {
    const std::size_t a = larger_.count();
    const std::size_t b = smaller_.count();
    State state{.u = u, .block = LevelBlock(b, meetings_.isNested())};
    state.gradient.resize(a + b);
    state.diagonal.assign(a, 1.0);
    state.mixed.assign(meetings_.meetings.size(), 0.0);
    for (std::size_t level = 0; level < a + b; ++level) {
        state.value -= 0.5 * u[level] * u[level];
        state.gradient[level] = -u[level];
    }
    for (std::size_t level = 0; level < b; ++level) {
        state.block.row(level)[level] = 1.0;
    }
    for (std::size_t i = 0; i < predictor.size(); ++i) {
        const std::size_t first = larger_.codes[i];
        const std::size_t second = smaller_.codes[i];
        const double outcome = design_.outcome()[i];
        const LinkedMass mass = LinkedMass::of(
            design_.family(), outcome, design_.peaks()[i],
            predictor[i] + spread.larger * u[first] + spread.smaller * u[a + second]);
        state.value += mass.logMass;
        state.gradient[first] += spread.larger * (outcome - mass.mean);
        state.gradient[a + second] += spread.smaller * (outcome - mass.mean);
        state.diagonal[first] += spread.larger * spread.larger * mass.weight;
        state.mixed[meetingOfRow_[i]] += spread.larger * spread.smaller * mass.weight;
        state.block.row(second)[second] += spread.smaller * spread.smaller * mass.weight;
    }
    return state;
}

std::vector<double> CrossedLaplace::information(std::span<const double> predictor,
                                                const CrossedSpread& spreads) const {
    const std::size_t a = larger_.count();
    const std::size_t p = design_.fixedCount();
    const std::size_t n = predictor.size();
    const Spread spread = spreadOf(spreads.first, spreads.second);
    const auto added = [&](std::size_t row, const std::vector<double>& u) {
        return spread.larger * u[larger_.codes[row]] + spread.smaller * u[a + smaller_.codes[row]];
    };
    std::vector<double> weights(n);
    for (std::size_t i = 0; i < n; ++i) {
        weights[i] = LinkedMass::of(design_.family(), design_.outcome()[i], design_.peaks()[i],
                                    predictor[i] + added(i, mode_))
                         .weight;
    }
    const State modal = at(mode_, predictor, spread);
    std::vector<double> result(p * p, 0.0);
    for (std::size_t j = 0; j < p; ++j) {
        const std::span<const double> column = design_.columns().subspan(j * n, n);
        State state = modal;
        std::ranges::fill(state.gradient, 0.0);
        for (std::size_t i = 0; i < n; ++i) {
            state.gradient[larger_.codes[i]] += spread.larger * weights[i] * column[i];
            state.gradient[a + smaller_.codes[i]] += spread.smaller * weights[i] * column[i];
        }
        if (!solve(state)) {
            return {};
        }
        for (std::size_t i = 0; i < n; ++i) {
            const double left = weights[i] * (column[i] - added(i, state.gradient));
            for (std::size_t k = 0; k < p; ++k) {
                result[j * p + k] += left * design_.columns()[k * n + i];
            }
        }
    }
    return result;
}

bool CrossedLaplace::solve(State& state) const {
    const std::size_t a = larger_.count();
    double* smallerStep = &state.gradient[a];
    for (std::size_t level = 0; level < a; ++level) {
        state.logDeterminant += std::log(state.diagonal[level]);
        const std::size_t first = meetings_.starts[level];
        for (std::size_t s = first; s < meetings_.starts[level + 1]; ++s) {
            const std::uint32_t second = meetings_.meetings[s].level;
            const double share = state.mixed[s] / state.diagonal[level];
            smallerStep[second] -= share * state.gradient[level];
            double* row = state.block.row(second);
            for (std::size_t t = first; t <= s; ++t) {
                row[meetings_.meetings[t].level] -= share * state.mixed[t];
            }
        }
    }
    if (!state.block.factor(hardwareThreads())) {
        return false;
    }
    const std::span<double> solved = std::span(state.gradient).subspan(a);
    state.block.solveLower(solved, 1);
    state.block.solveLowerTransposed(solved, 1);
    state.logDeterminant += state.block.logDeterminant();
    for (std::size_t level = 0; level < a; ++level) {
        for (std::size_t s = meetings_.starts[level]; s < meetings_.starts[level + 1]; ++s) {
            state.gradient[level] -= state.mixed[s] * smallerStep[meetings_.meetings[s].level];
        }
        state.gradient[level] /= state.diagonal[level];
    }
    return true;
}

CrossedLaplace::Spread CrossedLaplace::spreadOf(double sigmaA, double sigmaB) const {
    return firstIsLarger_ ? Spread{.larger = sigmaA, .smaller = sigmaB}
                          : Spread{.larger = sigmaB, .smaller = sigmaA};
}

double CrossedLaplace::logLikelihood(std::span<const double> predictor,
                                     double sigmaA,
                                     double sigmaB) {
    constexpr int stepLimit = 60;
    constexpr int halvingLimit = 30;
    constexpr double smallestStep = 1e-11;
    constexpr double shortStep = 1e-6;
    const Spread spread = spreadOf(sigmaA, sigmaB);
    State now = at(mode_, predictor, spread);
    bool isSolved = solve(now);
    for (int i = 0; isSolved && i < stepLimit; ++i) {
        double length = 0.0;
        for (const double entry : now.gradient) {
            length = std::max(length, std::abs(entry));
        }
        if (!(length >= smallestStep)) {
            break;
        }
        const auto moved = [&now](double share) {
            std::vector<double> u = now.u;
            for (std::size_t level = 0; level < u.size(); ++level) {
                u[level] += share * now.gradient[level];
            }
            return u;
        };
        double share = 1.0;
        State next = at(moved(share), predictor, spread);
        // Short steps are let pass, as rounding decides about their gain.
        for (int h = 0; h < halvingLimit && length > shortStep && !(next.value >= now.value); ++h) {
            share *= 0.5;
            next = at(moved(share), predictor, spread);
        }
        now = std::move(next);
        isSolved = solve(now);
    }
    if (!isSolved || !std::isfinite(now.value)) {
        std::ranges::fill(mode_, 0.0);
        return -std::numeric_limits<double>::infinity();
    }
    mode_ = now.u;
    // The constants of the effects' density and of the integral cancel.
    return design_.constant() + now.value - 0.5 * now.logDeterminant;
}

std::vector<double> CrossedLaplace::variances(const State& state) const {
    const std::size_t a = larger_.count();
    const std::size_t b = smaller_.count();
    const std::size_t count = firstIsLarger_ ? a : b;
    std::vector<double> result(count, 0.0);
    // With L the factor of what elimination leaves, the squares of L^-1 times these columns add up
    // to what is missing of the inverse's diagonal.
    std::vector<double> columns(b * count, 0.0);
    for (std::size_t level = 0; level < count; ++level) {
        if (!firstIsLarger_) {
            columns[level * count + level] = 1.0;
            continue;
        }
        result[level] = 1.0 / state.diagonal[level];
        for (std::size_t s = meetings_.starts[level]; s < meetings_.starts[level + 1]; ++s) {
            columns[meetings_.meetings[s].level * count + level] =
                state.mixed[s] / state.diagonal[level];
        }
    }
    state.block.solveLower(columns, count);
    for (std::size_t at = 0; at < columns.size(); ++at) {
        result[at % count] += columns[at] * columns[at];
    }
    return result;
}

std::vector<CrossedLaplace::Mode> CrossedLaplace::modes(std::span<const double> predictor,
                                                        double sigmaA,
                                                        double sigmaB) {
    if (!std::isfinite(logLikelihood(predictor, sigmaA, sigmaB))) {
        return {};
    }
    State state = at(mode_, predictor, spreadOf(sigmaA, sigmaB));
    if (!solve(state)) {
        return {};
    }
    const std::size_t first = firstIsLarger_ ? 0 : larger_.count();
    std::vector<Mode> result;
    for (const double variance : variances(state)) {
        result.push_back({.intercept = sigmaA * state.u[first + result.size()],
                          .error = sigmaA * std::sqrt(variance)});
    }
    return result;
}

}  // namespace sorvane
