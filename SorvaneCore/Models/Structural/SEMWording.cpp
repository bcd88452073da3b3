#include "SorvaneCore/Models/Structural/SEMWording.h"

namespace sorvane::SEMWording {

std::string fittedMinimum() {
    return "a converged ML solution on a positive-definite covariance with df >= 0";
}

std::string blockedMinimum() {
    return "a positive-definite sample covariance, df >= 0, and convergence";
}

std::string notPositiveDefinite() {
    return "The sample covariance matrix is not positive definite (perfect collinearity or too few "
           "cases).";
}

std::string notIdentified() {
    return "Model is not identified: free parameters exceed available covariance moments (df < 0).";
}

std::string noImpliedCovariance() {
    return "Model-implied covariance could not be evaluated at the solution.";
}

std::string notConverged() {
    return "The ML estimator did not converge; estimates are not trustworthy.";
}

std::string fewCases() {
    return "Fewer than 100 complete cases; SEM estimates and fit indices are unstable at this "
           "sample size.";
}

std::string fewCasesPerParameter() {
    return "Fewer than five cases per free parameter; the solution may be unstable.";
}

std::string negativeVariances(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) {
        list += list.empty() ? name : ", " + name;
    }
    return "A negative estimated variance (Heywood case) was found for " + list +
           "; inspect the solution.";
}

}  // namespace sorvane::SEMWording
