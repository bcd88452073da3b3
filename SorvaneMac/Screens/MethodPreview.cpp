#include "SorvaneMac/Screens/MethodPreview.h"

#include "SorvaneMac/State/JoinedText.h"

namespace sorvane::MethodPreview {

std::vector<Fact> rows(const MethodFile& record) {
    return {{"analysis_type", record.analysisType},
            {"variables_used", joinedText(record.variablesUsed)},
            {"missing_data_rule", record.missingDataRule},
            {"engine_version", record.engineVersion},
            {"filename", record.defaultFilename()}};
}

}  // namespace sorvane::MethodPreview
