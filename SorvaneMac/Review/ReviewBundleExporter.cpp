#include "SorvaneMac/Review/ReviewBundleExporter.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <nlohmann/json.hpp>
#include <sstream>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Project/ISODate.h"
#include "SorvaneCore/Project/RecordJson.h"
#include "SorvaneMac/Review/ReviewInference.h"
#include "SorvaneMac/Review/SEMDiagramBackfill.h"
#include "SorvaneMac/Screens/ScaleAnalysis.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane::ReviewBundleExporter {

namespace {

/// A packet has no form for what is not finite.
void leaveOutWhatIsNoNumber(SEMDiagramPayload& diagram) {
    for (SEMDiagramPayload::Param& each : diagram.parameters) {
        if (each.std && !std::isfinite(*each.std)) {
            each.std.reset();
        }
    }
}

constexpr std::size_t mostPreviewRows = 25;
constexpr std::size_t fewestItems = 2;
constexpr std::string_view notEstimated = "not estimated";

std::vector<ReviewVariableSummaryPayload> variables(const StudioState& state) {
    std::vector<ReviewVariableSummaryPayload> summaries;
    for (const DataVariable& each : state.dataset().variables) {
        summaries.push_back(
            {.name = each.name,
             .role = each.assignedType,
             .construct = each.assignedConstruct,
             .isReverseCoded = state.scale.reverseCodedItemNames->contains(each.name),
             .includeInReliability = each.includeInReliability});
    }
    return summaries;
}

/// The value of a field of the survey screen; its start value where no screen has registered it.
template <typename T>
T surveyField(const StudioState& state, std::string_view name) {
    const AnyField* const field = state.fields.find(name);
    return field ? fromJson<T>(field->json()) : T();
}

SurveyDesignPayload surveyDesign(const StudioState& state) {
    return {.isActive = surveyField<bool>(state, "surveyWeightsActive"),
            .weight = surveyField<std::string>(state, "svWeight"),
            .strata = surveyField<std::string>(state, "svStrata"),
            .cluster = surveyField<std::string>(state, "svCluster"),
            .estimand = surveyField<std::string>(state, "svEstimand")};
}

std::vector<ReportItem> findings(const StudioState& state) {
    std::vector<ReportItem> items = state.reportItems.get();
    for (ReportItem& item : items) {
        if (!item.semDiagram && item.table) {
            item.semDiagram = SEMDiagramBackfill::payload(*item.table);
        }
        if (item.semDiagram) {
            leaveOutWhatIsNoNumber(*item.semDiagram);
        }
    }
    return items;
}

std::vector<std::vector<std::string>> leadingRows(const ImportedDataset& dataset) {
    std::vector<std::vector<std::string>> rows;
    for (std::size_t row = 0; row < std::min(mostPreviewRows, dataset.rows.rowCount()); ++row) {
        std::vector<std::string>& cells = rows.emplace_back();
        for (std::size_t column = 0; column < dataset.headers.size(); ++column) {
            cells.emplace_back(dataset.rows.cell(row, column));
        }
    }
    return rows;
}

std::string scaleName(const StudioState& state) {
    return std::string(UnicodeText::trimmed(state.scale.constructName.get()));
}

struct Scale {
    std::string construct;
    std::vector<std::string> items;
};

/// The item set by construct, in the order of first items.
std::vector<Scale> scales(const StudioState& state) {
    std::vector<Scale> found;
    for (const DataVariable* item : VariableLists::reliabilityVariables(state.dataset())) {
        const std::string construct = item->assignedConstruct.value_or(scaleName(state));
        auto scale = std::ranges::find(found, construct, &Scale::construct);
        if (scale == found.end()) {
            scale = found.insert(found.end(), Scale{.construct = construct, .items = {}});
        }
        scale->items.push_back(item->name);
    }
    return found;
}

ReliabilityScalePayload payload(const ReliabilityResult& result) {
    return {.constructName = result.constructName,
            .itemNames = result.itemNames,
            .itemCount = std::ssize(result.itemNames),
            .casesUsed = result.casesUsed,
            .alpha = result.alpha,
            .averageInterItemCorrelation = result.averageInterItemCorrelation,
            .qualityLabel =
                std::string(result.alpha ? ScaleAnalysis::reportBand(*result.alpha) : notEstimated),
            .interpretation = result.interpretation,
            .recommendedAction = result.recommendedAction,
            .warnings = result.warnings};
}

}  // namespace

bool hasAnything(const StudioState& state) {
    return state.hasData() || !state.reportItems->empty();
}

ReviewBundlePayload build(const StudioState& state, DataPreview preview) {
    using namespace std::chrono;  // NOLINT(google-build-using-namespace)
    const ImportedDataset& dataset = state.dataset();
    ReviewBundlePayload packet;
    packet.exportedAt = floor<seconds>(system_clock::now());
    packet.datasetName = dataset.name;
    packet.rowCount = dataset.rowCount();
    packet.columnCount = dataset.columnCount();
    packet.variables = variables(state);
    packet.constructs = constructNames(state);
    packet.surveyDesign = surveyDesign(state);
    packet.findings = findings(state);
    packet.transformationLog = state.data.transformationLog.get();
    if (preview == DataPreview::leadingRows) {
        packet.previewHeaders = dataset.headers;
        packet.previewRows = leadingRows(dataset);
    }
    packet.reviewFindings = buildHints(packet.findings);
    packet.reliability = buildReliability(state);
    return packet;
}

std::vector<ReviewFindingHintPayload> buildHints(const std::vector<ReportItem>& findings) {
    std::vector<ReviewFindingHintPayload> hints;
    for (const ReportItem& item : findings) {
        const ReviewInference::Parsed parsed =
            ReviewInference::parse(item.title, item.apaSummary, item.caution);
        hints.push_back({.id = item.id.text(),
                         .category = parsed.category,
                         .testType = parsed.testType,
                         .evidence = parsed.evidence,
                         .effectLabel = parsed.effectLabel,
                         .statistic = parsed.statistic,
                         .pValue = parsed.pValue,
                         .effectSize = parsed.effectSize,
                         .confidenceInterval = parsed.confidenceInterval});
    }
    return hints;
}

std::vector<ReliabilityScalePayload> buildReliability(const StudioState& state) {
    std::vector<ReliabilityScalePayload> payloads;
    for (const Scale& scale : scales(state)) {
        if (scale.items.size() >= fewestItems) {
            payloads.push_back(
                payload(ScaleAnalysis::analyze(state, scale.construct, scale.items)));
        }
    }
    return payloads;
}

std::vector<std::string> constructNames(const StudioState& state) {
    std::vector<std::string> names;
    const auto add = [&names](const std::string& name) {
        if (!name.empty() && std::ranges::find(names, name) == names.end()) {
            names.push_back(name);
        }
    };
    for (const DataVariable& each : state.dataset().variables) {
        add(each.assignedConstruct.value_or(""));
    }
    add(scaleName(state));
    return names;
}

std::optional<std::string> encode(const ReviewBundlePayload& payload) {
    try {
        std::ostringstream text;
        {
            JsonTextSink sink(text);
            writeJson(sink, payload);
        }
        return std::move(text).str();
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

}  // namespace sorvane::ReviewBundleExporter
