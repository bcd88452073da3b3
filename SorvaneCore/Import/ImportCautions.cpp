#include "SorvaneCore/Import/ImportCautions.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::ImportCautions {

namespace {

/// More names would hide what the sentence says.
constexpr std::size_t mostNamesShown = 12;

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

struct Wording {
    ImportCautionKind kind;
    std::string warning;
    std::string (*message)(const std::string& names);
};

void addCaution(std::span<const std::size_t> columns,
                const Wording& wording,
                ImportedDataset& dataset) {
    if (columns.empty()) {
        return;
    }
    ImportCaution caution{.kind = wording.kind};
    for (const std::size_t column : columns) {
        dataset.variables[column].warnings.push_back(wording.warning);
        caution.columnNames.push_back(dataset.headers[column]);
    }
    caution.message = wording.message(listed(caution.columnNames));
    auto& cautions = dataset.importMetadata.cautions;
    if (!cautions) {
        cautions.emplace();
    }
    cautions->push_back(std::move(caution));
}

}  // namespace

std::string implausibleWarning() {
    return "Some cells hold a number far too large to be data, which most likely marks a missing "
           "value in the file. Set these cells to missing before you analyse this variable.";
}

void add(const DoubtfulColumns& doubtful, ImportedDataset& dataset) {
    addCaution(doubtful.shifted,
               {.kind = ImportCautionKind::otherReferenceWidth,
                .warning = shiftedWarning(),
                .message = shiftedMessage},
               dataset);
    addCaution(doubtful.implausible,
               {.kind = ImportCautionKind::implausibleMagnitude,
                .warning = implausibleWarning(),
                .message = implausibleMessage},
               dataset);
}

}  // namespace sorvane::ImportCautions
