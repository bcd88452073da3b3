#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneCore/Import/CSVImporter.h"
#include "SorvaneCore/Import/Excel/XLSXImporter.h"
#include "SorvaneCore/Import/Numbers/NumbersImporter.h"
#include "SorvaneCore/Import/StatPackageImporter.h"

namespace sorvane {

/// The door of all file import: finds the reader by the file's extension.
struct SpreadsheetImporter {
    /// What is accepted, as users are told.
    static constexpr std::string_view acceptedFormats =
        "CSV, TSV, Excel (.xlsx), SPSS (.sav), or Stata (.dta).";
    /// The files that the door takes, by kind.
    struct Format {
        std::string_view name;
        std::vector<std::string_view> extensions;
    };
    static const std::vector<Format>& formats();

    CSVImporter csvImporter;
    XLSXImporter xlsxImporter;
    StatPackageImporter statImporter;
    NumbersImporter numbersImporter;

    /// The dataset of a file.
    ///
    /// Failure    what the chosen reader throws; an extension that none takes ->
    ///            SpreadsheetImportError; not enough memory -> ImportMemoryError. All are
    ///            ImportErrors, whose text is for the user
    ImportedDataset importData(const std::filesystem::path& file) const;
};

}  // namespace sorvane
