#include "SorvaneMac/Screens/Multilevel/MultilevelNotes.h"

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelFields.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelReport.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelWords.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::MultilevelNotes {

namespace {

std::string dfSentence(MultilevelDFMethod method) {
    switch (method) {
        case MultilevelDFMethod::wald:
            return "p values use a Wald (normal) approximation.";
        case MultilevelDFMethod::containment:
            return "p values and confidence intervals use a containment t reference with a shared "
                   "residual-style df.";
        case MultilevelDFMethod::satterthwaite:
            return "p values and confidence intervals use a Satterthwaite t reference "
                   "(lmerTest-style) with coefficient-specific df.";
        case MultilevelDFMethod::kenwardRoger:
            return "p values and confidence intervals use Kenward–Roger adjusted SEs with "
                   "Satterthwaite-style df on nested Gaussian LMMs. Crossed models use "
                   "Satterthwaite df without the covariance adjustment.";
    }
    return "";
}

/// "n = 180 in 18 clusters of Subject; log likelihood = -871.81, REML criterion = 1743.63"
std::string fitWords(const MultilevelRun& run) {
    const MultilevelResult& result = *run.result;
    std::string text = "n = " + ResultText::count(result.n) + " in " +
                       MultilevelWords::clusters(run) +
                       "; log likelihood = " + svFmt(result.logLikelihood, 2);
    if (result.remlCriterion) {
        return text + ", REML criterion = " + svFmt(*result.remlCriterion, 2);
    }
    const MultilevelReport::Criteria criteria = MultilevelReport::criteria(run);
    return text + ", AIC = " + svFmt(criteria.aic, 2) + ", BIC = " + svFmt(criteria.bic, 2);
}

std::string ratioNote(const MultilevelRun& run) {
    const bool isOdds = run.choice.isLogistic();
    const std::string ratio = isOdds ? "OR" : "RR";
    const bool usesQuadrature = run.choice.slope.empty() && !run.choice.hasTwoFactors();
    return fitWords(run) + ". B = " + (isOdds ? "logit" : "log rate") + " coefficient; " + ratio +
           " = exp(B); SE = standard error of B; CI = confidence interval for " + ratio +
           "; LL = lower limit; UL = upper limit. Fit uses " +
           (usesQuadrature ? "adaptive Gauss–Hermite maximum likelihood (15 quadrature points)"
                           : "Laplace maximum likelihood") +
           ". Standard errors take the variances of the random effects as known.";
}

/// Of the variances of outer groups, inner groups and cases.
std::string varianceShares(const MultilevelResult& result) {
    double total = 0.0;
    for (const MultilevelVarianceComponent& component : result.varianceComponents) {
        total += component.variance;
    }
    std::vector<std::string> shares;
    for (const MultilevelVarianceComponent& component : result.varianceComponents) {
        shares.push_back(component.name + " " + svFmtBounded(component.variance / total, 2));
    }
    return " Shares of the total variance: " + ResultText::listed(shares) + ".";
}

std::string noICC(const MultilevelRun& run) {
    std::string text;
    if (run.choice.isThreeLevel()) {
        text =
            " Three levels are fitted as crossed random intercepts, the inner groups told apart by "
            "the outer ones.";
    }
    text +=
        " A nested ICC is not defined for crossed random intercepts; interpret the two intercept "
        "variances separately.";
    return run.choice.isThreeLevel() && run.choice.isGaussian() ? text + varianceShares(*run.result)
                                                                : text;
}

std::string slopeNote(const MultilevelRun& run) {
    std::string text = !run.choice.correlated
                           ? " Random intercept and slope are independent (uncorrelated)."
                       : run.result->randomEffectCorrelation
                           ? " Intercept–slope correlation = " +
                                 svFmtBounded(*run.result->randomEffectCorrelation, 2) + "."
                           : " Intercept–slope correlation could not be had.";
    if (run.result->icc) {
        text += " With a random slope the ICC holds where " + run.choice.slope + " is 0.";
    }
    return text;
}

}  // namespace

std::string fixed(const MultilevelRun& run) {
    if (!run.choice.isGaussian()) {
        return ratioNote(run);
    }
    return fitWords(run) +
           ". B = unstandardized coefficient; SE = standard error; CI = confidence interval; LL = "
           "lower limit; UL = upper limit. Estimates use " +
           std::string(displayName(run.result->estimator)) + "; " +
           dfSentence(run.choice.dfMethod) +
           " Coefficients describe association within a clustered design, not causation.";
}

std::string random(const MultilevelRun& run) {
    const MultilevelResult& result = *run.result;
    std::string text = "Variance = random-effect variance; SD = standard deviation. Estimator: " +
                       std::string(displayName(result.estimator)) + ".";
    if (result.icc) {
        text += " ICC = τ₀₀ / (τ₀₀ + σ²).";
    } else if (run.choice.hasTwoFactors()) {
        text += noICC(run);
    }
    if (const std::optional<double> icc = MultilevelReport::latentICC(run)) {
        text +=
            " On the latent scale the ICC, τ₀₀ / (τ₀₀ + π²/3), is " + svFmtBounded(*icc, 2) + ".";
    }
    if (!run.choice.slope.empty()) {
        text += slopeNote(run);
    }
    return text;
}

}  // namespace sorvane::MultilevelNotes
