#include "SorvaneCore/Import/Survey/PackageRoles.h"

#include <algorithm>
#include <array>
#include <boost/describe/enumerators.hpp>
#include <boost/mp11/algorithm.hpp>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane::PackageRoles {

namespace {

struct Word {
    std::string_view role;
    VariableKind kind;
};

/// What survey programs write beside the stored and the shown texts of the roles.
constexpr std::array<Word, 17> words = {{
    {"item", VariableKind::psychometricItem},
    {"likert", VariableKind::psychometricItem},
    {"scale", VariableKind::psychometricItem},
    {"scale_item", VariableKind::psychometricItem},
    {"demographic", VariableKind::demographicBackground},
    {"background", VariableKind::demographicBackground},
    {"group", VariableKind::grouping},
    {"factor", VariableKind::grouping},
    {"dependent", VariableKind::outcome},
    {"score", VariableKind::outcome},
    {"text", VariableKind::textResponse},
    {"open_ended", VariableKind::textResponse},
    {"comment", VariableKind::textResponse},
    {"id", VariableKind::administrative},
    {"identifier", VariableKind::administrative},
    {"metadata", VariableKind::administrative},
    {"ignored", VariableKind::exclude},
}};

}  // namespace

std::optional<VariableKind> kind(std::string_view role) {
    const std::string word = UnicodeText::lowerCased(UnicodeText::trimmed(role));
    std::optional<VariableKind> found;
    boost::mp11::mp_for_each<boost::describe::describe_enumerators<VariableKind>>(
        [&](const auto& enumerator) {
            const VariableKind kind = enumerator.value;
            if (word == rawValue(kind) || word == UnicodeText::lowerCased(displayName(kind))) {
                found = kind;
            }
        });
    const auto* other = std::ranges::find(words, std::string_view(word), &Word::role);
    return found || other == words.end() ? found : std::optional(other->kind);
}

void assign(const std::map<std::string, std::string>& roles, ImportedDataset& dataset) {
    for (DataVariable& variable : dataset.variables) {
        const auto role = roles.find(variable.name);
        const std::optional<VariableKind> assigned =
            role == roles.end() ? std::nullopt : kind(role->second);
        if (assigned) {
            variable.assignedType = *assigned;
            variable.includeInReliability = isReliabilityEligible(*assigned);
            variable.includeInDescriptives = includedInDescriptivesByDefault(*assigned);
        }
    }
}

}  // namespace sorvane::PackageRoles
