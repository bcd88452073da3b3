#include "SorvaneCore/Import/StatPackageImporter.h"

#include <map>

#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Import/ImportCautions.h"
#include "SorvaneCore/Import/ImportReadinessBuilder.h"
#include "SorvaneCore/Import/SPSS/SPSSReader.h"
#include "SorvaneCore/Import/StatPackageImportError.h"
#include "SorvaneCore/Import/Stata/StataReader.h"
#include "SorvaneCore/Import/Survey/PackageRoles.h"
#include "SorvaneCore/Import/Survey/SvmmFieldReader.h"
#include "SorvaneCore/Import/Survey/SvmmReader.h"
#include "SorvaneCore/Import/VariableClassifier.h"

namespace sorvane {

namespace {

std::string userMissingWarning(const std::string& spec) {
    return "User-defined missing values (" + spec + ") were imported as missing.";
}

/// What a map holds for a column, by the file's name of it, else by its header; null without.
template <typename Value>
const Value* lookedUp(const std::map<std::string, Value>& values,
                      const std::string& fileName,
                      const std::string& header) {
    const auto byName = values.find(fileName);
    const auto found = byName != values.end() ? byName : values.find(header);
    return found == values.end() ? nullptr : &found->second;
}

void describe(DataVariable& variable, const std::string& fileName, const TabularImport& table) {
    const std::string* label = lookedUp(table.variableLabels, fileName, variable.name);
    if (!variable.label && label != nullptr && !label->empty()) {
        variable.label = *label;
    }
    const auto* valueLabels = lookedUp(table.valueLabels, fileName, variable.name);
    if (valueLabels != nullptr && !valueLabels->empty()) {
        variable.valueLabels = *valueLabels;
    }
    if (const std::string* spec = lookedUp(table.userMissingSpecs, fileName, variable.name)) {
        variable.warnings.push_back(userMissingWarning(*spec));
    }
}

template <typename Package>
ImportedDataset packageDataset(const StatPackageImporter& importer,
                               const std::string& fileName,
                               Package package,
                               const std::map<std::string, std::string>& labels) {
    if (package.headers.empty()) {
        throw StatPackageImportError::svmmHasNoData(package.notes.front());
    }
    TabularImport table;
    table.variableNames = std::move(package.headers);
    table.variableLabels = labels;
    table.rows = std::move(package.rows);
    table.notes = std::move(package.notes);
    ImportedDataset dataset =
        importer.build(package.title.empty() ? fileName : package.title, std::move(table));
    PackageRoles::assign(package.roles, dataset);
    return dataset;
}

}  // namespace

ImportedDataset StatPackageImporter::importSPSS(const std::filesystem::path& file) const {
    return importSPSS(fileName(file), FileBytes::read(file).view());
}

ImportedDataset StatPackageImporter::importSPSS(const std::string& name,
                                                std::string_view bytes) const {
    std::optional<TabularImport> table = SPSSReader::read(bytes);
    if (!table) {
        throw StatPackageImportError::unreadableSPSS();
    }
    return build(name, *std::move(table));
}

ImportedDataset StatPackageImporter::importStata(const std::filesystem::path& file) const {
    return importStata(fileName(file), FileBytes::read(file).view());
}

ImportedDataset StatPackageImporter::importStata(const std::string& name,
                                                 std::string_view bytes) const {
    std::optional<TabularImport> table = StataReader::read(bytes, stataReferences);
    if (!table) {
        throw StatPackageImportError::unreadableStata();
    }
    return build(name, *std::move(table));
}

ImportedDataset StatPackageImporter::importSvmm(const std::filesystem::path& file) const {
    return importSvmm(fileName(file), FileBytes::read(file).view());
}

ImportedDataset StatPackageImporter::importSvmm(const std::string& name,
                                                std::string_view bytes) const {
    std::optional<SvmmPackage> package = SvmmReader::read(bytes);
    if (!package) {
        throw StatPackageImportError::unreadableSvmm();
    }
    return packageDataset(*this, name, *std::move(package), {});
}

ImportedDataset StatPackageImporter::importSvmmField(const std::filesystem::path& file) const {
    return importSvmmField(fileName(file), FileBytes::read(file).view());
}

ImportedDataset StatPackageImporter::importSvmmField(const std::string& name,
                                                     std::string_view bytes) const {
    std::optional<SvmmFieldPackage> package = SvmmFieldReader::read(bytes);
    if (!package) {
        throw StatPackageImportError::unreadableSvmmField();
    }
    const std::map<std::string, std::string> labels = std::move(package->labels);
    return packageDataset(*this, name, *std::move(package), labels);
}

ImportedDataset StatPackageImporter::build(const std::string& name, TabularImport table) const {
    if (table.rows.rowCount() == 0) {
        throw StatPackageImportError::noDataRows(
            static_cast<std::int64_t>(table.variableNames.size()));
    }
    ImportReadinessBuilder::Headers headers =
        ImportReadinessBuilder::normalizedHeaders(table.variableNames);
    ImportedDataset dataset;
    dataset.name = name;
    dataset.headers = std::move(headers.headers);
    dataset.rows = std::move(table.rows);
    dataset.variables = VariableClassifier().classify(dataset.headers, dataset.rows);
    for (std::size_t column = 0; column < dataset.variables.size(); ++column) {
        describe(dataset.variables[column], table.variableNames[column], table);
    }
    dataset.importMetadata = ImportReadinessBuilder::metadata({}, dataset.headers, dataset.rows, {},
                                                              std::move(headers.issues));
    if (!table.notes.empty()) {
        dataset.importMetadata.notes = std::move(table.notes);
    }
    ImportCautions::add({.implausible = table.implausibleColumns, .shifted = table.shiftedColumns},
                        dataset);
    return dataset;
}

}  // namespace sorvane
