#include "tests/support/LineProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

namespace supportsdk::test {

LineProcess::LineProcess(std::vector<std::string> arguments, const std::filesystem::path& errors) {
    std::signal(SIGPIPE, SIG_IGN);
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0) return;
    const int log = errors.empty()
                        ? fcntl(out[1], F_DUPFD_CLOEXEC, 0)
                        : open(errors.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    std::vector<char*> values;
    for (auto& argument : arguments) values.push_back(argument.data());
    values.push_back(nullptr);
    const pid_t parent = getpid();

    pid_ = fork();
    if (pid_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) _exit(127);
        dup2(in[0], STDIN_FILENO);
        dup2(out[1], STDOUT_FILENO);
        dup2(log, STDERR_FILENO);
        execvp(values[0], values.data());
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    close(log);
    input_ = in[1];
    output_ = out[0];
}

LineProcess::~LineProcess() {
    closeInput();
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    if (output_ >= 0) close(output_);
}

std::optional<std::string> LineProcess::readLine(std::chrono::milliseconds limit) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + limit;
    while (true) {
        if (const auto end = buffer_.find('\n', searched_); end != std::string::npos) {
            auto line = buffer_.substr(taken_, end - taken_);
            taken_ = searched_ = end + 1;
            return line;
        }
        // Only now: thousands of lines may have come at once.
        buffer_.erase(0, std::exchange(taken_, 0));
        searched_ = buffer_.size();
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd source{output_, POLLIN, 0};
        if (left.count() <= 0 || poll(&source, 1, static_cast<int>(left.count())) == 0)
            return std::nullopt;
        std::array<char, 65536> bytes{};
        const auto count = read(output_, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return std::nullopt;
        buffer_.append(bytes.data(), static_cast<std::size_t>(count));
    }
}

bool LineProcess::awaitLine(const std::string& part) {
    while (const auto line = readLine()) {
        if (line->find(part) != std::string::npos) return true;
    }
    return false;
}

bool LineProcess::write(std::string_view text) const {
    while (!text.empty()) {
        const auto written = ::write(input_, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

void LineProcess::closeInput() {
    if (input_ >= 0) close(std::exchange(input_, -1));
}

void LineProcess::signal(int number) const {
    if (pid_ > 0) kill(pid_, number);
}

std::optional<int> LineProcess::waitForEnd(std::chrono::milliseconds limit) {
    int status = 0;
    if (pid_ <= 0 || !processEnds(pid_, limit) || waitpid(pid_, &status, 0) != pid_)
        return std::nullopt;
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

bool processEnds(pid_t pid, std::chrono::milliseconds limit) {
    const int handle = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    if (handle < 0) return errno == ESRCH;
    pollfd end{handle, POLLIN, 0};
    const bool ended = poll(&end, 1, static_cast<int>(limit.count())) == 1;
    close(handle);
    return ended;
}

}  // namespace supportsdk::test
