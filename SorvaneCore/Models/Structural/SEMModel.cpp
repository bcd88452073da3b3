#include "SorvaneCore/Models/Structural/SEMModel.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace sorvane {

namespace {

using NameSet = std::set<std::string, std::less<>>;
using Pair = std::pair<std::string, std::string>;

SEMSyntaxError notInDataset(const std::string& name) {
    return SEMSyntaxError("Variable \"" + name +
                          "\" is referenced in the model but is not in the dataset.");
}

SEMSyntaxError twoValues(const SEMSyntaxTerm& term) {
    return SEMSyntaxError("The model has the path \"" + term.lhs + " " +
                          std::string(rawValue(term.op)) + " " + term.rhs +
                          "\" twice, with different values.");
}

/// What acts on what in a model.
struct Roles {
    explicit Roles(const SEMParsedSpec& parsed);

    /// Whether an arrow of the model ends there.
    bool isActedOn(const std::string& name) const {
        return outcomes.contains(name) || indicators.contains(name);
    }
    /// An outcome that neither predicts nor indicates anything.
    bool isPureOutcome(const std::string& name) const {
        return outcomes.contains(name) && !predictors.contains(name) && !indicators.contains(name);
    }

    NameSet latent{};
    NameSet indicators{};
    NameSet outcomes{};
    NameSet predictors{};
};

Roles::Roles(const SEMParsedSpec& parsed)
    : latent(parsed.latentVariables.begin(), parsed.latentVariables.end()) {
    for (const SEMSyntaxTerm& term : parsed.terms) {
        if (term.op == SEMSyntaxOperator::measurement) {
            indicators.insert(term.rhs);
        } else if (term.op == SEMSyntaxOperator::regression) {
            outcomes.insert(term.lhs);
            predictors.insert(term.rhs);
        }
    }
}

/// Puts together the slots of a model in their order.
class SlotList {
public:
    SlotList(SEMModel& model, const Roles& roles) : model_(model), roles_(roles) {}

    void addWritten(SEMSyntaxOperator op);
    void addVariances();
    void addCovariances();

private:
    void addLoading(const SEMSyntaxTerm& term);
    void addPath(SEMParameterKind kind, const SEMSyntaxTerm& term, std::optional<double> fixed);
    void addSpread(const std::string& lhs, const std::string& rhs, std::optional<double> fixed);
    void addFreeVariance(const std::string& name) { addSpread(name, name, std::nullopt); }
    void addFreePairs(const std::vector<std::string>& names);
    void add(SEMParameterSlot slot, std::optional<double> fixed);
    SEMParameterKind varianceKind(const std::string& name) const;
    SEMParameterKind covarianceKind(const std::string& lhs, const std::string& rhs) const;
    template <typename Wanted>
    static std::vector<std::string> chosen(const std::vector<std::string>& names, Wanted wanted);

    SEMModel& model_;
    const Roles& roles_;
    /// Latent variables that have their first indicator.
    NameSet marked_{};
    /// A value as it was written and as it stands, which differ where a marker goes without saying.
    struct PathValue {
        std::optional<double> written{};
        std::optional<double> standing{};
    };

    /// From one variable to another, with the value of the first writing.
    std::map<Pair, PathValue> paths_{};
    /// Variances and covariances, the lesser name first.
    std::set<Pair> spreads_{};
};

void SlotList::add(SEMParameterSlot slot, std::optional<double> fixed) {
    slot.isFree = !fixed;
    slot.fixedValue = fixed.value_or(0.0);
    slot.freeIndex = fixed ? -1 : model_.freeCount++;
    model_.parameters.push_back(std::move(slot));
}

void SlotList::addPath(SEMParameterKind kind,
                       const SEMSyntaxTerm& term,
                       std::optional<double> fixed) {
    const bool isMeasurement = kind == SEMParameterKind::loading;
    const Pair path = isMeasurement ? Pair{term.lhs, term.rhs} : Pair{term.rhs, term.lhs};
    const auto [first, isNew] = paths_.emplace(path, PathValue{term.fixedValue, fixed});
    if (!isNew && first->second.written != term.fixedValue && first->second.standing != fixed) {
        throw twoValues(term);
    }
    if (isNew) {
        add({.kind = kind, .lhs = term.lhs, .op = std::string(rawValue(term.op)), .rhs = term.rhs},
            fixed);
    }
}

/// The first indicator gives a latent variable its unit.
void SlotList::addLoading(const SEMSyntaxTerm& term) {
    const bool isFirst = marked_.insert(term.lhs).second;
    const bool isMarker = isFirst && !term.fixedValue;
    addPath(SEMParameterKind::loading, term, isMarker ? 1.0 : term.fixedValue);
}

SEMParameterKind SlotList::varianceKind(const std::string& name) const {
    if (!roles_.latent.contains(name)) {
        return SEMParameterKind::residualVariance;
    }
    return roles_.outcomes.contains(name) ? SEMParameterKind::structuralResidualVariance
                                          : SEMParameterKind::latentVariance;
}

SEMParameterKind SlotList::covarianceKind(const std::string& lhs, const std::string& rhs) const {
    return roles_.latent.contains(lhs) && roles_.latent.contains(rhs)
               ? SEMParameterKind::latentCovariance
               : SEMParameterKind::residualCovariance;
}

void SlotList::addSpread(const std::string& lhs,
                         const std::string& rhs,
                         std::optional<double> fixed) {
    if (spreads_.insert(std::minmax(lhs, rhs)).second) {
        const SEMParameterKind kind = lhs == rhs ? varianceKind(lhs) : covarianceKind(lhs, rhs);
        add({.kind = kind, .lhs = lhs, .op = "~~", .rhs = rhs}, fixed);
    }
}

void SlotList::addWritten(SEMSyntaxOperator op) {
    for (const SEMSyntaxTerm& term : model_.parsed.terms) {
        if (term.op != op) {
            continue;
        }
        switch (op) {
            case SEMSyntaxOperator::measurement:
                addLoading(term);
                break;
            case SEMSyntaxOperator::regression:
                addPath(SEMParameterKind::regression, term, term.fixedValue);
                break;
            case SEMSyntaxOperator::covariance:
                addSpread(term.lhs, term.rhs, term.fixedValue);
                break;
        }
    }
}

void SlotList::addVariances() {
    const auto isActedOn = [this](const std::string& name) {
        return roles_.isActedOn(name);
    };
    for (const std::string& name : chosen(model_.observed, isActedOn)) {
        addFreeVariance(name);
    }
    for (const std::string& name : model_.latent) {
        addFreeVariance(name);
    }
    for (const std::string& name : model_.observed) {
        addFreeVariance(name);
    }
}

void SlotList::addFreePairs(const std::vector<std::string>& names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        for (std::size_t j = i + 1; j < names.size(); ++j) {
            addSpread(names[i], names[j], std::nullopt);
        }
    }
}

void SlotList::addCovariances() {
    addFreePairs(
        chosen(model_.latent, [this](const std::string& name) { return !roles_.isActedOn(name); }));
    addFreePairs(chosen(model_.observed, [this](const std::string& name) {
        return roles_.predictors.contains(name) && !roles_.isActedOn(name);
    }));
    std::vector<std::string> all = model_.latent;
    all.insert(all.end(), model_.observed.begin(), model_.observed.end());
    addFreePairs(
        chosen(all, [this](const std::string& name) { return roles_.isPureOutcome(name); }));
}

template <typename Wanted>
std::vector<std::string> SlotList::chosen(const std::vector<std::string>& names, Wanted wanted) {
    std::vector<std::string> result;
    std::ranges::copy_if(names, std::back_inserter(result), wanted);
    return result;
}

}  // namespace

std::vector<std::string> SEMModel::unknownNames(const SEMParsedSpec& parsed,
                                                std::span<const std::string> datasetVariables) {
    const NameSet latent(parsed.latentVariables.begin(), parsed.latentVariables.end());
    const NameSet columns(datasetVariables.begin(), datasetVariables.end());
    std::vector<std::string> unknown;
    std::ranges::copy_if(
        parsed.allVariables, std::back_inserter(unknown),
        [&](const std::string& name) { return !latent.contains(name) && !columns.contains(name); });
    return unknown;
}

SEMModel SEMModel::build(SEMParsedSpec parsed, std::span<const std::string> datasetVariables) {
    const std::vector<std::string> unknown = unknownNames(parsed, datasetVariables);
    if (!unknown.empty()) {
        throw notInDataset(unknown.front());
    }
    const Roles roles(parsed);
    SEMModel model{.latent = parsed.latentVariables, .parsed = std::move(parsed)};
    std::ranges::copy_if(model.parsed.allVariables, std::back_inserter(model.observed),
                         [&](const std::string& name) { return !roles.latent.contains(name); });
    SlotList slots(model, roles);
    slots.addWritten(SEMSyntaxOperator::measurement);
    slots.addWritten(SEMSyntaxOperator::regression);
    slots.addWritten(SEMSyntaxOperator::covariance);
    slots.addVariances();
    slots.addCovariances();
    return model;
}

}  // namespace sorvane
