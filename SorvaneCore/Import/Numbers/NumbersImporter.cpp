#include "SorvaneCore/Import/Numbers/NumbersImporter.h"

#include <system_error>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/Archive/ZipArchiveReader.h"
#include "SorvaneCore/Import/Archive/ZipError.h"
#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Import/Numbers/NumbersImportError.h"

namespace sorvane {

namespace {

/// The script would take other bytes for text and make a table of them.
void requireArchive(std::string_view bytes) {
    try {
        ZipArchiveReader::centralDirectoryEntries(bytes);
    } catch (const ZipError& error) {
        if (error.kind() == ZipError::Kind::notAZipFile) {
            throw NumbersImportError::cannotParse("it is no archive, as Numbers documents are");
        }
    }
}

std::string why(const ChildProcessResult& result) {
    switch (result.end) {
        case ChildProcessResult::End::stopped:
            return "it takes more time or memory than a table should";
        case ChildProcessResult::End::exited:
            return UnicodeText::repaired(result.output);
        case ChildProcessResult::End::crashed:
        case ChildProcessResult::End::notStarted:
            break;
    }
    return "the converter broke off";
}

}  // namespace

std::string NumbersImporter::convertToCSV(std::string_view bytes) const {
    requireArchive(bytes);
    std::error_code missing;
    if (!std::filesystem::exists(converter.program, missing) ||
        !std::filesystem::exists(converter.script, missing)) {
        throw NumbersImportError::converterUnavailable();
    }
    ChildProcessResult result =
        runChildProcess({converter.program.string(), converter.script.string()}, bytes, limits);
    using End = ChildProcessResult::End;
    if (result.end == End::notStarted ||
        (result.end == End::exited && result.exitStatus == NumbersConverterStatus::unavailable)) {
        throw NumbersImportError::converterUnavailable();
    }
    if (result.end != End::exited || result.exitStatus != NumbersConverterStatus::converted) {
        throw NumbersImportError::cannotParse(why(result));
    }
    return std::move(result.output);
}

ImportedDataset NumbersImporter::importNumbers(const std::filesystem::path& file) const {
    const std::string text = convertToCSV(FileBytes::read(file).view());
    if (UnicodeText::trimmed(text).empty()) {
        throw NumbersImportError::emptyDocument();
    }
    return csvImporter.importCSV(fileName(file), text);
}

}  // namespace sorvane
