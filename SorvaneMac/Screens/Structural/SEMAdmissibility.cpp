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

bool isCovariance(const SEMParameter& each) {
    return each.op == rawValue(SEMSyntaxOperator::covariance) && each.lhs != each.rhs;
}

/// Whether a covariance is more than its variances allow; of negative ones the engine tells.
bool isBeyondOne(const SEMResult& result, const SEMParameter& each) {
    const double first = varianceOf(result, each.lhs);
    const double second = varianceOf(result, each.rhs);
    return first > 0.0 && second > 0.0 && std::abs(each.estimate) > std::sqrt(first * second);
}

/// "residual " where a variance among these is one of a residual.
std::string kind(const SEMResult& result, const std::vector<std::string>& names) {
    const bool isOfResiduals = std::ranges::any_of(names, [&result](const std::string& name) {
        return StructuralReport::isActedOn(result, name);
    });
    return isOfResiduals ? "residual " : "";
}

std::string beyondOne(const SEMResult& result, const SEMParameter& covariance) {
    return "The estimated " + kind(result, {covariance.lhs, covariance.rhs}) + "correlation of " +
           covariance.lhs + " and " + covariance.rhs +
           " is beyond ±1; the solution is not admissible.";
}

/// Variables that covary, with the estimates that join them.
struct Group {
    std::vector<std::string> names{};
    std::vector<const SEMParameter*> covariances{};

    bool holds(const std::string& name) const {
        return std::ranges::find(names, name) != names.end();
    }
};

/// What does not covary, not by others either, stands in different groups.
std::vector<Group> groupsOf(const SEMResult& result) {
    std::vector<Group> groups;
    for (const SEMParameter& each : result.parameters) {
        if (!isCovariance(each) || each.estimate == 0.0) {
            continue;
        }
        Group joined{.names = {each.lhs, each.rhs}, .covariances = {&each}};
        std::erase_if(groups, [&](const Group& group) {
            if (!group.holds(each.lhs) && !group.holds(each.rhs)) {
                return false;
            }
            joined.names.insert(joined.names.end(), group.names.begin(), group.names.end());
            joined.covariances.insert(joined.covariances.end(), group.covariances.begin(),
                                      group.covariances.end());
            return true;
        });
        std::ranges::sort(joined.names);
        joined.names.erase(std::unique(joined.names.begin(), joined.names.end()),
                           joined.names.end());
        groups.push_back(std::move(joined));
    }
    return groups;
}

/// Whether the correlations of a group cannot occur together though none is beyond 1 by itself, and
/// all its variances are above 0: of negative ones the engine tells.
bool isImpossible(const SEMResult& result, const Group& group) {
    constexpr double rounding = -1e-8;
    const std::size_t size = group.names.size();
    std::vector<double> deviations;
    for (const std::string& name : group.names) {
        const double variance = varianceOf(result, name);
        if (!(variance > 0.0)) {
            return false;
        }
        deviations.push_back(std::sqrt(variance));
    }
    std::vector<double> correlations(size * size, 0.0);
    for (std::size_t i = 0; i < size; ++i) {
        correlations[i * size + i] = 1.0;
    }
    const auto place = [&group](const std::string& name) {
        return static_cast<std::size_t>(std::ranges::lower_bound(group.names, name) -
                                        group.names.begin());
    };
    for (const SEMParameter* each : group.covariances) {
        if (isBeyondOne(result, *each)) {
            return false;
        }
        const std::size_t i = place(each->lhs);
        const std::size_t j = place(each->rhs);
        const double correlation = each->estimate / (deviations[i] * deviations[j]);
        correlations[i * size + j] = correlations[j * size + i] = correlation;
    }
    const auto eigen = LinearAlgebra::symmetricEigen(correlations, size);
    return eigen && std::ranges::min(eigen->values) < rounding;
}

}  // namespace

std::vector<std::string> cautions(const SEMResult& result) {
    std::vector<std::string> messages;
    for (const SEMParameter& each : result.parameters) {
        if (isCovariance(each) && isBeyondOne(result, each)) {
            messages.push_back(beyondOne(result, each));
        }
    }
    for (const Group& group : groupsOf(result)) {
        if (isImpossible(result, group)) {
            messages.push_back("The estimated " + kind(result, group.names) + "covariances of " +
                               ResultText::listed(group.names) +
                               " cannot occur together (their matrix is not positive definite); "
                               "the solution is not admissible.");
        }
    }
    return messages;
}

}  // namespace sorvane::SEMAdmissibility
