#include "SorvaneMac/Screens/Survey/SurveyModelFit.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "SorvaneCore/Survey/SurveyGLM.h"
#include "SorvaneCore/Survey/SurveyOrdinal.h"
#include "SorvaneCore/Survey/SurveyRegression.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"

namespace sorvane {

namespace {

std::vector<std::size_t> completeRows(std::size_t rowCount,
                                      const std::vector<NumericColumn>& columns) {
    std::vector<std::size_t> rows;
    for (std::size_t row = 0; row < rowCount; ++row) {
        const bool isComplete = std::ranges::all_of(columns, [row](const NumericColumn& column) {
            return column[row] && std::isfinite(*column[row]);
        });
        if (isComplete) {
            rows.push_back(row);
        }
    }
    return rows;
}

double effectiveSize(const SurveyDesign& design, const std::vector<std::size_t>& rows) {
    double sum = 0.0;
    double squares = 0.0;
    for (const std::size_t row : rows) {
        sum += design.weights[row];
        squares += design.weights[row] * design.weights[row];
    }
    return rows.empty() ? std::nan("") : sum * sum / squares;
}

double weightedDeviation(const NumericColumn& column,
                         const SurveyDesign& design,
                         const std::vector<std::size_t>& rows) {
    double weight = 0.0;
    double sum = 0.0;
    for (const std::size_t row : rows) {
        weight += design.weights[row];
        sum += design.weights[row] * *column[row];
    }
    double squares = 0.0;
    for (const std::size_t row : rows) {
        const double deviation = *column[row] - sum / weight;
        squares += design.weights[row] * deviation * deviation;
    }
    return std::sqrt(squares / weight);
}

std::optional<SurveyModelResult> fitted(const SurveyModelFit& input, const SurveyDesign& design) {
    const SurveyModelOptions options{.predictorNames = input.run.predictors,
                                     .outcomeName = input.run.outcome};
    switch (input.run.model) {
        case SurveyModelKind::linear:
            return SurveyRegression::fit(input.outcome, input.predictors, design, options);
        case SurveyModelKind::logistic:
            return SurveyGLM::fitLogistic(input.outcome, input.predictors, design, options);
        case SurveyModelKind::poisson:
            return SurveyGLM::fitPoisson(input.outcome, input.predictors, design, options);
        case SurveyModelKind::ordinal:
            break;
    }
    return SurveyOrdinal::fit(input.outcome, input.predictors, design, options);
}

void describeRows(SurveyModelRun& run, const SurveyModelFit& input) {
    std::vector<NumericColumn> all = input.predictors;
    all.push_back(input.outcome);
    const std::vector<std::size_t> rows = completeRows(input.design.weights.size(), all);
    run.effectiveSampleSize = effectiveSize(input.design, rows);
    for (const NumericColumn& predictor : input.predictors) {
        run.deviations.push_back(weightedDeviation(predictor, input.design, rows));
    }
    if (run.model == SurveyModelKind::logistic) {
        run.events = std::ranges::count_if(
            rows, [&input](std::size_t row) { return input.outcome[row] == 1.0; });
    }
}

}  // namespace

double effectiveSampleSize(const SurveyDesign& design, const std::vector<NumericColumn>& columns) {
    return effectiveSize(design, completeRows(design.weights.size(), columns));
}

SurveyModelRun SurveyModelFit::computed() const {
    SurveyModelRun done = run;
    done.result = fitted(*this, design);
    if (!done.result || done.result->readiness.status == AnalysisReadinessStatus::blocked) {
        return done;
    }
    done.cautions = SurveyColumns::cautions(design);
    if (SurveyColumns::isMoreThanWeights(design)) {
        done.weightsOnly = fitted(*this, SurveyColumns::weightsAlone(design));
    }
    done.unweighted = fitted(*this, SurveyColumns::unweighted(design));
    describeRows(done, *this);
    return done;
}

}  // namespace sorvane
