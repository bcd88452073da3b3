#include "SorvaneCore/Import/StatPackageImportError.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

StatPackageImportError StatPackageImportError::svmmHasNoData(std::string_view why) {
    return {Kind::svmmHasNoData, std::string(why)};
}

StatPackageImportError StatPackageImportError::noDataRows(std::int64_t columnCount) {
    return {Kind::noDataRows,
            "The file has " + NumberText::integer(columnCount) + " variables but no data rows."};
}

StatPackageImportError StatPackageImportError::unreadableSPSS() {
    return {Kind::unreadableSPSS,
            "This .sav file could not be read. Re-export it from SPSS as a standard system file, "
            "then import it again."};
}

StatPackageImportError StatPackageImportError::unreadableStata() {
    return {Kind::unreadableStata,
            "This .dta file could not be read. Sorvane Brisel reads Stata 13 and newer (releases "
            "117 and 118). Re-save it from a recent Stata, then import it again."};
}

StatPackageImportError StatPackageImportError::unreadableSvmm() {
    return {Kind::unreadableSvmm,
            "This .svmm file could not be read as a Sorvane Fenlow Studio survey package."};
}

StatPackageImportError StatPackageImportError::unreadableSvmmField() {
    return {Kind::unreadableSvmmField,
            "This .svmmfield file could not be read as a Sorvane Fenlow Studio field-study "
            "package."};
}

}  // namespace sorvane
