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

std::vector<Passage> rows(const MethodFile& record) {
    return {{"analysis_type", record.analysisType, false},
            {"variables_used", joined(record.variablesUsed), false},
            {"missing_data_rule", record.missingDataRule, false},
            {"engine_version", record.engineVersion, false},
            {"filename", record.defaultFilename(), false}};
}

}  // namespace sorvane::MethodPreview
