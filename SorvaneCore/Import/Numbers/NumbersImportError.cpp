#include "SorvaneCore/Import/Numbers/NumbersImportError.h"

namespace sorvane {

NumbersImportError NumbersImportError::cannotParse(std::string_view why) {
    return {Kind::cannotParse,
            "This Numbers file could not be read (" + std::string(why) +
                "). Export it as CSV or Excel from Numbers and import that instead."};
}

NumbersImportError NumbersImportError::converterUnavailable() {
    return {Kind::converterUnavailable,
            "The Numbers converter could not start. Export the file as CSV or Excel from Numbers "
            "and import that instead."};
}

NumbersImportError NumbersImportError::emptyDocument() {
    return {Kind::emptyDocument,
            "The Numbers file has no table data. Check that the first sheet contains a table with "
            "your data."};
}

}  // namespace sorvane
