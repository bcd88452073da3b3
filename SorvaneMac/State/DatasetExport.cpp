#include "SorvaneCore/Dataset/CSVWriter.h"
#include "SorvaneCore/Project/WholeFile.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

bool StudioState::exportDatasetCSV(const std::optional<std::filesystem::path>& to) {
    if (!to) {
        sayBesideSaving("Export cancelled.");
        return false;
    }
    const std::string text = CSVWriter::text(dataset());
    const auto failure = replaceFile(*to, [&text](const TakeBytes& take) { take(text); });
    if (failure) {
        projectError.set("Save failed: " + *failure + ".");
        return false;
    }
    projectError.set(std::nullopt);
    sayBesideSaving("Exported dataset to " + to->string() + ".");
    log("Exported CSV to " + to->string() + ".");
    return true;
}

}  // namespace sorvane
