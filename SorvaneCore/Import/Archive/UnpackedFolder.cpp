#include "SorvaneCore/Import/Archive/UnpackedFolder.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace sorvane {

namespace {

// What common file systems take; longer names would only serve to take up time.
constexpr std::size_t longestPath = 1024;
constexpr std::size_t longestPiece = 255;

bool isTooLong(std::string_view path) {
    if (path.size() > longestPath) {
        return true;
    }
    std::size_t begin = 0;
    while (begin <= path.size()) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        if (end - begin > longestPiece) {
            return true;
        }
        begin = end + 1;
    }
    return false;
}

}  // namespace

std::optional<UnpackedFolder::Refusal> UnpackedFolder::place(const std::string& path,
                                                             std::string bytes) {
    if (isTooLong(path)) {
        return Refusal::pathTooLong;
    }
    const auto below = files_.lower_bound(path + "/");
    if (below != files_.end() && below->first.starts_with(path + "/")) {
        return Refusal::folderInTheWay;
    }
    for (std::size_t slash = path.find('/'); slash != path.npos;
         slash = path.find('/', slash + 1)) {
        if (files_.contains(std::string_view(path).substr(0, slash))) {
            return Refusal::fileInTheWay;
        }
    }
    files_[path] = std::move(bytes);
    return std::nullopt;
}

const std::string* UnpackedFolder::file(std::string_view path) const {
    const auto found = files_.find(path);
    return found == files_.end() ? nullptr : &found->second;
}

std::optional<std::string> standardizedPath(std::string_view path) {
    std::vector<std::string_view> pieces;
    std::size_t begin = 0;
    while (begin < path.size()) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const std::string_view piece = path.substr(begin, end - begin);
        if (piece == "..") {
            if (pieces.empty()) {
                return std::nullopt;
            }
            pieces.pop_back();
        } else if (!piece.empty() && piece != ".") {
            pieces.push_back(piece);
        }
        begin = end + 1;
    }
    std::string result;
    for (const std::string_view piece : pieces) {
        result.append(result.empty() ? "" : "/").append(piece);
    }
    return result;
}

}  // namespace sorvane
