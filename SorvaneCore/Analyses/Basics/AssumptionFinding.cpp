#include "SorvaneCore/Analyses/Basics/AssumptionFinding.h"

namespace sorvane {

std::string_view displayName(AssumptionSeverity severity) {
    switch (severity) {
        case AssumptionSeverity::pass:
            return "Met";
        case AssumptionSeverity::caution:
            return "Caution";
        case AssumptionSeverity::violation:
            return "Violated";
    }
    return "";
}

}  // namespace sorvane
