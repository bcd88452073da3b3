#include "SorvaneCore/Project/WholeFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "SorvaneCore/Dataset/Uuid.h"

namespace sorvane {

namespace {

constexpr mode_t newFileMode = 0666;
constexpr mode_t permissionBits = 07777;

std::string systemMessage(int error) {
    return std::generic_category().message(error);
}

/// Writes all bytes and flushes them; 0 or the error number.
int writeAll(int descriptor, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    return fsync(descriptor) == 0 ? 0 : errno;
}

/// The folder's own entry of the new name is flushed too, so that it outlives a power cut.
void flushFolder(const std::filesystem::path& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
}

}  // namespace

std::optional<std::string> replaceFile(const std::filesystem::path& file,
                                       std::span<const std::uint8_t> bytes) {
    std::error_code failure;
    // A link is followed, so that the file it names is replaced and not the link.
    const std::filesystem::path target = std::filesystem::is_symlink(file, failure)
                                             ? std::filesystem::canonical(file, failure)
                                             : file;
    if (failure && failure.value() != ENOENT) {
        return failure.message();
    }
    struct stat former {};
    const bool replaces = stat(target.c_str(), &former) == 0;
    if (replaces && access(target.c_str(), W_OK) != 0) {
        return systemMessage(errno);
    }
    const std::filesystem::path folder =
        target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
    const std::filesystem::path beside = folder / (".sorvane-" + Uuid::fresh().text());
    const int descriptor =
        open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, newFileMode);
    if (descriptor < 0) {
        return systemMessage(errno);
    }
    int error = writeAll(descriptor, bytes);
    if (error == 0 && replaces && fchmod(descriptor, former.st_mode & permissionBits) != 0) {
        error = errno;
    }
    if (close(descriptor) != 0 && error == 0) {
        error = errno;
    }
    if (error == 0 && rename(beside.c_str(), target.c_str()) != 0) {
        error = errno;
    }
    if (error != 0) {
        unlink(beside.c_str());
        return systemMessage(error);
    }
    flushFolder(folder);
    return std::nullopt;
}

}  // namespace sorvane
