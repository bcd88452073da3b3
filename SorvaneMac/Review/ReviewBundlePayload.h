#pragma once

#include <boost/describe/class.hpp>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/DataVariable.h"
#include "SorvaneMac/Report/ReportItem.h"

/// The presentation packet for the tablet viewer. `docs/formats/bsk.md` tells its keys.
namespace sorvane {

struct ReviewVariableSummaryPayload {
    std::string name{};
    VariableKind role = VariableKind::status;
    std::optional<std::string> construct{};
    bool isReverseCoded = false;
    bool includeInReliability = false;

    bool operator==(const ReviewVariableSummaryPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(ReviewVariableSummaryPayload,
                      (),
                      (name, role, construct, isReverseCoded, includeInReliability))

struct SurveyDesignPayload {
    bool isActive = false;
    /// Column names; empty where there is none.
    std::string weight{};
    std::string strata{};
    std::string cluster{};
    std::string estimand{};

    bool operator==(const SurveyDesignPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(SurveyDesignPayload, (), (isActive, weight, strata, cluster, estimand))

/// What a viewer shows beside a finding.
struct ReviewFindingHintPayload {
    /// That of the finding.
    std::string id{};
    std::string category{};
    std::string testType{};
    std::string evidence{};
    std::string effectLabel{};
    std::string statistic{};
    std::string pValue{};
    std::string effectSize{};
    std::string confidenceInterval{};
    std::optional<std::string> plainLanguage{};
    std::optional<std::string> practicalMeaning{};
    std::optional<std::string> decisionNote{};

    bool operator==(const ReviewFindingHintPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(ReviewFindingHintPayload,
                      (),
                      (id,
                       category,
                       testType,
                       evidence,
                       effectLabel,
                       statistic,
                       pValue,
                       effectSize,
                       confidenceInterval,
                       plainLanguage,
                       practicalMeaning,
                       decisionNote))

struct ReliabilityScalePayload {
    std::string constructName{};
    std::vector<std::string> itemNames{};
    std::int64_t itemCount = 0;
    std::int64_t casesUsed = 0;
    std::optional<double> alpha{};
    std::optional<double> averageInterItemCorrelation{};
    std::string qualityLabel{};
    std::string interpretation{};
    std::string recommendedAction{};
    std::vector<std::string> warnings{};

    bool operator==(const ReliabilityScalePayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(ReliabilityScalePayload,
                      (),
                      (constructName,
                       itemNames,
                       itemCount,
                       casesUsed,
                       alpha,
                       averageInterItemCorrelation,
                       qualityLabel,
                       interpretation,
                       recommendedAction,
                       warnings))

struct QualThemePayload {
    std::string id{};
    std::string title{};
    std::string summary{};
    std::int64_t evidenceCount = 0;

    bool operator==(const QualThemePayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(QualThemePayload, (), (id, title, summary, evidenceCount))

struct QualQuotePayload {
    std::string id{};
    std::string themeTitle{};
    std::string text{};
    std::string participantLabel{};

    bool operator==(const QualQuotePayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(QualQuotePayload, (), (id, themeTitle, text, participantLabel))

struct MixedMethodsPayload {
    std::string studyDesign{};
    std::string integrationNarrative{};
    std::string convergenceLabel{};
    std::string convergenceSummary{};
    std::vector<QualThemePayload> themes{};
    std::vector<QualQuotePayload> quotes{};
    std::string jointDisplayNote{};

    bool operator==(const MixedMethodsPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(MixedMethodsPayload,
                      (),
                      (studyDesign,
                       integrationNarrative,
                       convergenceLabel,
                       convergenceSummary,
                       themes,
                       quotes,
                       jointDisplayNote))

struct InstrumentConstructPayload {
    std::string name{};
    std::int64_t itemCount = 0;
    std::string clarityLabel{};
    std::string note{};

    bool operator==(const InstrumentConstructPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(InstrumentConstructPayload, (), (name, itemCount, clarityLabel, note))

struct InstrumentQualityPayload {
    std::string source{};
    std::string writingQualityBand{};
    std::string writingQualityLabel{};
    std::int64_t needsQuestionTextCount = 0;
    std::int64_t constructCount = 0;
    std::string summary{};
    std::vector<InstrumentConstructPayload> constructs{};

    bool operator==(const InstrumentQualityPayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(InstrumentQualityPayload,
                      (),
                      (source,
                       writingQualityBand,
                       writingQualityLabel,
                       needsQuestionTextCount,
                       constructCount,
                       summary,
                       constructs))

struct ReviewBundlePayload {
    std::string schemaVersion = "1.4";
    std::string briselVersion = "0.9.92";
    std::chrono::sys_seconds exportedAt{};
    std::string datasetName{};
    std::int64_t rowCount = 0;
    std::int64_t columnCount = 0;
    std::vector<ReviewVariableSummaryPayload> variables{};
    std::vector<std::string> constructs{};
    SurveyDesignPayload surveyDesign{};
    std::vector<ReportItem> findings{};
    std::vector<std::string> transformationLog{};
    std::optional<std::vector<std::string>> previewHeaders{};
    std::optional<std::vector<std::vector<std::string>>> previewRows{};
    /// One per finding, in their order.
    std::optional<std::vector<ReviewFindingHintPayload>> reviewFindings{};
    std::optional<std::vector<ReliabilityScalePayload>> reliability{};
    /// These two are never filled here; the viewer knows them from other programs.
    std::optional<MixedMethodsPayload> mixedMethods{};
    std::optional<InstrumentQualityPayload> instrumentQuality{};

    bool operator==(const ReviewBundlePayload&) const = default;
};
BOOST_DESCRIBE_STRUCT(ReviewBundlePayload,
                      (),
                      (schemaVersion,
                       briselVersion,
                       exportedAt,
                       datasetName,
                       rowCount,
                       columnCount,
                       variables,
                       constructs,
                       surveyDesign,
                       findings,
                       transformationLog,
                       previewHeaders,
                       previewRows,
                       reviewFindings,
                       reliability,
                       mixedMethods,
                       instrumentQuality))

}  // namespace sorvane
