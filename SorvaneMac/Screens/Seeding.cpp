#include "SorvaneMac/Screens/Seeding.h"

#include <algorithm>

namespace sorvane::Seeding {

void fillFirst(Field<VariableName>& field, const VariableLists::List& candidates) {
    if (field->isBlank() && !candidates.empty()) {
        field.set({candidates.front()->name});
    }
}

void fillFirst(Field<NameSet>& field, const VariableLists::List& candidates, std::size_t count) {
    if (!field->empty() || candidates.empty()) {
        return;
    }
    NameSet names;
    for (std::size_t at = 0; at < std::min(count, candidates.size()); ++at) {
        names.insert(candidates[at]->name);
    }
    field.set(std::move(names));
}

}  // namespace sorvane::Seeding
