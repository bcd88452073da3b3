#include "SorvaneMac/Screens/MethodPreview.h"

namespace sorvane::MethodPreview {

namespace {

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

}  // namespace

std::vector<Fact> rows(const MethodFile& record) {
    return {{"analysis_type", record.analysisType},
            {"variables_used", joined(record.variablesUsed)},
            {"missing_data_rule", record.missingDataRule},
            {"engine_version", record.engineVersion},
            {"filename", record.defaultFilename()}};
}

}  // namespace sorvane::MethodPreview
