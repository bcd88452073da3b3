#include "SorvaneCore/Import/Archive/ZipError.h"

namespace sorvane {

ZipError ZipError::corruptArchive(std::string_view what) {
    return {Kind::corruptArchive, "The archive is damaged. " + std::string(what)};
}

ZipError ZipError::unsupported(std::string_view what) {
    return {Kind::unsupported, "The archive uses an unsupported feature. " + std::string(what)};
}

ZipError ZipError::notAZipFile() {
    return {Kind::notAZipFile, "The file is not a ZIP archive."};
}

}  // namespace sorvane
