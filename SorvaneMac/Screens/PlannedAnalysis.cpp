#include "SorvaneMac/Screens/PlannedAnalysis.h"

#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

std::optional<Gate> PlannedAnalysis::gate() const {
    std::optional<Gate> missing = selectionGate();
    return missing ? missing : ResultText::notYetGate(name());
}

}  // namespace sorvane
