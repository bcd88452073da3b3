#include "SorvaneMac/State/RecentFiles.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "SorvaneCore/Project/ToJson.h"

namespace sorvane::RecentFiles {

namespace {

constexpr std::size_t mostKept = 8;

/// What was kept may have been edited by hand; what is no list of texts is none.
std::vector<std::string> kept(const UserDefaults& defaults, std::string_view key) {
    try {
        return fromJson<std::vector<std::string>>(defaults.value(key));
    } catch (const RecordJsonError&) {
        return {};
    }
}

}  // namespace

std::vector<std::string> remember(UserDefaults& defaults,
                                  std::string_view key,
                                  const std::filesystem::path& file) {
    std::error_code failure;
    const std::filesystem::path whole = std::filesystem::absolute(file, failure);
    const std::string path = failure ? file.string() : whole.lexically_normal().string();
    std::vector<std::string> paths = kept(defaults, key);
    std::erase(paths, path);
    paths.insert(paths.begin(), path);
    paths.resize(std::min(paths.size(), mostKept));
    defaults.set(key, toJson(paths));
    return paths;
}

std::vector<std::filesystem::path> existing(const UserDefaults& defaults, std::string_view key) {
    std::vector<std::filesystem::path> files;
    for (const std::string& path : kept(defaults, key)) {
        std::error_code failure;
        if (std::filesystem::is_regular_file(path, failure)) {
            files.emplace_back(path);
        }
    }
    return files;
}

}  // namespace sorvane::RecentFiles
