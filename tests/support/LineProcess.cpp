#include "tests/support/LineProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace supportsdk::test {

LineProcess::LineProcess(std::vector<std::string> arguments) {
    std::array<int, 2> out{};
    if (pipe2(out.data(), O_CLOEXEC) != 0) return;
    std::vector<char*> values;
    for (auto& argument : arguments) values.push_back(argument.data());
    values.push_back(nullptr);
    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) _exit(127);
        dup2(out[1], STDOUT_FILENO);
        dup2(out[1], STDERR_FILENO);
        execvp(values[0], values.data());
        _exit(127);
    }
    close(out[1]);
    output_ = out[0];
}

LineProcess::~LineProcess() {
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
        if (const auto end = buffer_.find('\n'); end != std::string::npos) {
            auto line = buffer_.substr(0, end);
            buffer_.erase(0, end + 1);
            return line;
        }
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd source{output_, POLLIN, 0};
        if (left <= 0 || poll(&source, 1, static_cast<int>(left)) <= 0) return std::nullopt;
        std::array<char, 4096> bytes{};
        const auto count = read(output_, bytes.data(), bytes.size());
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

int LineProcess::waitForEnd() {
    while (readLine()) continue;
    int status = 0;
    if (waitpid(pid_, &status, 0) != pid_ || !WIFEXITED(status)) return -1;
    pid_ = -1;
    return WEXITSTATUS(status);
}

}  // namespace supportsdk::test
