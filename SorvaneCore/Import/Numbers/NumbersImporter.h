#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneCore/Import/CSVImporter.h"
#include "SorvaneCore/Import/Numbers/ChildProcess.h"
#include "SorvaneCore/Import/Numbers/NumbersConverter.h"

namespace sorvane {

/// Numbers documents to datasets: the first table of the first sheet, by way of delimited text.
struct NumbersImporter {
    CSVImporter csvImporter;
    NumbersConverter converter = NumbersConverter::installed();
    ChildProcessLimits limits;

    /// The first sheet of a document as comma-separated text.
    ///
    /// Method     a process of its own runs the script, for 60 s and in 2 GiB at most
    /// Failure    no archive, nothing that the script can read -> cannotParse; no converter ->
    ///            converterUnavailable (NumbersImportError)
    std::string convertToCSV(std::string_view bytes) const;

    /// The dataset of a file; its name is the file's.
    ///
    /// Failure    as above; a sheet without text -> emptyDocument; what CSVImporter throws; no file
    ///            to be read -> FileReadError
    ImportedDataset importNumbers(const std::filesystem::path& file) const;
};

}  // namespace sorvane
