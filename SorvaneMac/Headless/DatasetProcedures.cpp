#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Import/CSVImporter.h"
#include "SorvaneCore/Import/ImportReadinessBuilder.h"
#include "SorvaneCore/Import/ScaleItemClassifier.h"
#include "SorvaneCore/Import/VariableClassifier.h"
#include "SorvaneCore/Project/DatasetJson.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

using Texts = std::vector<std::string>;

std::vector<ScaleItemClassification> classifyScaleItems(
    const Texts& headers,
    const std::vector<Texts>& columns,
    const std::map<std::string, std::string>& questionText) {
    std::vector<TextTable::Column> cells;
    for (const Texts& column : columns) {
        cells.push_back(TextColumn::of(column));
    }
    return ScaleItemClassifier::classify(headers, cells, questionText);
}

ImportedDataset importText(const std::string& name, const std::string& content) {
    return CSVImporter().importCSV(name, content);
}

}  // namespace

std::vector<Procedure> datasetProcedures() {
    const arguments::Value<std::string> text{"text"};
    return {
        procedure("MissingValue.isMissing", &MissingValue::isMissing, text),
        procedure("MissingValue.normalizedMarker", &MissingValue::normalizedMarker, text),
        procedure("MissingValue.displayMarker", &MissingValue::displayMarker, text),
        procedure("MissingValue.displayMarkers", &MissingValue::displayMarkers),
        procedure("CSVImporter.importCSV", &importText, arguments::Value<std::string>{"named"},
                  arguments::Value<std::string>{"content"}),
        procedure(
            "ImportReadinessBuilder.normalizedHeaders",
            [](const Texts& headers) { return ImportReadinessBuilder::normalizedHeaders(headers); },
            arguments::Value<Texts>{"headers"}),
        procedure(
            "VariableClassifier.classify",
            [](const std::string& name, const Texts& values) {
                return VariableClassifier().classify(name, values);
            },
            arguments::Value<std::string>{"name"}, arguments::OnlyTexts{}),
        procedure("ScaleItemClassifier.classify", &classifyScaleItems,
                  arguments::Value<Texts>{"headers"},
                  arguments::Value<std::vector<Texts>>{"columns"},
                  arguments::Setting<std::map<std::string, std::string>>{"questionText"}),
    };
}

}  // namespace sorvane
