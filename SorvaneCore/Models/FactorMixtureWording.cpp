#include "SorvaneCore/Models/FactorMixtureWording.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::FactorMixtureWording {

using NumberText::integer;

std::string tooFewIndicators() {
    return "A common factor needs at least three indicators; with fewer its loadings are not "
           "settled by the data. Add indicators, or use latent profiles.";
}

std::string tooFewCases(std::int64_t needed, std::int64_t classes) {
    return "Need at least " + integer(needed) + " complete cases for a " + integer(classes) +
           "-class factor mixture.";
}

std::string constantIndicator(const std::string& name) {
    return "The indicator \"" + name + "\" does not vary. Drop it.";
}

std::string unusable() {
    return "The factor mixture model did not converge to a usable solution.";
}

std::string noConvergenceSignal() {
    return "EM stopped without a clean convergence signal.";
}

std::string smallClass() {
    return "At least one class has a small mixing proportion (<5%).";
}

std::string residualAtBound(const std::string& name) {
    return "The residual variance of \"" + name +
           "\" is at its lower bound (a Heywood case); the factor stands for that one indicator. "
           "Treat the loadings as unstable.";
}

std::string poorlySeparated(double entropy) {
    return "The classes overlap (relative entropy " + NumberText::fixed(entropy, 2) +
           "); do not treat the assignment of single cases as known.";
}

std::string oneClassServesBetter() {
    return "By BIC a single class with the same factor fits better; the data do not call for "
           "classes.";
}

std::string summary(const FactorMixtureResult& result) {
    if (result.classes.empty()) {
        return "";
    }
    return "A factor mixture model with " + integer(result.classCount) +
           (result.classCount == 1 ? " class" : " classes") +
           " and one common factor was fitted to " +
           integer(static_cast<std::int64_t>(result.variableNames.size())) +
           " indicators (n = " + integer(result.n) +
           "), log-likelihood = " + NumberText::fixed(result.logLikelihood, 2) +
           ", BIC = " + NumberText::fixed(result.bic, 2) +
           (result.classCount == 1
                ? "."
                : ", relative entropy = " + NumberText::fixed(result.entropy, 2) + ".");
}

std::vector<std::string> cautions() {
    return {
        "Classes are a summary of how answers are distributed; they are not shown to be real "
        "groups. Skewed answers alone can call for classes.",
        "The loadings and residual variances are held equal in all classes; that is assumed, "
        "not tested.",
        "Because intercepts differ freely between classes, factor scores say how a case stands "
        "within its class and must not be compared across classes.",
        "The best of several starts is reported; a better solution may have been missed."};
}

}  // namespace sorvane::FactorMixtureWording
