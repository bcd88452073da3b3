#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace sorvane {

/// Why an import failed; `what()` is the sentence that the user reads. Every reader throws a kind
/// of this, and nothing is imported then.
class ImportError : public std::runtime_error {
public:
    explicit ImportError(const std::string& sentence) : std::runtime_error(sentence) {}
};

/// The file itself could not be read.
class FileReadError : public ImportError {
public:
    enum class Kind { notFound, directory, noPermission, unreadable };

    FileReadError(Kind kind, std::string_view fileName);
    Kind kind() const { return kind_; }

private:
    Kind kind_;
};

/// The machine cannot hold what the file needs.
class ImportMemoryError : public ImportError {
public:
    ImportMemoryError();
};

/// The text is no table of delimited cells.
class CSVParserError : public ImportError {
public:
    enum class Kind { emptyFile, unterminatedQuote, tooManyColumns };

    explicit CSVParserError(Kind kind);
    Kind kind() const { return kind_; }

private:
    Kind kind_;
};

/// The file or its text does not give a dataset.
class CSVImportError : public ImportError {
public:
    enum class Kind { unsupportedFileType, noDataRows, unreadableTextEncoding };

    static CSVImportError unsupportedFileType(std::string_view extension);
    static CSVImportError noDataRows(std::int64_t columnCount);
    static CSVImportError unreadableTextEncoding();
    Kind kind() const { return kind_; }

private:
    CSVImportError(Kind kind, const std::string& sentence) : ImportError(sentence), kind_(kind) {}

    Kind kind_;
};

/// No reader takes files of this extension.
class SpreadsheetImportError : public ImportError {
public:
    enum class Kind { unsupportedFileType };

    static SpreadsheetImportError unsupportedFileType(std::string_view extension);
    Kind kind() const { return kind_; }

private:
    SpreadsheetImportError(Kind kind, const std::string& sentence)
        : ImportError(sentence), kind_(kind) {}

    Kind kind_;
};

}  // namespace sorvane
