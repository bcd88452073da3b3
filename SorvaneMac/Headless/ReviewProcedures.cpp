#include "SorvaneMac/Drafting/NumbersInText.h"
#include "SorvaneMac/Drafting/SanitizedText.h"
#include "SorvaneMac/Headless/ProcedureTable.h"
#include "SorvaneMac/Review/ReviewBundleExporter.h"
#include "SorvaneMac/Review/ReviewInference.h"
#include "SorvaneMac/Review/SEMDiagramBackfill.h"

namespace sorvane {

namespace {

/// A title is taken because findings have one; a diagram does not depend on it.
std::optional<SEMDiagramPayload> backfilled(const ReportTable& from, const std::string&) {
    return SEMDiagramBackfill::payload(from);
}

}  // namespace

std::vector<Procedure> reviewProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    using OptionalText = std::optional<std::string>;
    return {
        procedure("ReviewInference.parse", &ReviewInference::parse, Value<std::string>{"title"},
                  Value<std::string>{"apaSummary"}, Setting<OptionalText>{"caution"}),
        procedure("ReviewBundleExporter.buildHints", &ReviewBundleExporter::buildHints,
                  Value<std::vector<ReportItem>>{"from"}),
        procedure("SEMDiagramBackfill.payload", &backfilled, Value<ReportTable>{"from"},
                  Setting<std::string>{"title"}),
        procedure("IntelligenceService.sanitized", &SanitizedText::sanitized,
                  Value<std::string>{"text"}),
        procedure("NumbersInText.foreign", &NumbersInText::foreign, Value<std::string>{"draft"},
                  Value<std::string>{"source"}),
    };
}

}  // namespace sorvane
