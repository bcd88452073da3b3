#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace sorvane {

/// A folder of files that stands in memory only.
class UnpackedFolder {
public:
    /// Why a file could not be placed.
    enum class Refusal { pathTooLong, folderInTheWay, fileInTheWay };

    /// Places a file, in the place of an earlier one of the same path.
    ///
    /// Input      `path` clean: relative, no empty piece, no "." and no ".."
    /// Failure    longer than file systems allow, a folder of that path, a file where a folder
    ///            would have to be -> the reason
    std::optional<Refusal> place(const std::string& path, std::string bytes);

    /// The bytes of a file; null when there is none.
    const std::string* file(std::string_view path) const;

private:
    std::map<std::string, std::string, std::less<>> files_;
};

/// A path without empty and "." pieces, ".." taken back; absent when it leads out of its folder.
/// The folder itself is the empty path.
std::optional<std::string> standardizedPath(std::string_view path);

}  // namespace sorvane
