#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "SorvaneCore/Project/JsonStream.h"

namespace sorvane {

namespace {

[[noreturn]] void fail(int error) {
    throw std::system_error(error, std::generic_category());
}

/// A regular file, open for reading.
class OpenFile {
public:
    // Without O_NONBLOCK a pipe would be waited for.
    explicit OpenFile(const std::filesystem::path& file)
        : descriptor_(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
        if (descriptor_ < 0) {
            fail(errno);
        }
    }
    ~OpenFile() { close(descriptor_); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    std::size_t size() const {
        struct stat status {};
        if (fstat(descriptor_, &status) != 0) {
            fail(errno);
        }
        if (!S_ISREG(status.st_mode)) {
            fail(S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
        }
        return static_cast<std::size_t>(status.st_size);
    }
    std::size_t read(std::size_t place, std::span<char> into) const {
        std::size_t done = 0;
        while (done < into.size()) {
            const ssize_t got = pread(descriptor_, into.data() + done, into.size() - done,
                                      static_cast<off_t>(place + done));
            if (got < 0 && errno != EINTR) {
                fail(errno);
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
};

}  // namespace

JsonSource JsonSource::of(std::string_view bytes) {
    return {.size = bytes.size(), .read = [bytes](std::size_t place, std::span<char> into) {
                const std::string_view rest = bytes.substr(std::min(place, bytes.size()));
                return rest.copy(into.data(), into.size());
            }};
}

JsonSource JsonSource::of(const std::filesystem::path& file) {
    const auto opened = std::make_shared<const OpenFile>(file);
    return {.size = opened->size(), .read = [opened](std::size_t place, std::span<char> into) {
                return opened->read(place, into);
            }};
}

}  // namespace sorvane
