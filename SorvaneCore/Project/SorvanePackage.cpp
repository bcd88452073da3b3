#include "SorvaneCore/Project/SorvanePackage.h"

#include <array>
#include <system_error>

#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneCore/Project/WholeFile.h"

namespace sorvane::SorvanePackageLayout {

namespace {

constexpr std::array<std::string_view, 4> folders = {"dataset", "analyses", "method_files",
                                                     "reports"};
constexpr std::string_view manifestFile = "project.json";
/// The other files, and what they hold while there is nothing in them.
constexpr std::array<std::pair<std::string_view, std::string_view>, 3> emptyFiles = {
    {{"variable_map.json", "{}"}, {"construct_map.json", "{}"}, {"audit_log.json", "[]"}}};

std::optional<std::string> writeText(const std::filesystem::path& file, std::string_view text) {
    return replaceFile(file, [text](const TakeBytes& take) { take(text); });
}

}  // namespace

const std::vector<std::string>& requiredEntries() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all(folders.begin(), folders.end());
        all.emplace_back(manifestFile);
        for (const auto& [name, empty] : emptyFiles) {
            all.emplace_back(name);
        }
        return all;
    }();
    return names;
}

std::optional<std::string> createFolderPackage(const std::filesystem::path& at,
                                               const SorvaneProjectManifest& manifest) {
    for (const std::string_view folder : folders) {
        std::error_code failure;
        std::filesystem::create_directories(at / folder, failure);
        if (failure) {
            return failure.message();
        }
    }
    const nlohmann::json sorted = toJson(manifest);
    const std::string text = sorted.dump(2, ' ', false, Json::error_handler_t::replace);
    std::optional<std::string> failure = writeText(at / manifestFile, text);
    for (const auto& [name, empty] : emptyFiles) {
        if (!failure) {
            failure = writeText(at / name, empty);
        }
    }
    return failure;
}

}  // namespace sorvane::SorvanePackageLayout
