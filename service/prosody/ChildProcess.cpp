#include "service/prosody/ChildProcess.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace supportsdk::service {

namespace {

// Runs between fork and exec in a process that may have had many threads: nothing here may allocate
// or lock.
[[noreturn]] void becomeChild(pid_t parent, char* const* arguments, int output) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The parent may have died before the line above.
    if (getppid() != parent) _exit(126);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    std::signal(SIGPIPE, SIG_DFL);
    const int input = open("/dev/null", O_RDONLY | O_CLOEXEC);
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);
    execvp(arguments[0], arguments);
    _exit(127);
}

}  // namespace

std::unique_ptr<ChildProcess> ChildProcess::start(const Options& options) {
    std::unique_ptr<ChildProcess> child(new ChildProcess);
    // The signal at the parent's death is tied to the thread that forks, so that thread has to live
    // as long as the child: it is the one that waits for it.
    child->parent_ = std::thread([&options, self = child.get()] { self->run(options); });
    std::unique_lock lock(child->mutex_);
    child->changed_.wait(lock, [&] { return child->launched_; });
    if (child->pid_ > 0) return child;
    lock.unlock();
    return nullptr;
}

// `options` belongs to start(), which waits until the fork is over.
void ChildProcess::run(const Options& options) {
    std::vector<char*> arguments;
    for (const auto& argument : options.arguments)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    const int output =
        open(options.outputFile.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const pid_t self = getpid();
    const pid_t pid = output < 0 ? -1 : fork();
    if (pid == 0) becomeChild(self, arguments.data(), output);
    if (output >= 0) close(output);
    {
        const std::lock_guard lock(mutex_);
        pid_ = pid;
        launched_ = true;
        ended_ = pid < 0;
    }
    changed_.notify_all();
    if (pid < 0) return;

    siginfo_t info;
    while (waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT) != 0) {
    }
    {
        // Reaped under the lock, so that signal() never hits a stranger with the same number.
        const std::lock_guard lock(mutex_);
        waitpid(pid, nullptr, 0);
        ended_ = true;
    }
    changed_.notify_all();
}

ChildProcess::~ChildProcess() {
    signal(SIGKILL);
    if (parent_.joinable()) parent_.join();
}

bool ChildProcess::isRunning() const {
    const std::lock_guard lock(mutex_);
    return !ended_;
}

void ChildProcess::signal(int number) {
    const std::lock_guard lock(mutex_);
    if (!ended_) kill(pid_, number);
}

bool ChildProcess::waitForEnd(std::chrono::milliseconds limit) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, limit, [this] { return ended_; });
}

}  // namespace supportsdk::service
