#include "SorvaneCore/Import/Numbers/ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "SorvaneCore/Numerics/NumberText.h"

extern "C" char** environ;  // NOLINT(readability-redundant-declaration)

namespace sorvane {

namespace {

/// How often the limits are looked at.
constexpr int millisecondsBetweenChecks = 50;

/// A descriptor, closed at the end of the scope.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return number_; }
    void reset() {
        if (number_ >= 0) {
            close(number_);
        }
        number_ = -1;
    }

private:
    int number_;
};

class FileActions {
public:
    explicit FileActions(int stream) {
        posix_spawn_file_actions_init(&actions_);
        posix_spawn_file_actions_adddup2(&actions_, stream, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, stream, STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_;
};

/// The process of a program whose standard input and output is `stream`.
std::optional<pid_t> spawned(const std::vector<std::string>& command, int stream) {
    std::vector<char*> arguments;
    std::vector<std::string> words = command;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const FileActions actions(stream);
    pid_t process = 0;
    const int error =
        posix_spawn(&process, arguments[0], actions.get(), nullptr, arguments.data(), environ);
    return error == 0 ? std::optional(process) : std::nullopt;
}

std::size_t memoryOf(pid_t process) {
    std::ifstream status("/proc/" + NumberText::integer(process) + "/statm");
    std::string pages;
    std::string residentPages;
    std::getline(status, pages, ' ');
    std::getline(status, residentPages, ' ');
    return static_cast<std::size_t>(NumberText::parse(residentPages).value_or(0)) *
           static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

/// Talks to a process through its stream until that ends or a limit is reached.
class Conversation {
public:
    Conversation(pid_t process, int stream, std::string_view input)
        : process_(process), stream_(stream), input_(input) {}

    /// Whether the process kept to the limits.
    bool run(const ChildProcessLimits& limits) {
        const auto deadline = std::chrono::steady_clock::now() + limits.time;
        while (exchange()) {
            if (std::chrono::steady_clock::now() > deadline || memoryOf(process_) > limits.memory ||
                output_.size() > limits.output) {
                return false;
            }
        }
        return true;
    }
    std::string takeOutput() { return std::move(output_); }

private:
    /// Sends and receives what can be at once; false at the end of the output.
    bool exchange() {
        const auto events = static_cast<short>(POLLIN | (input_.empty() ? 0 : POLLOUT));
        pollfd waiting{.fd = stream_, .events = events, .revents = 0};
        poll(&waiting, 1, millisecondsBetweenChecks);
        if ((waiting.revents & POLLOUT) != 0) {
            send();
        }
        return (waiting.revents & (POLLIN | POLLHUP | POLLERR)) == 0 || receive();
    }

    void send() {
        const ssize_t sent =
            ::send(stream_, input_.data(), input_.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent > 0) {
            input_.remove_prefix(static_cast<std::size_t>(sent));
        } else if (errno != EAGAIN && errno != EINTR) {
            input_ = {};
        }
        if (input_.empty()) {
            shutdown(stream_, SHUT_WR);
        }
    }

    bool receive() {
        std::array<char, 65536> buffer;
        const ssize_t got = recv(stream_, buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (got > 0) {
            output_.append(buffer.data(), static_cast<std::size_t>(got));
        }
        return got > 0 || (got < 0 && (errno == EAGAIN || errno == EINTR));
    }

    pid_t process_;
    int stream_;
    std::string_view input_;
    std::string output_;
};

}  // namespace

ChildProcessResult runChildProcess(const std::vector<std::string>& command,
                                   std::string_view input,
                                   const ChildProcessLimits& limits) {
    std::array<int, 2> ends = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return {};
    }
    const Descriptor ours(ends[0]);
    Descriptor theirs(ends[1]);
    const std::optional<pid_t> process = spawned(command, theirs.number());
    theirs.reset();
    if (!process) {
        return {};
    }
    Conversation conversation(*process, ours.number(), input);
    const bool keptLimits = conversation.run(limits);
    // What has closed its output but goes on has nothing more to say.
    kill(*process, keptLimits ? SIGTERM : SIGKILL);
    int status = 0;
    while (waitpid(*process, &status, 0) < 0 && errno == EINTR) {
    }
    using End = ChildProcessResult::End;
    const End end = !keptLimits ? End::stopped : WIFEXITED(status) ? End::exited : End::crashed;
    return {.end = end,
            .exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 0,
            .output = conversation.takeOutput()};
}

}  // namespace sorvane
