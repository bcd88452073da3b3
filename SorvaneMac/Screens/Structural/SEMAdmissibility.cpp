#include "SorvaneMac/Screens/Structural/SEMAdmissibility.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Models/Structural/SEMModelSpecParser.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Structural/StructuralReport.h"

namespace sorvane::SEMAdmissibility {

namespace {

/// Of a variable, or of its residual where something acts on it.
double varianceOf(const SEMResult& result, const std::string& name) {
    const auto own = std::ranges::find_if(result.parameters, [&name](const SEMParameter& each) {
        return each.op == rawValue(SEMSyntaxOperator::covariance) && each.lhs == name &&
               each.rhs == name;
    });
    return own == result.parameters.end() ? 0.0 : own->estimate;
}

/// Whether a covariance is more than its variances allow; of negative ones the engine tells.
bool isBeyondOne(const SEMResult& result, const SEMParameter& each) {
    if (each.op != rawValue(SEMSyntaxOperator::covariance) || each.lhs == each.rhs) {
        return false;
    }
    const double first = varianceOf(result, each.lhs);
    const double second = varianceOf(result, each.rhs);
    return first > 0.0 && second > 0.0 && std::abs(each.estimate) > std::sqrt(first * second);
}

std::string beyondOne(const SEMResult& result, const SEMParameter& covariance) {
    const bool isOfResiduals = StructuralReport::isActedOn(result, covariance.lhs) ||
                               StructuralReport::isActedOn(result, covariance.rhs);
    return std::string("The estimated ") + (isOfResiduals ? "residual " : "") + "correlation of " +
           covariance.lhs + " and " + covariance.rhs +
           " is beyond ±1; the solution is not admissible.";
}

/// Variables that covary, whose correlations cannot occur together though none is beyond 1 by
/// itself; none where a variance is not above 0, of which the engine tells.
std::vector<std::string> impossibleTogether(const SEMResult& result) {
    constexpr double rounding = -1e-8;
    std::vector<std::string> names;
    for (const SEMParameter& each : result.parameters) {
        if (each.op == rawValue(SEMSyntaxOperator::covariance) && each.lhs != each.rhs) {
            names.insert(names.end(), {each.lhs, each.rhs});
        }
    }
    std::ranges::sort(names);
    names.erase(std::unique(names.begin(), names.end()), names.end());
    std::vector<double> correlations(names.size() * names.size(), 0.0);
    const auto at = [&](const std::string& row, const std::string& column) -> double& {
        const auto place = [&names](const std::string& name) {
            return static_cast<std::size_t>(std::ranges::lower_bound(names, name) - names.begin());
        };
        return correlations[place(row) * names.size() + place(column)];
    };
    for (const std::string& name : names) {
        at(name, name) = 1.0;
    }
    for (const SEMParameter& each : result.parameters) {
        if (each.op == rawValue(SEMSyntaxOperator::covariance) && each.lhs != each.rhs) {
            const double scale = varianceOf(result, each.lhs) * varianceOf(result, each.rhs);
            if (!(scale > 0.0)) {
                return {};
            }
            at(each.lhs, each.rhs) = at(each.rhs, each.lhs) = each.estimate / std::sqrt(scale);
        }
    }
    const auto eigen = LinearAlgebra::symmetricEigen(correlations, names.size());
    const bool isImpossible =
        eigen && !eigen->values.empty() && std::ranges::min(eigen->values) < rounding;
    return isImpossible ? names : std::vector<std::string>();
}

}  // namespace

std::vector<std::string> cautions(const SEMResult& result) {
    std::vector<std::string> messages;
    for (const SEMParameter& each : result.parameters) {
        if (isBeyondOne(result, each)) {
            messages.push_back(beyondOne(result, each));
        }
    }
    if (const auto names = impossibleTogether(result); messages.empty() && !names.empty()) {
        messages.push_back("The estimated covariances of " + ResultText::listed(names) +
                           " cannot occur together (their matrix is not positive definite); the "
                           "solution is not admissible.");
    }
    return messages;
}

}  // namespace sorvane::SEMAdmissibility
