#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace sorvane {

/// The bytes of a whole file.
class FileBytes {
public:
    /// Reads the file.
    ///
    /// Failure    not there, a folder, no permission, a read error -> FileReadError
    static FileBytes read(const std::filesystem::path& path);

    std::string_view view() const { return {bytes_.get(), size_}; }

private:
    std::unique_ptr<char[]> bytes_;
    std::size_t size_ = 0;
};

/// The last component of a path, extension included.
std::string fileName(const std::filesystem::path& path);

/// The lower-cased extension without its point; empty when there is none ("data", "data.").
std::string lowerCasedExtension(const std::filesystem::path& path);

}  // namespace sorvane
