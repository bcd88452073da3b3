#include "SorvaneCore/Import/ImportError.h"

#include "SorvaneCore/Import/CSVParser.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

std::string sentence(FileReadError::Kind kind, std::string_view fileName) {
    const std::string name = "\"" + std::string(fileName) + "\"";
    switch (kind) {
        case FileReadError::Kind::notFound:
            return "The file " + name + " could not be found. Check that it has not been moved, " +
                   "renamed or deleted.";
        case FileReadError::Kind::directory:
            return name + " is a folder, not a file. Open the folder and choose a data file in it.";
        case FileReadError::Kind::noPermission:
            return "You do not have permission to read the file " + name +
                   ". Change its permissions or copy it to a folder of your own, then import it " +
                   "again.";
        case FileReadError::Kind::unreadable:
            break;
    }
    return "The file " + name + " could not be read. Check the disk or the network connection, " +
           "then import it again.";
}

std::string sentence(CSVParserError::Kind kind) {
    switch (kind) {
        case CSVParserError::Kind::emptyFile:
            return "The file is empty. Export the data again with one header row followed by "
                   "respondent rows, then import that file.";
        case CSVParserError::Kind::unterminatedQuote:
            return "The file ends inside a quoted cell: a double quote was opened and never "
                   "closed. Close the quote, or export the data again, then import the file.";
        case CSVParserError::Kind::tooManyColumns:
            break;
    }
    return "The first line of the file has more than " +
           NumberText::integer(CSVParser::mostColumns) +
           " cells, too many for the columns of a dataset. Check that each record stands on a line "
           "of its own.";
}

std::string sentenceForExtension(std::string_view extension) {
    if (extension == "xls") {
        return "Sorvane Studio imports .xlsx, .numbers, and .csv files. Save this older Excel .xls "
               "file as .xlsx, then import it again.";
    }
    return "Sorvane Studio imports .xlsx, .numbers, and .csv files, not ." +
           std::string(extension) + " files.";
}

}  // namespace

FileReadError::FileReadError(Kind kind, std::string_view fileName)
    : ImportError(sentence(kind, fileName)), kind_(kind) {}

ImportMemoryError::ImportMemoryError()
    : ImportError(
          "The file needs more memory than there is. Close other programs or datasets, or "
          "import a smaller part of the file.") {}

CSVParserError::CSVParserError(Kind kind) : ImportError(sentence(kind)), kind_(kind) {}

CSVImportError CSVImportError::unsupportedFileType(std::string_view extension) {
    return {Kind::unsupportedFileType,
            "Sorvane Studio currently imports CSV or plain text files, not ." +
                std::string(extension) + " files."};
}

CSVImportError CSVImportError::noDataRows(std::int64_t columnCount) {
    return {Kind::noDataRows,
            "The file has " + NumberText::integer(columnCount) +
                " column headers but no data rows. Export the worksheet as a normal CSV with one "
                "header row followed by respondent rows."};
}

CSVImportError CSVImportError::unreadableTextEncoding() {
    return {Kind::unreadableTextEncoding,
            "The file could not be read as a text-based CSV. Try exporting it as UTF-8 CSV."};
}

SpreadsheetImportError SpreadsheetImportError::unsupportedFileType(std::string_view extension) {
    return {Kind::unsupportedFileType, sentenceForExtension(extension)};
}

}  // namespace sorvane
