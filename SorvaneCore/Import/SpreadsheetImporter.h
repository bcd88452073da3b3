#pragma once

#include <filesystem>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneCore/Import/CSVImporter.h"
#include "SorvaneCore/Import/Excel/XLSXImporter.h"
#include "SorvaneCore/Import/Numbers/NumbersImporter.h"
#include "SorvaneCore/Import/StatPackageImporter.h"

namespace sorvane {

/// The door of all file import: finds the reader by the file's extension.
struct SpreadsheetImporter {
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
