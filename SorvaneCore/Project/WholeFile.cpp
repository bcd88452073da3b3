#include "SorvaneCore/Project/WholeFile.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "SorvaneCore/Dataset/Uuid.h"

namespace sorvane {

namespace {

constexpr std::string_view namePrefix = ".sorvane-";
constexpr std::chrono::hours abandonedAfter{24};
constexpr mode_t newFileMode = 0666;
constexpr mode_t permissionBits = 07777;
constexpr mode_t writeBits = S_IWUSR | S_IWGRP | S_IWOTH;

std::string systemMessage(int error) {
    return std::generic_category().message(error);
}

/// A new file that is to take another's place; gone again unless it has.
class Replacement {
public:
    explicit Replacement(const std::filesystem::path& folder)
        : path_(folder / (std::string(namePrefix) + Uuid::fresh().text())),
          descriptor_(open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, newFileMode)) {
        error_ = descriptor_ < 0 ? errno : 0;
    }
    ~Replacement() {
        if (descriptor_ >= 0) {
            close(descriptor_);
            unlink(path_.c_str());
        }
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// 0, or the number of the first error; after one nothing more is done.
    int error() const { return error_; }

    void write(std::string_view bytes) {
        while (error_ == 0 && !bytes.empty()) {
            const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
            if (written < 0 && errno != EINTR) {
                error_ = errno;
            }
            bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
        }
    }
    void takePermissions(mode_t mode) {
        note(error_ == 0 ? fchmod(descriptor_, mode & permissionBits) : 0);
    }
    void takePlaceOf(const std::filesystem::path& target) {
        note(error_ == 0 ? fsync(descriptor_) : 0);
        note(error_ == 0 ? rename(path_.c_str(), target.c_str()) : 0);
        if (error_ == 0) {
            close(descriptor_);
            descriptor_ = -1;
        }
    }

private:
    void note(int outcome) {
        if (outcome != 0) {
            error_ = errno;
        }
    }

    std::filesystem::path path_;
    int descriptor_;
    int error_ = 0;
};

/// A link is followed, so that the file it names is replaced, or made, and not the link.
std::filesystem::path linkTarget(const std::filesystem::path& file, std::error_code& failure) {
    std::error_code noLink;
    if (!std::filesystem::is_symlink(file, noLink)) {
        return file;
    }
    const std::filesystem::path target = std::filesystem::canonical(file, failure);
    if (failure == std::errc::no_such_file_or_directory) {
        return file.parent_path() / std::filesystem::read_symlink(file, failure);
    }
    return target;
}

/// The number of the error that replacing what stands there would be; 0 where it may be replaced.
int whyNotReplaceable(const std::filesystem::path& target, mode_t mode) {
    if (!S_ISREG(mode)) {
        return S_ISDIR(mode) ? EISDIR : ENOTSUP;
    }
    if ((mode & writeBits) == 0) {
        return EACCES;
    }
    return access(target.c_str(), W_OK) == 0 ? 0 : errno;
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
    return replaceFile(file, [bytes](const TakeBytes& take) {
        take({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    });
}

std::optional<std::string> replaceFile(const std::filesystem::path& file,
                                       const std::function<void(const TakeBytes&)>& produce) {
    std::error_code failure;
    const std::filesystem::path target = linkTarget(file, failure);
    if (failure) {
        return failure.message();
    }
    struct stat former {};
    const bool replaces = stat(target.c_str(), &former) == 0;
    if (const int error = replaces ? whyNotReplaceable(target, former.st_mode) : 0) {
        return systemMessage(error);
    }
    const std::filesystem::path folder =
        target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
    Replacement replacement(folder);
    if (replaces) {
        replacement.takePermissions(former.st_mode);
    }
    if (replacement.error() == 0) {
        produce([&replacement](std::string_view bytes) { replacement.write(bytes); });
        replacement.takePlaceOf(target);
    }
    if (replacement.error() != 0) {
        return systemMessage(replacement.error());
    }
    flushFolder(folder);
    return std::nullopt;
}

void removeAbandonedReplacements(const std::filesystem::path& folder) {
    std::error_code failure;
    const auto youngest = std::filesystem::file_time_type::clock::now() - abandonedAfter;
    for (std::filesystem::directory_iterator each(folder, failure), end; each != end;
         each.increment(failure)) {
        const bool isReplacement = each->path().filename().string().starts_with(namePrefix) &&
                                   each->is_regular_file(failure);
        if (isReplacement && each->last_write_time(failure) < youngest) {
            std::filesystem::remove(each->path(), failure);
        }
    }
}

}  // namespace sorvane
