#include "SorvaneCore/Models/Survival/CoxPartialLikelihood.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace sorvane {

/// Sums over the cases whose time has not yet come, and over the events of the present time.
struct CoxPartialLikelihood::RiskSet {
    /// What the exponents are taken from, near their largest, so that no sum can overflow or vanish.
    double offset = -std::numeric_limits<double>::infinity();
    double weights = 0.0;
    std::vector<double> first{};
    /// Upper triangle.
    std::vector<double> second{};

    double events = 0.0;
    double eventPredictors = 0.0;
    std::vector<double> eventSums{};

    void takeFrom(double eta);
};

void CoxPartialLikelihood::RiskSet::takeFrom(double eta) {
    const double factor = std::exp(offset - eta);
    offset = eta;
    weights *= factor;
    for (std::vector<double>* sums : {&first, &second}) {
        for (double& sum : *sums) {
            sum *= factor;
        }
    }
}

CoxPartialLikelihood::CoxPartialLikelihood(std::span<const double> times,
                                           std::span<const std::uint8_t> hasEvent,
                                           std::vector<double> predictors)
    : times_(times),
      hasEvent_(hasEvent),
      width_(predictors.size() / times.size()),
      predictors_(std::move(predictors)) {
    standardizePredictors();
}

void CoxPartialLikelihood::standardizePredictors() {
    // A spread that rounding explains is none.
    constexpr double roundingShare = 1e-13;
    const auto count = static_cast<double>(times_.size());
    for (std::size_t j = 0; j < width_; ++j) {
        double sum = 0.0;
        for (std::size_t i = 0; i < times_.size(); ++i) {
            sum += predictors_[i * width_ + j];
        }
        const double mean = sum / count;
        double squares = 0.0;
        for (std::size_t i = 0; i < times_.size(); ++i) {
            double& value = predictors_[i * width_ + j];
            value -= mean;
            squares += value * value;
        }
        const double deviation = std::sqrt(squares / count);
        units_.push_back(deviation > roundingShare * std::abs(mean) ? deviation : 1.0);
        for (std::size_t i = 0; i < times_.size(); ++i) {
            predictors_[i * width_ + j] /= units_[j];
        }
    }
}

void CoxPartialLikelihood::addCase(RiskSet& risk,
                                   std::size_t i,
                                   std::span<const double> beta) const {
    constexpr double largestExponent = 100.0;
    const double* x = &predictors_[i * width_];
    double eta = 0.0;
    for (std::size_t j = 0; j < width_; ++j) {
        eta += x[j] * beta[j];
    }
    if (eta - risk.offset > largestExponent) {
        risk.takeFrom(eta);
    }
    const double weight = std::exp(eta - risk.offset);
    risk.weights += weight;
    for (std::size_t j = 0; j < width_; ++j) {
        const double weighted = weight * x[j];
        risk.first[j] += weighted;
        for (std::size_t l = j; l < width_; ++l) {
            risk.second[j * width_ + l] += weighted * x[l];
        }
    }
    if (hasEvent_[i] != 0) {
        risk.events += 1.0;
        risk.eventPredictors += eta;
        for (std::size_t j = 0; j < width_; ++j) {
            risk.eventSums[j] += x[j];
        }
    }
}

void CoxPartialLikelihood::addEventTime(Evaluation& sums, const RiskSet& risk) const {
    sums.logLikelihood +=
        risk.eventPredictors - risk.events * (risk.offset + std::log(risk.weights));
    for (std::size_t j = 0; j < width_; ++j) {
        const double mean = risk.first[j] / risk.weights;
        sums.score[j] += risk.eventSums[j] - risk.events * mean;
        for (std::size_t l = j; l < width_; ++l) {
            sums.information[j * width_ + l] +=
                risk.events * (risk.second[j * width_ + l] / risk.weights -
                               mean * (risk.first[l] / risk.weights));
        }
    }
}

CoxPartialLikelihood::Evaluation CoxPartialLikelihood::at(std::span<const double> beta) const {
    const std::size_t squared = width_ * width_;
    Evaluation sums{.score = std::vector<double>(width_, 0.0),
                    .information = std::vector<double>(squared, 0.0)};
    RiskSet risk{.first = std::vector<double>(width_, 0.0),
                 .second = std::vector<double>(squared, 0.0),
                 .eventSums = std::vector<double>(width_, 0.0)};
    for (std::size_t i = times_.size(); i-- > 0;) {
        addCase(risk, i, beta);
        if (i > 0 && times_[i - 1] == times_[i]) {
            continue;
        }
        if (risk.events > 0.0) {
            addEventTime(sums, risk);
            risk.events = 0.0;
            risk.eventPredictors = 0.0;
            std::ranges::fill(risk.eventSums, 0.0);
        }
    }
    for (std::size_t j = 0; j < width_; ++j) {
        for (std::size_t l = j + 1; l < width_; ++l) {
            sums.information[l * width_ + j] = sums.information[j * width_ + l];
        }
    }
    return sums;
}

}  // namespace sorvane
