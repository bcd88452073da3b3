#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneCore/Import/Stata/StataFile.h"
#include "SorvaneCore/Import/TabularImport.h"

namespace sorvane {

/// Files of statistics and survey programs to datasets: what a reader hands over becomes variables with
/// labels, value labels and warnings. Rows are never dropped.
struct StatPackageImporter {
    /// For files of Stata that turn out to have been read with the wrong ones.
    StataStringReferences stataReferences = StataStringReferences::stated;

    /// The dataset of an SPSS system file.
    ///
    /// Failure    not readable, no cases -> StatPackageImportError; no file to be read ->
    ///            FileReadError
    ImportedDataset importSPSS(const std::filesystem::path& file) const;
    ImportedDataset importSPSS(const std::string& name, std::string_view bytes) const;

    /// The dataset of a Stata data file.
    ///
    /// Failure    as above
    ImportedDataset importStata(const std::filesystem::path& file) const;
    ImportedDataset importStata(const std::string& name, std::string_view bytes) const;

    /// The dataset of a survey package; its name is the package's title, else the file's. Roles
    /// that the package gives are assigned.
    ///
    /// Failure    as above; a package without a table or without answers ->
    ///            StatPackageImportError, which says what it has
    ImportedDataset importSvmm(const std::filesystem::path& file) const;
    ImportedDataset importSvmm(const std::string& name, std::string_view bytes) const;
    ImportedDataset importSvmmField(const std::filesystem::path& file) const;
    ImportedDataset importSvmmField(const std::string& name, std::string_view bytes) const;

    /// The dataset of a table that a reader hands over.
    ///
    /// Method     labels and value labels are looked up by the file's own name of a column, then by
    ///            its header
    /// Failure    no rows -> StatPackageImportError
    ImportedDataset build(const std::string& name, TabularImport table) const;
};

}  // namespace sorvane
