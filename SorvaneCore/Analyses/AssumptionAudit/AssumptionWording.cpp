#include "SorvaneCore/Analyses/AssumptionAudit/AssumptionWording.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::AssumptionWording {

namespace {

constexpr std::int64_t manyValues = 50;

std::string departure(NormalityContext context) {
    switch (context) {
        case NormalityContext::residuals:
            return "the residuals depart from normality";
        case NormalityContext::differences:
            return "the paired differences depart from normality";
        case NormalityContext::group:
        case NormalityContext::variable:
            break;
    }
    return "the values depart from normality";
}

AssumptionRemedy bootstrap(std::string detail) {
    return {.title = "Bootstrap the confidence intervals", .detail = std::move(detail)};
}

std::string wholeNumber(double value) {
    return NumberText::fixed(value, 0);
}

}  // namespace

std::string normality(const AssumptionFinding& finding, std::int64_t n, NormalityContext context) {
    std::string text = "Shapiro-Wilk W = " + NumberText::fixed(finding.statistic, 3) +
                       ", p = " + NumberText::pValue(*finding.pValue) + "; ";
    if (finding.severity == AssumptionSeverity::pass) {
        return text + "no evidence of non-normality.";
    }
    text += departure(context) + ".";
    if (n >= manyValues) {
        text += " With n = " + NumberText::integer(n) +
                ", the test is sensitive to small departures and the analysis is fairly robust to "
                "them; weigh this alongside the size of the departure.";
    }
    return text;
}

std::vector<AssumptionRemedy> normalityRemedies(NormalityContext context) {
    switch (context) {
        case NormalityContext::residuals:
            return {bootstrap("Bootstrapped intervals do not rely on normally distributed errors."),
                    {.title = "Consider a transformation",
                     .detail = "A log or square-root transformation of the outcome can restore "
                               "approximate normality when the skew is one-sided."}};
        case NormalityContext::differences:
            return {{.title = "Use the Wilcoxon signed-rank test",
                     .detail = "The rank-based paired test does not assume normally distributed "
                               "differences.",
                     .procedureHint = "wilcoxonSignedRank"}};
        case NormalityContext::group:
        case NormalityContext::variable:
            break;
    }
    return {{.title = "Use a rank-based alternative",
             .detail = "Mann-Whitney, Kruskal-Wallis, or Spearman correlation do not assume "
                       "normality.",
             .procedureHint = "nonparametric"},
            bootstrap("Bootstrapped intervals do not rely on the normality assumption.")};
}

std::string leveneLabel(double df1, double df2) {
    return "Levene F(" + wholeNumber(df1) + ", " + wholeNumber(df2) + ")";
}

std::string equalVariances(double pValue, bool isViolated) {
    return "Levene's test (median centered) p = " + NumberText::pValue(pValue) +
           (isViolated ? "; group variances differ. Pooled-variance results can misstate standard "
                         "errors and p values, especially with unequal group sizes."
                       : "; no evidence that group variances differ.");
}

std::vector<AssumptionRemedy> equalVariancesRemedies() {
    return {{.title = "Use the Welch correction",
             .detail = "Welch's t-test and Welch's ANOVA do not assume equal variances and are "
                       "already available in Brisel.",
             .procedureHint = "welch"},
            bootstrap("Bootstrapped intervals do not rely on the equal-variance assumption.")};
}

std::string breuschPaganLabel(std::int64_t df) {
    return "Breusch-Pagan (Koenker) LM(" + NumberText::integer(df) + ")";
}

std::string constantErrorVariance(double pValue, bool isViolated) {
    return "The Breusch-Pagan test (Koenker studentized) p = " + NumberText::pValue(pValue) +
           (isViolated ? "; the error variance changes across the fitted values. Ordinary standard "
                         "errors can be too small or too large, which distorts the coefficient p "
                         "values."
                       : "; no evidence of changing error variance.");
}

std::vector<AssumptionRemedy> constantErrorVarianceRemedies() {
    return {{.title = "Use HC3 robust standard errors",
             .detail = "Heteroscedasticity-consistent standard errors keep the coefficients and "
                       "correct the inference."},
            bootstrap("Bootstrapped intervals do not rely on the constant-variance assumption.")};
}

std::string multicollinearity(double vif, std::string_view name, AssumptionSeverity severity) {
    std::string text = "VIF = " + NumberText::fixed(vif, 2) + "; " + std::string(name);
    switch (severity) {
        case AssumptionSeverity::violation:
            return text +
                   " is nearly redundant with the other predictors. Its individual coefficient is "
                   "unreliable even when the overall model predicts well.";
        case AssumptionSeverity::caution:
            return text +
                   " shares substantial variance with the other predictors. Its coefficient and "
                   "standard error are less stable than the overall model fit suggests.";
        case AssumptionSeverity::pass:
            break;
    }
    return text + " is not strongly predicted by the other predictors.";
}

std::vector<AssumptionRemedy> multicollinearityRemedies() {
    return {{.title = "Interpret with caution",
             .detail = "Report the collinearity and read the individual coefficients as "
                       "conditional on the other predictors."},
            {.title = "Drop or combine predictors",
             .detail = "Remove one of the overlapping predictors, or combine them into a single "
                       "scale or composite."},
            {.title = "Center the predictors",
             .detail = "Mean-centering helps when the collinearity comes from interaction or "
                       "polynomial terms."}};
}

}  // namespace sorvane::AssumptionWording
