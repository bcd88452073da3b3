#include "SorvaneCore/Import/Stata/StataReader.h"

#include "SorvaneCore/Import/Stata/StataCells.h"
#include "SorvaneCore/Import/Stata/StataValueLabels.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::StataReader {

namespace {

using NumberText::integer;

std::string unsupportedNote(std::int64_t release) {
    return "Stata release " + integer(release) +
           " is not supported. Sorvane reads .dta versions 117 (Stata 13), 118 (Stata 14-15), and "
           "119 (Stata 15-18).";
}

std::string readNote(const StataFile& file) {
    return "Stata release " + integer(file.release) + ", " +
           (file.byteOrder == ByteOrder::big ? "MSF" : "LSF") + " byte order, " +
           integer(static_cast<std::int64_t>(file.variableCount)) + " variables, " +
           integer(static_cast<std::int64_t>(file.observationCount)) + " observations.";
}

std::vector<std::string> notes(const StataFile& file) {
    std::vector<std::string> notes;
    if (!file.datasetLabel.empty()) {
        notes.push_back("Dataset label: " + file.datasetLabel);
    }
    if (!file.timestamp.empty()) {
        notes.push_back("Timestamp: " + file.timestamp);
    }
    notes.push_back(readNote(file));
    return notes;
}

void addValueLabels(const StataFile& file, TabularImport& result) {
    const StataValueLabels tables(file);
    const std::vector<std::string> names = file.valueLabelNames();
    ValueLabelBudget budget(file.bytes.size());
    // By the name of the table; absent where there are too many.
    std::map<std::string_view, std::optional<PricedLabels>> read;
    bool hasAllLabels = true;
    for (std::size_t variable = 0; variable < names.size(); ++variable) {
        const std::string& name = names[variable];
        if (name.empty() || !tables.hasTable(name)) {
            continue;
        }
        const auto [labels, isNew] = read.try_emplace(name);
        if (isNew) {
            labels->second = tables.labels(name, budget);
        }
        const bool fits = labels->second && budget.takeUse(labels->second->bytes);
        if (fits) {
            result.valueLabels[file.variableNames[variable]] = labels->second->labels;
        }
        hasAllLabels = hasAllLabels && fits;
    }
    if (!hasAllLabels) {
        result.notes.push_back(tooManyLabelsNote());
    }
}

}  // namespace

std::optional<TabularImport> read(std::string_view bytes, StataStringReferences references) {
    const std::optional<std::int64_t> release = StataFile::peekRelease(bytes);
    if (!release) {
        return std::nullopt;
    }
    if (!StataFile::isSupported(*release)) {
        TabularImport unsupported;
        unsupported.notes.push_back(unsupportedNote(*release));
        return unsupported;
    }
    const std::optional<StataFile> file = StataFile::read(bytes);
    std::optional<StataTable> table = file ? readStataTable(*file, references) : std::nullopt;
    if (!table) {
        return std::nullopt;
    }
    TabularImport result;
    result.variableNames = file->variableNames;
    result.variableLabels = file->variableLabels();
    result.rows = std::move(table->rows);
    result.implausibleColumns = std::move(table->implausibleColumns);
    result.shiftedColumns = std::move(table->shiftedColumns);
    result.notes = notes(*file);
    addValueLabels(*file, result);
    return result;
}

}  // namespace sorvane::StataReader
