#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneCore/Import/VariableClassifier.h"

namespace sorvane {

/// Excel workbooks to datasets: the first worksheet that holds a header row and data rows, sheets
/// called codebook last. Formulas are not evaluated and styles not read; a cell is its cached value
/// as it stands, so that a date comes in as its serial number.
struct XLSXImporter {
    VariableClassifier classifier;

    /// The dataset of a file; its name is the file's and the worksheet's.
    ///
    /// Failure    no archive, no workbook in it, malformed XML in a part that is needed, no
    ///            worksheet with a table -> XLSXImportError
    ImportedDataset importXLSX(const std::filesystem::path& file) const;

    /// The dataset of a workbook's bytes.
    ///
    /// Method     unpacked in memory; nothing is written anywhere
    /// Failure    as above
    /// Cost       O(unpacked bytes), in time and memory
    ImportedDataset importXLSX(const std::string& sourceName, std::string_view bytes) const;
};

}  // namespace sorvane
