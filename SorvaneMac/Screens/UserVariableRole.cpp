#include "SorvaneMac/Screens/UserVariableRole.h"

#include <array>
#include <cstddef>

namespace sorvane {

namespace {

struct Meaning {
    std::string_view name;
    VariableKind kind;
};

constexpr std::array<Meaning, 5> meanings = {{{"Outcome", VariableKind::outcome},
                                              {"Independent / group", VariableKind::grouping},
                                              {"Scale item", VariableKind::psychometricItem},
                                              {"Open-ended text", VariableKind::textResponse},
                                              {"Do not analyze", VariableKind::exclude}}};

}  // namespace

std::string_view displayName(UserVariableRole role) {
    return meanings[static_cast<std::size_t>(role)].name;
}

VariableKind variableKind(UserVariableRole role) {
    return meanings[static_cast<std::size_t>(role)].kind;
}

}  // namespace sorvane
