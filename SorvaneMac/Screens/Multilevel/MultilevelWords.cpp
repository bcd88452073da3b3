#include "SorvaneMac/Screens/Multilevel/MultilevelWords.h"

#include <algorithm>
#include <cmath>
#include <variant>

#include "SorvaneCore/Models/Multilevel/MultilevelWording.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelFields.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelReport.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::MultilevelWords {

namespace {

using enum MultilevelStructureKind;

/// "two-level model of score"
std::string modelPhrase(const MultilevelChoice& choice) {
    switch (choice.structure) {
        case nested:
            return "two-level model of " + choice.outcome;
        case crossed:
            return "cross-classified model of " + choice.outcome;
        case threeLevel:
            return "three-level nested model of " + choice.outcome;
        case growth:
            return "growth model of " + choice.outcome;
        case autoregressive:
            return "within-cluster autoregressive model of " + choice.outcome;
    }
    return "";
}

std::string structureText(const MultilevelChoice& choice) {
    const std::string start =
        choice.structure == growth ? "Growth convenience: " : "Random structure: ";
    if (choice.hasTwoFactors()) {
        return start + "(1 | " + choice.cluster + ") + (1 | " + choice.secondLabel() + ").";
    }
    if (choice.structure == autoregressive) {
        return start + "(1 | cluster). The predictor " + choice.predictors.back() +
               " is the outcome of the row before within cluster, ordered by time; random "
               "intercept only.";
    }
    if (choice.slope.empty()) {
        return start + "(1 | cluster).";
    }
    if (choice.structure == growth) {
        return start + "(1 | cluster) + (0 + " + choice.slope + " | cluster)" +
               (choice.correlated ? ", which may correlate." : ".");
    }
    return choice.correlated ? start + "(1 | cluster) with a correlated slope, (1 + " +
                                   choice.slope + " | cluster)."
                             : start + "(1 | cluster) + (0 + " + choice.slope + " | cluster).";
}

std::string opening(const MultilevelRun& run) {
    const std::string phrase = modelPhrase(run.choice);
    if (run.choice.isGaussian()) {
        return std::string(displayName(run.result->estimator)) + " estimates from a " + phrase;
    }
    return (run.choice.isLogistic() ? "Logistic multilevel " : "Poisson multilevel ") + phrase;
}

/// "t(18.16) = 6.71" or "z = 6.77"
std::string testWords(const MultilevelFixedEffect& effect) {
    constexpr double hundredth = 0.01;
    if (!effect.df) {
        return "z = " + svFmt(effect.z, 2);
    }
    const double df = std::round(*effect.df / hundredth) * hundredth;
    const double whole = std::round(df);
    return "t(" + ResultText::degreesOfFreedom(std::abs(df - whole) < hundredth / 2 ? whole : df) +
           ") = " + svFmt(effect.z, 2);
}

std::string effectWords(const MultilevelRun& run, const MultilevelFixedEffect& effect) {
    std::string text = " The effect of " + effect.name + " was " +
                       std::string(ResultText::significanceWords(effect.pValue)) + ", ";
    const int decimals = ReportDecimals::inSentence(effect.standardError);
    if (run.choice.isGaussian()) {
        text += "B = " + svFigure(effect.estimate, decimals) +
                ", SE = " + svFigure(effect.standardError, decimals) + ", 95% CI [" +
                svFigure(effect.lowerBound, decimals) + ", " +
                svFigure(effect.upperBound, decimals) + "]";
    } else {
        text += ResultText::ratioSentence(run.choice.isLogistic() ? "OR" : "RR",
                                          std::exp(effect.estimate), decimals) +
                ", 95% CI [" + ResultText::ratio(std::exp(effect.lowerBound), decimals) + ", " +
                ResultText::ratio(std::exp(effect.upperBound), decimals) + "]";
    }
    return text + ", " + testWords(effect) + ", " + ResultText::pSentence(effect.pValue) + ".";
}

void addBoundaries(std::vector<std::string>& warnings, const MultilevelRun& run) {
    const std::vector<MultilevelVarianceComponent>& components = run.result->varianceComponents;
    for (std::size_t at = 0; at < components.size(); ++at) {
        if (MultilevelReport::isNearZero(run, at)) {
            warnings.push_back("The variance of " + components[at].name +
                               " is near zero (boundary).");
        }
    }
}

/// Of factors with a level for every case.
void addUntoldVariances(std::vector<std::string>& warnings, const MultilevelRun& run) {
    const MultilevelResult& result = *run.result;
    const auto addIf = [&](bool isUntold, const std::string& factor) {
        if (isUntold) {
            warnings.push_back("Every level of " + factor +
                               " has a single case, so its variance cannot be told from the "
                               "residual; only their sum can.");
        }
    };
    addIf(result.nClusters == result.n, run.choice.cluster);
    addIf(result.nClustersSecondary == result.n, run.choice.secondLabel());
}

/// By the errors for a step of one standard deviation, on the log scale of the counts.
void addEndlessCounts(std::vector<std::string>& warnings, const MultilevelRun& run) {
    constexpr double extremeError = 20.0;
    std::vector<std::string> names;
    for (std::size_t j = 0; j < run.predictorDeviations.size(); ++j) {
        const MultilevelFixedEffect& effect = run.result->fixedEffects[j + 1];
        if (!(effect.standardError * run.predictorDeviations[j] <= extremeError)) {
            names.push_back(effect.name);
        }
    }
    if (!names.empty()) {
        warnings.push_back(
            "Standard errors beyond 20 for one standard deviation, of " +
            ResultText::listed(names) +
            ", usually mean that cases of some kind have counts of zero alone, so that a "
            "coefficient grows without end. Treat these estimates as unstable; consider "
            "collapsing sparse categories or removing the offending predictor.");
    }
}

/// Of a correlation at its bound, and of what holds at a zero far from all values, as of years, which
/// is one of the slope's predictor alone.
void addSlopeCautions(std::vector<std::string>& warnings, const MultilevelRun& run) {
    const std::string& slope = run.choice.slope;
    if (slope.empty()) {
        return;
    }
    constexpr std::size_t slopeAt = 1;
    const bool hasSlopeVariance = !MultilevelReport::vanishes(run, slopeAt);
    const std::string farZero = slope + " is 0, which lies far outside its values";
    const std::string center = "Center " + slope + " first (subtract its mean)";
    const std::size_t before = warnings.size();
    if (run.result->isSingular && run.result->randomEffectCorrelation && hasSlopeVariance) {
        warnings.push_back(
            "The intercept–slope correlation is at its bound (singular fit); the data do not tell "
            "the random effects apart. " +
            (run.isZeroFar ? center + ", as its zero lies far outside its values; then fit them "
                                      "as independent, or leave the slope fixed."
                           : "Fit them as independent, or leave the slope fixed."));
    }
    if (run.isZeroFar && !run.choice.correlated) {
        warnings.push_back("Intercept and slope are taken as independent where " + farZero +
                           "; the standard error and df of " + slope +
                           " may be far too small or too large. " + center +
                           ", or let intercept and slope correlate.");
    }
    if (run.isZeroFar && hasSlopeVariance && run.result->icc) {
        const bool isAdvised = warnings.size() > before;
        warnings.push_back("The intraclass correlation holds where " + farZero +
                           ", and says nothing of these." + (isAdvised ? "" : " " + center + "."));
    }
}

std::string whatToConfirm(MultilevelFamily family) {
    std::string text =
        "Confirm a numeric outcome, grouping factor(s) with enough levels, and complete cases.";
    if (family == MultilevelFamily::binomial) {
        text += " A logistic model needs an outcome coded 0 and 1.";
    } else if (family == MultilevelFamily::poisson) {
        text += " A Poisson model needs whole counts from 0.";
    }
    return text;
}

/// What blocks the model, and what to look for where the message alone does not tell.
std::string obstacle(const MultilevelResult& result) {
    const std::string text = ResultText::obstacle(result.readiness);
    const bool isUnusable = text == MultilevelWording::notConverged() ||
                            text == MultilevelWording::crossedNotConverged();
    return isUnusable ? text +
                            " Look for a predictor that does not vary or that repeats another, "
                            "and for an outcome that the predictors tell exactly."
                      : text;
}

/// Whether p-values from the normal distribution are too small for want of clusters.
bool isShortOfClusters(const MultilevelRun& run) {
    constexpr std::int64_t manyClusters = 30;
    const std::int64_t fewest = std::min(
        run.result->nClusters, run.result->nClustersSecondary.value_or(run.result->nClusters));
    return run.choice.isGaussian() && run.choice.dfMethod == MultilevelDFMethod::wald &&
           fewest < manyClusters;
}

}  // namespace

std::string title(const MultilevelChoice& choice) {
    const std::string family = choice.family == MultilevelFamily::binomial  ? "Logistic "
                               : choice.family == MultilevelFamily::poisson ? "Poisson "
                                                                            : "";
    return "Estimates From a Multilevel " + family + "Model of " + choice.outcome;
}

std::string clusters(const MultilevelRun& run) {
    const MultilevelResult& result = *run.result;
    if (result.nClustersSecondary) {
        return DatasetText::counted(result.nClusters, "level") + " of " + run.choice.cluster +
               " and " + DatasetText::counted(*result.nClustersSecondary, "level") + " of " +
               run.choice.secondLabel();
    }
    return DatasetText::counted(result.nClusters, "cluster") + " of " + run.choice.cluster;
}

std::string sentence(const MultilevelRun& run) {
    const MultilevelResult& result = *run.result;
    std::string text = opening(run) + ". " + structureText(run.choice) + " The model rests on " +
                       DatasetText::counted(result.n, "case") + " in " + clusters(run) + ".";
    for (std::size_t at = 1; at < result.fixedEffects.size(); ++at) {
        text += effectWords(run, result.fixedEffects[at]);
    }
    if (result.icc) {
        text += " The intraclass correlation was " + svFmtBounded(*result.icc, 2) +
                (run.choice.slope.empty() ? "." : " where " + run.choice.slope + " is 0.");
    }
    if (run.choice.isLogistic()) {
        text +=
            " B is on the logit scale; OR = exp(B). p values use a normal (Wald) approximation.";
    } else if (!run.choice.isGaussian()) {
        text += " B is on the log scale; RR = exp(B). p values use a normal (Wald) approximation.";
    }
    return text;
}

std::string caution(const MultilevelRun& run) {
    std::string text;
    if (run.choice.isGaussian()) {
        text =
            "A coefficient joins what a predictor does within clusters and between them unless "
            "it was centered; neither is causation.";
    } else if (run.choice.isLogistic()) {
        text =
            "Odds ratios hold within a cluster and are further from 1 than those of the whole "
            "population. This is association, not causation.";
    } else {
        text =
            "Rate ratios above 1 mean a higher expected count, below 1 mean a lower count. This "
            "is association, not causation. Whether counts vary more than Poisson within "
            "clusters is not checked; if they do, the standard errors are too small.";
    }
    if (run.choice.structure == autoregressive) {
        text +=
            " The lag shares the cluster's intercept, so its coefficient is biased, most of "
            "all with few rows per cluster; it is the row before, whatever the gap in time.";
    }
    return text;
}

std::vector<std::string> warnings(const MultilevelRun& run) {
    std::vector<std::string> warnings = ResultText::messages(run.result->readiness);
    if (run.choice.isGaussian()) {
        addUntoldVariances(warnings, run);
    } else {
        addBoundaries(warnings, run);
    }
    if (run.choice.family == MultilevelFamily::poisson) {
        addEndlessCounts(warnings, run);
    }
    addSlopeCautions(warnings, run);
    return warnings;
}

std::optional<std::string> onPValues(const MultilevelRun& run) {
    if (isShortOfClusters(run)) {
        return "The normal reference takes the variances as known and gives p values that are too "
               "small with few clusters. Satterthwaite or Kenward–Roger t allows for that.";
    }
    // Two factors are not adjusted.
    if (run.choice.isGaussian() && !run.choice.hasTwoFactors() &&
        run.choice.dfMethod == MultilevelDFMethod::kenwardRoger &&
        run.choice.estimator == MultilevelEstimator::ml) {
        return "The Kenward–Roger adjustment is made for REML; on ML estimates, which are too "
               "small in the variances, it corrects less than it should.";
    }
    return std::nullopt;
}

std::string figureCaption(const MultilevelRun& run) {
    if (run.charts.empty()) {
        return "";
    }
    const Chart& chart = run.charts.front();
    if (std::holds_alternative<LinePlot>(chart.plot)) {
        return chart.title + " (" + run.choice.cluster + "): " + run.choice.outcome + " over " +
               run.choice.slope + ", with the line of the fixed effects alone.";
    }
    return chart.title + ". Departures of the intercept of " + run.choice.outcome +
           " with 95% intervals.";
}

Gate couldNotFit(const MultilevelRun& run) {
    const std::string lead = run.choice.outcome + " in " + run.choice.cluster;
    if (!run.result) {
        return {.title = "The model did not return a result",
                .lead = lead,
                .text = whatToConfirm(run.choice.family)};
    }
    return {.title = "The multilevel model could not be fitted",
            .lead = lead,
            .text = obstacle(*run.result)};
}

}  // namespace sorvane::MultilevelWords
