#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneCore/Import/CSVParser.h"

namespace sorvane {

/// Delimited text to a dataset.
struct CSVImporter {
    CSVParser parser;

    /// The dataset of a file; its name is the file's, extension included.
    ///
    /// Method     the bytes become text by the ladder of TextEncoding
    /// Failure    an extension other than csv, txt or tsv, no data rows -> CSVImportError; no table
    ///            in the text -> CSVParserError; no file to be read -> FileReadError
    ImportedDataset importCSV(const std::filesystem::path& file) const;

    /// The dataset of a text.
    ///
    /// Failure    as above, but for the file
    ImportedDataset importCSV(const std::string& name, std::string_view content) const;

private:
    ImportedDataset dataset(const std::string& name, CSVParseResult parsed) const;
};

}  // namespace sorvane
