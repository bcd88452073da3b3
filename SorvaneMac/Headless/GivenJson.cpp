#include "SorvaneMac/Headless/GivenJson.h"

#include <cstdint>
#include <nlohmann/json.hpp>

#include "SorvaneCore/Import/FileBytes.h"
#include "SorvaneCore/Import/ImportError.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::GivenJson {

Json of(std::string_view text, const std::string& what) {
    // Copies of a value descend into it, each level on the stack.
    constexpr int mostLevels = 200;
    if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) {
        return Json::object();
    }
    const auto takesLevel = [&what](int level, Json::parse_event_t, Json&) {
        if (level > mostLevels) {
            throw GivenJsonError("Lists and objects of the " + what + " nest more than " +
                                 NumberText::integer(mostLevels) + " levels deep.");
        }
        return true;
    };
    try {
        return Json::parse(text, takesLevel);
    } catch (const Json::parse_error& error) {
        throw GivenJsonError("The " + what + " cannot be read as JSON from byte " +
                             NumberText::integer(static_cast<std::int64_t>(error.byte)) + " on.");
    } catch (const Json::exception&) {
        throw GivenJsonError("A number of the " + what + " is beyond all doubles.");
    }
}

Json ofFile(const std::filesystem::path& file, const std::string& what) {
    try {
        return of(FileBytes::read(file).view(), what);
    } catch (const FileReadError&) {
        throw GivenJsonError("The file of the " + what + ", " + file.string() +
                             ", cannot be read.");
    }
}

}  // namespace sorvane::GivenJson
