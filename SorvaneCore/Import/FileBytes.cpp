#include "SorvaneCore/Import/FileBytes.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <span>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/ImportError.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane {

namespace {

constexpr std::size_t bytesPerPart = std::size_t{8} << 20;

[[noreturn]] void fail(int error, const std::filesystem::path& path) {
    using Kind = FileReadError::Kind;
    const Kind kind = error == ENOENT || error == ENOTDIR ? Kind::notFound
                      : error == EISDIR                   ? Kind::directory
                      : error == EACCES || error == EPERM ? Kind::noPermission
                                                          : Kind::unreadable;
    throw FileReadError(kind, fileName(path));
}

/// An open file, closed at the end of the scope.
class OpenFile {
public:
    explicit OpenFile(const std::filesystem::path& path)
        : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)), path_(path) {
        if (descriptor_ < 0) {
            fail(errno, path);
        }
    }
    ~OpenFile() { close(descriptor_); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    /// The size of a regular file; anything else is no data file.
    std::size_t size() const {
        struct stat status = {};
        if (fstat(descriptor_, &status) != 0) {
            fail(errno, path_);
        }
        if (!S_ISREG(status.st_mode)) {
            fail(S_ISDIR(status.st_mode) ? EISDIR : EINVAL, path_);
        }
        return static_cast<std::size_t>(status.st_size);
    }

    /// Fills `bytes` from the place `begin` of the file on, as far as the file goes; says how far.
    std::size_t read(std::span<char> bytes, std::size_t begin) const {
        std::size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t got = pread(descriptor_, bytes.data() + done, bytes.size() - done,
                                      static_cast<off_t>(begin + done));
            if (got < 0 && errno != EINTR) {
                fail(errno, path_);
            }
            if (got == 0) {
                break;
            }
            done += static_cast<std::size_t>(std::max<ssize_t>(got, 0));
        }
        return done;
    }

private:
    int descriptor_;
    const std::filesystem::path& path_;
};

/// Asks for pages that come faster, and are found faster when the columns of rows are read in turn.
/// Only whole pages inside the bytes can be large; without any the bytes are as good.
void askForLargePages(std::span<char> bytes) {
    constexpr std::size_t pageSize = std::size_t{2} << 20;
    const std::size_t before = reinterpret_cast<std::uintptr_t>(bytes.data()) % pageSize;
    const std::size_t begin = before == 0 ? 0 : pageSize - before;
    if (bytes.size() >= begin + pageSize) {
        const std::size_t length = (bytes.size() - begin) / pageSize * pageSize;
        madvise(bytes.data() + begin, length, MADV_HUGEPAGE);
    }
}

}  // namespace

FileBytes FileBytes::read(const std::filesystem::path& path) {
    const OpenFile file(path);
    const std::size_t size = file.size();
    FileBytes result;
    result.bytes_ = std::make_unique_for_overwrite<char[]>(size);
    askForLargePages({result.bytes_.get(), size});
    // The time goes into fresh pages more than into the disk, so that parts are read at once.
    const std::size_t parts = size / bytesPerPart + 1;
    std::vector<std::size_t> lengths(parts, 0);
    parallelFor(parts, hardwareThreads(), [&](std::size_t part) {
        const std::size_t begin = part * bytesPerPart;
        const std::size_t length = std::min(bytesPerPart, size - begin);
        lengths[part] = file.read({result.bytes_.get() + begin, length}, begin);
    });
    // A file that shrinks meanwhile ends where its first short part ends.
    for (std::size_t part = 0; part < parts && result.size_ == part * bytesPerPart; ++part) {
        result.size_ += lengths[part];
    }
    return result;
}

std::string fileName(const std::filesystem::path& path) {
    const std::filesystem::path name = path.filename();
    return name.empty() ? path.parent_path().filename().string() : name.string();
}

std::string lowerCasedExtension(const std::filesystem::path& path) {
    const std::string extension = std::filesystem::path(fileName(path)).extension().string();
    return extension.empty() ? extension : UnicodeText::lowerCased(extension.substr(1));
}

}  // namespace sorvane
