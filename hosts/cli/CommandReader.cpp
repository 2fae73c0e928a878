#include "hosts/cli/CommandReader.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

namespace supportsdk::host {

namespace {

int endingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

/// Cuts a stream of bytes into lines of bounded length.
class LineCutter {
 public:
    /// Where the next line begins: its text, or nothing when it is too long. False when no whole
    /// line is there.
    bool take(std::optional<std::string>& line) {
        const auto end = buffer_.find('\n');
        if (end == std::string::npos) {
            if (buffer_.size() <= CommandReader::maximumLineBytes) return false;
            isTooLong_ = true;
            buffer_.clear();
            return false;
        }
        const bool isWhole = !isTooLong_ && end <= CommandReader::maximumLineBytes;
        line = isWhole ? std::optional(buffer_.substr(0, end)) : std::nullopt;
        buffer_.erase(0, end + 1);
        isTooLong_ = false;
        return true;
    }

    void add(const char* bytes, std::size_t count) { buffer_.append(bytes, count); }

    /// A last line without an end counts too.
    void finish() {
        if (!buffer_.empty() || isTooLong_) buffer_ += '\n';
    }

 private:
    std::string buffer_;
    bool isTooLong_ = false;
};

}  // namespace

struct CommandReader::Shared {
    int input = -1;
    int wake = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    int signals = endingSignals();
    std::atomic<bool> isWanted{false};
    std::atomic<bool> isStopped{false};
    std::shared_ptr<MainQueue> queue;
    Handlers handlers;

    ~Shared() {
        close(wake);
        close(signals);
    }
};

class CommandReader::Thread {
 public:
    explicit Thread(std::shared_ptr<Shared> shared) : shared_(std::move(shared)) {}

    void run() {
        while (!shared_->isStopped) {
            if (shared_->isWanted && handOver()) continue;
            if (hasEnded_ && shared_->isWanted) break;
            if (!wait()) break;
        }
        post([](Handlers& handlers) { handlers.ended(); });
    }

 private:
    bool handOver() {
        std::optional<std::string> line;
        if (!lines_.take(line)) return false;
        shared_->isWanted = false;
        post([line = std::move(line)](Handlers& handlers) { handlers.line(line); });
        return true;
    }

    /// False when a signal asks for the end.
    bool wait() {
        const bool reads = shared_->isWanted && !hasEnded_;
        std::array<pollfd, 3> sources{{{shared_->signals, POLLIN, 0},
                                       {shared_->wake, POLLIN, 0},
                                       {reads ? shared_->input : -1, POLLIN, 0}}};
        if (poll(sources.data(), sources.size(), -1) < 0) return errno == EINTR;
        if (sources[0].revents != 0) return false;
        if (sources[1].revents != 0) {
            eventfd_t count = 0;
            eventfd_read(shared_->wake, &count);
        }
        if (sources[2].revents != 0) readSome();
        return true;
    }

    void readSome() {
        std::array<char, 16384> bytes{};
        const auto count = read(shared_->input, bytes.data(), bytes.size());
        if (count > 0) {
            lines_.add(bytes.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
            lines_.finish();
            hasEnded_ = true;
        }
    }

    template <typename Work>
    void post(Work work) {
        // Weakly: work that is never run must not keep the queue alive that it waits in.
        shared_->queue->post([weak = std::weak_ptr(shared_), work = std::move(work)]() mutable {
            const auto shared = weak.lock();
            if (shared && !shared->isStopped) work(shared->handlers);
        });
    }

    std::shared_ptr<Shared> shared_;
    LineCutter lines_;
    bool hasEnded_ = false;
};

CommandReader::CommandReader(int descriptor, std::shared_ptr<MainQueue> queue, Handlers handlers)
    : shared_(std::make_shared<Shared>()) {
    shared_->input = descriptor;
    shared_->queue = std::move(queue);
    shared_->handlers = std::move(handlers);
    thread_ = std::thread([shared = shared_] { Thread(shared).run(); });
}

CommandReader::~CommandReader() {
    shared_->isStopped = true;
    eventfd_write(shared_->wake, 1);
    thread_.join();
}

void CommandReader::next() {
    shared_->isWanted = true;
    eventfd_write(shared_->wake, 1);
}

}  // namespace supportsdk::host
