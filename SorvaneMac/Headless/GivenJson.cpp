#include "SorvaneMac/Headless/GivenJson.h"

#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

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
    std::vector<std::set<std::string>> names;
    const auto watches = [&](int level, Json::parse_event_t event, Json& parsed) {
        const bool opens =
            event == Json::parse_event_t::object_start || event == Json::parse_event_t::array_start;
        if (opens && level >= mostLevels) {
            throw GivenJsonError("Lists and objects of the " + what + " nest more than " +
                                 NumberText::integer(mostLevels) + " levels deep.");
        }
        const auto depth = static_cast<std::size_t>(level);
        names.resize(std::max(names.size(), depth + 2));
        if (event == Json::parse_event_t::object_start) {
            names[depth + 1].clear();
        } else if (event == Json::parse_event_t::key &&
                   !names[depth].insert(parsed.get<std::string>()).second) {
            throw GivenJsonError("The name " + parsed.dump() +
                                 " stands twice in one object of the " + what +
                                 ". Leave one of them out.");
        }
        return true;
    };
    try {
        return Json::parse(text, watches);
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
