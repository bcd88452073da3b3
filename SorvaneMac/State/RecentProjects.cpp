#include <system_error>

#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/State/RecentFiles.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

namespace {

constexpr std::string_view pathsKey = "sv.recentProjects";
constexpr std::string_view bookmarksKey = "sv.recentProjectBookmarks";

/// Path to bookmark.
using Bookmarks = std::map<std::string, std::vector<std::uint8_t>>;

Bookmarks keptBookmarks(const UserDefaults& defaults) {
    try {
        return fromJson<Bookmarks>(defaults.value(bookmarksKey));
    } catch (const RecordJsonError&) {
        return {};
    }
}

/// What leads back to a file whatever becomes of links on the way: its path without any.
std::vector<std::uint8_t> bookmark(const std::filesystem::path& file) {
    std::error_code failure;
    const std::string place = std::filesystem::weakly_canonical(file, failure).string();
    return {place.begin(), place.end()};
}

}  // namespace

void StudioState::rememberRecentProject(const std::filesystem::path& file) {
    const std::vector<std::string> paths = RecentFiles::remember(*defaults_, pathsKey, file);
    const Bookmarks former = keptBookmarks(*defaults_);
    Bookmarks bookmarks;
    for (const std::string& path : paths) {
        const auto known = former.find(path);
        if (known != former.end()) {
            bookmarks.insert(*known);
        }
    }
    bookmarks.insert_or_assign(paths.front(), bookmark(file));
    defaults_->set(bookmarksKey, toJson(bookmarks));
}

std::vector<std::filesystem::path> StudioState::recentProjects() const {
    return RecentFiles::existing(*defaults_, pathsKey);
}

}  // namespace sorvane
