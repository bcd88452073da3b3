#include "SorvaneCore/Models/Structural/SEMDiscrepancy.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane {

namespace {

using Matrix = std::vector<double>;

/// a times the transpose of b, each of rows of one length.
Matrix timesTransposed(const Matrix& a, const Matrix& b, std::size_t length) {
    const std::size_t aRows = a.size() / length;
    const std::size_t bRows = b.size() / length;
    Matrix product(aRows * bRows);
    for (std::size_t i = 0; i < aRows; ++i) {
        for (std::size_t j = 0; j < bRows; ++j) {
            product[i * bRows + j] = ColumnKernels::dot(&a[i * length], &b[j * length], length);
        }
    }
    return product;
}

}  // namespace

SEMDiscrepancy::SEMDiscrepancy(const ReticularModel& form,
                               std::vector<double> coefficients,
                               const std::vector<bool>& isFree,
                               std::vector<double> sample,
                               double sampleLogDeterminant)
    : form_(form),
      coefficients_(std::move(coefficients)),
      sample_(std::move(sample)),
      sampleLogDeterminant_(sampleLogDeterminant) {
    for (std::size_t slot = 0; slot < isFree.size(); ++slot) {
        if (isFree[slot]) {
            freeSlots_.push_back(slot);
        }
    }
}

std::vector<double> SEMDiscrepancy::coefficientsAt(std::span<const double> point) const {
    std::vector<double> all = coefficients_;
    for (std::size_t k = 0; k < freeSlots_.size(); ++k) {
        all[freeSlots_[k]] = point[k];
    }
    return all;
}

void SEMDiscrepancy::evaluate(std::span<const double> point) {
    if (std::ranges::equal(point, state_.point) && !state_.moments.total.empty()) {
        return;
    }
    state_ = State{.point = {point.begin(), point.end()}};
    auto moments = form_.moments(coefficientsAt(point));
    if (!moments) {
        return;
    }
    state_.moments = std::move(*moments);
    const std::size_t p = form_.observedCount();
    const Matrix sigma = form_.observedPart(state_.moments.covariance);
    const std::optional<double> logDeterminant = LinearAlgebra::logAbsDeterminant(sigma, p);
    if (!logDeterminant) {
        return;
    }
    auto inverse = LinearAlgebra::invert(sigma, p);
    if (!inverse) {
        return;
    }
    const double trace = ColumnKernels::dot(sample_.data(), inverse->data(), p * p);
    const double value = trace - static_cast<double>(p) + (*logDeterminant - sampleLogDeterminant_);
    if (std::isfinite(value)) {
        state_.inverse = std::move(*inverse);
        state_.value = value;
        state_.isUsable = true;
    }
}

double SEMDiscrepancy::value(std::span<const double> point) {
    evaluate(point);
    return state_.value;
}

SEMDiscrepancy::Directions SEMDiscrepancy::directions() const {
    const std::size_t p = form_.observedCount();
    const std::size_t size = form_.size();
    Directions result;
    const auto appendColumn = [&](Matrix& to, const Matrix& from, std::size_t column) {
        for (std::size_t i = 0; i < p; ++i) {
            to.push_back(from[i * size + column]);
        }
    };
    for (const std::size_t slot : freeSlots_) {
        const ReticularModel::Entry& entry = form_.entries()[slot];
        appendColumn(result.u, state_.moments.total, entry.row);
        appendColumn(result.v, entry.isDirected ? state_.moments.covariance : state_.moments.total,
                     entry.column);
        const bool isVariance = !entry.isDirected && entry.row == entry.column;
        result.shares.push_back(isVariance ? 0.5 : 1.0);
    }
    return result;
}

std::vector<double> SEMDiscrepancy::gradient(std::span<const double> point) {
    evaluate(point);
    std::vector<double> gradient(freeSlots_.size(), 0.0);
    if (!state_.isUsable) {
        return gradient;
    }
    const std::size_t p = form_.observedCount();
    const Matrix& w = state_.inverse;
    // The slope of F by Sigma: W - W S W.
    Matrix slope = timesTransposed(timesTransposed(w, sample_, p), w, p);
    for (std::size_t i = 0; i < slope.size(); ++i) {
        slope[i] = w[i] - slope[i];
    }
    const Directions each = directions();
    const Matrix turned = timesTransposed(each.u, slope, p);
    for (std::size_t k = 0; k < gradient.size(); ++k) {
        gradient[k] = 2.0 * each.shares[k] * ColumnKernels::dot(&turned[k * p], &each.v[k * p], p);
    }
    return gradient;
}

std::optional<std::vector<double>> SEMDiscrepancy::information(std::span<const double> point) {
    evaluate(point);
    if (!state_.isUsable) {
        return std::nullopt;
    }
    const std::size_t p = form_.observedCount();
    const std::size_t count = freeSlots_.size();
    const Directions each = directions();
    const Matrix turnedU = timesTransposed(each.u, state_.inverse, p);
    const Matrix turnedV = timesTransposed(each.v, state_.inverse, p);
    const Matrix uu = timesTransposed(turnedU, each.u, p);
    const Matrix vv = timesTransposed(turnedV, each.v, p);
    const Matrix uv = timesTransposed(turnedU, each.v, p);
    Matrix information(count * count);
    for (std::size_t k = 0; k < count; ++k) {
        for (std::size_t l = 0; l < count; ++l) {
            const std::size_t kl = k * count + l;
            information[kl] =
                each.shares[k] * each.shares[l] * (uu[kl] * vv[kl] + uv[kl] * uv[l * count + k]);
        }
    }
    return information;
}

}  // namespace sorvane
