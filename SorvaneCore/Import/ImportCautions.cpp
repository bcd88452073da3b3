#include "SorvaneCore/Import/ImportCautions.h"

#include <algorithm>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::ImportCautions {

namespace {

/// More names would hide what the sentence says.
constexpr std::size_t mostNamesShown = 12;

std::string implausibleWarning() {
    return "Some cells hold a number far too large to be data, which most likely marks a missing "
           "value in the file. Set these cells to missing before you analyse this variable.";
}

std::string shiftedWarning() {
    return "The file refers to its long texts in another width than they were read with, so cells "
           "of this column may be blank or hold what belongs elsewhere. Read the file again with "
           "8-byte references before you analyse this variable.";
}

std::string implausibleMessage(const std::string& names) {
    return "Numbers far too large to be data were read in " + names +
           ". They most likely mark missing values; set them to missing before any analysis.";
}

std::string shiftedMessage(const std::string& names) {
    return "The file refers to its long texts in another width than they were read with. Do not "
           "trust " +
           names + " until the file has been read again with 8-byte references.";
}

std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size() && i < mostNamesShown; ++i) {
        text += (i == 0 ? "" : ", ") + names[i];
    }
    if (names.size() > mostNamesShown) {
        text += " and " +
                NumberText::integer(static_cast<std::int64_t>(names.size()) -
                                    static_cast<std::int64_t>(mostNamesShown)) +
                " more columns";
    }
    return text;
}

std::string messageOf(const ImportCaution& caution) {
    const std::string names = listed(caution.columnNames);
    return caution.kind == ImportCautionKind::implausibleMagnitude ? implausibleMessage(names)
                                                                   : shiftedMessage(names);
}

void addCaution(std::span<const std::size_t> columns,
                ImportCautionKind kind,
                ImportedDataset& dataset) {
    if (columns.empty()) {
        return;
    }
    ImportCaution caution{.kind = kind};
    for (const std::size_t column : columns) {
        dataset.variables[column].warnings.push_back(warning(kind));
        caution.columnNames.push_back(dataset.headers[column]);
    }
    caution.message = messageOf(caution);
    auto& cautions = dataset.importMetadata.cautions;
    if (!cautions) {
        cautions.emplace();
    }
    cautions->push_back(std::move(caution));
}

}  // namespace

void add(const DoubtfulColumns& doubtful, ImportedDataset& dataset) {
    addCaution(doubtful.shifted, ImportCautionKind::otherReferenceWidth, dataset);
    addCaution(doubtful.implausible, ImportCautionKind::implausibleMagnitude, dataset);
}

std::string warning(ImportCautionKind kind) {
    return kind == ImportCautionKind::implausibleMagnitude ? implausibleWarning()
                                                           : shiftedWarning();
}

void rename(ImportReadinessMetadata& metadata, std::string_view from, const std::string& to) {
    if (!metadata.cautions) {
        return;
    }
    for (ImportCaution& caution : *metadata.cautions) {
        const auto named = std::ranges::find(caution.columnNames, from);
        if (named != caution.columnNames.end()) {
            *named = to;
            caution.message = messageOf(caution);
        }
    }
}

void forget(ImportReadinessMetadata& metadata, std::string_view column) {
    if (!metadata.cautions) {
        return;
    }
    std::erase_if(*metadata.cautions, [column](ImportCaution& caution) {
        if (std::erase(caution.columnNames, column) > 0) {
            caution.message = messageOf(caution);
        }
        return caution.columnNames.empty();
    });
    if (metadata.cautions->empty()) {
        metadata.cautions.reset();
    }
}

}  // namespace sorvane::ImportCautions
