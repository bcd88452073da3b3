#include "SorvaneCore/Import/StatPackageImporter.h"

#include <map>
#include <span>
#include <unordered_map>

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

/// Hands out what a map holds for columns: to the last column that wants a value the value itself,
/// to others copies.
template <typename Value>
class ColumnValues {
public:
    /// A column's value is looked up by the file's name of the column, else by its header.
    ColumnValues(std::map<std::string, Value>& values,
                 std::span<const std::string> fileNames,
                 std::span<const std::string> headers) {
        for (std::size_t column = 0; column < headers.size(); ++column) {
            const auto byName = values.find(fileNames[column]);
            const auto found = byName != values.end() ? byName : values.find(headers[column]);
            wanted_.push_back(found == values.end() ? nullptr : &found->second);
        }
        for (std::size_t column = 0; column < wanted_.size(); ++column) {
            lastColumn_[wanted_[column]] = column;
        }
    }

    bool has(std::size_t column) const { return wanted_[column] != nullptr; }
    const Value& peek(std::size_t column) const { return *wanted_[column]; }
    /// Input      columns in ascending order
    Value take(std::size_t column) {
        const bool isLast = lastColumn_.at(wanted_[column]) == column;
        return isLast ? std::move(*wanted_[column]) : *wanted_[column];
    }

private:
    std::vector<Value*> wanted_;
    std::unordered_map<const Value*, std::size_t> lastColumn_;
};

void describe(TabularImport& table, ImportedDataset& dataset) {
    const auto& names = table.variableNames;
    ColumnValues<std::string> labels(table.variableLabels, names, dataset.headers);
    ColumnValues<std::string> specs(table.userMissingSpecs, names, dataset.headers);
    ColumnValues<ValueLabels> valueLabels(table.valueLabels, names, dataset.headers);
    for (std::size_t column = 0; column < dataset.variables.size(); ++column) {
        DataVariable& variable = dataset.variables[column];
        if (!variable.label && labels.has(column) && !labels.peek(column).empty()) {
            variable.label = labels.take(column);
        }
        if (valueLabels.has(column) && !valueLabels.peek(column).empty()) {
            variable.valueLabels = valueLabels.take(column);
        }
        if (specs.has(column)) {
            variable.warnings.push_back(userMissingWarning(specs.peek(column)));
        }
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
    describe(table, dataset);
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
