#include "tests/support/JsonLinesProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

namespace supportsdk::test {

namespace {

int remaining(std::chrono::steady_clock::time_point deadline) {
    using std::chrono::milliseconds;
    const auto left =
        std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now()).count();
    return static_cast<int>(std::max<std::int64_t>(left, 0));
}

bool hasFields(const Json& report, const Json& fields) {
    for (const auto& [key, value] : fields.items()) {
        if (report.value(key, Json()) != value) return false;
    }
    return true;
}

}  // namespace

JsonLinesProcess::JsonLinesProcess(const std::filesystem::path& program,
                                   std::vector<std::string> arguments,
                                   const std::filesystem::path& errors)
    : name_(program.filename()) {
    std::signal(SIGPIPE, SIG_IGN);
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0) {
        ADD_FAILURE() << "no pipe";
        return;
    }
    const int log = open(errors.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    arguments.insert(arguments.begin(), program);
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
        execv(values[0], values.data());
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    close(log);
    input_ = in[1];
    output_ = out[0];
}

JsonLinesProcess::~JsonLinesProcess() {
    closeInput();
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    if (output_ >= 0) close(output_);
}

void JsonLinesProcess::sendText(const std::string& text) {
    for (std::string_view rest = text; !rest.empty();) {
        const auto written = write(input_, rest.data(), rest.size());
        if (written < 0 && errno == EINTR) continue;
        ASSERT_GT(written, 0) << name_ << " does not read any more";
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
}

void JsonLinesProcess::closeInput() {
    if (input_ >= 0) close(std::exchange(input_, -1));
}

std::optional<std::string> JsonLinesProcess::readLine(
    std::chrono::steady_clock::time_point deadline) {
    while (true) {
        if (const auto end = buffer_.find('\n', searched_); end != std::string::npos) {
            auto line = buffer_.substr(taken_, end - taken_);
            taken_ = searched_ = end + 1;
            return line;
        }
        // Only now: thousands of lines may have come at once.
        buffer_.erase(0, std::exchange(taken_, 0));
        searched_ = buffer_.size();
        pollfd source{output_, POLLIN, 0};
        if (poll(&source, 1, remaining(deadline)) == 0) return std::nullopt;
        std::array<char, 65536> bytes{};
        const auto count = read(output_, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return std::nullopt;
        buffer_.append(bytes.data(), static_cast<std::size_t>(count));
    }
}

Json JsonLinesProcess::await(const std::string& what, const Wanted& wanted,
                             std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    const auto first = seen.size();
    while (const auto line = readLine(deadline)) {
        auto report = Json::parse(*line, nullptr, false);
        EXPECT_TRUE(report.is_object()) << name_ << " wrote no JSON object: " << *line;
        if (!report.is_object()) continue;
        seen.push_back(report);
        if (wanted(report)) return report;
    }
    std::string meanwhile;
    for (auto i = first; i < seen.size(); ++i) meanwhile += "\n  " + seen[i].dump();
    ADD_FAILURE() << name_ << " never reported: " << what << "; it reported" << meanwhile;
    return Json::object();
}

Json JsonLinesProcess::await(const std::string& is, const Json& fields) {
    return await(is + " " + fields.dump(), [&](const Json& report) {
        return report.value("is", "") == is && hasFields(report, fields);
    });
}

void JsonLinesProcess::signal(int number) const {
    kill(pid_, number);
}

std::optional<int> JsonLinesProcess::waitForEnd(std::chrono::milliseconds limit) {
    const int handle = static_cast<int>(syscall(SYS_pidfd_open, pid_, 0));
    pollfd end{handle, POLLIN, 0};
    const bool hasEnded = poll(&end, 1, static_cast<int>(limit.count())) == 1;
    close(handle);
    if (!hasEnded) {
        ADD_FAILURE() << name_ << " does not end";
        return std::nullopt;
    }
    int status = 0;
    waitpid(std::exchange(pid_, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace supportsdk::test
