#include "SorvaneMac/Screens/Survey/SurveyModelFit.h"

#include <optional>

#include "SorvaneCore/Survey/SurveyGLM.h"
#include "SorvaneCore/Survey/SurveyOrdinal.h"
#include "SorvaneCore/Survey/SurveyRegression.h"
#include "SorvaneMac/Screens/Survey/SurveyColumns.h"

namespace sorvane {

namespace {

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

}  // namespace

SurveyModelRun SurveyModelFit::under(const SurveyDesign& design) const {
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
    return done;
}

}  // namespace sorvane
