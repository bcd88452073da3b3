#include "SorvaneCore/Project/MethodFile.h"

#include <algorithm>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane {

namespace {

constexpr std::size_t shownIdentifier = 8;

}  // namespace

std::string MethodFile::defaultFilename() const {
    std::string name = UnicodeText::lowerCased(analysisType);
    std::replace_if(
        name.begin(), name.end(), [](char each) { return each == ' ' || each == '/'; }, '_');
    return name + "_" + id.text().substr(0, shownIdentifier) + ".svmethod";
}

}  // namespace sorvane
