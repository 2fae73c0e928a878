#include "service/prosody/ProsodyServer.h"

#include <fcntl.h>
#include <openssl/rand.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <fstream>

#include "service/prosody/ControlModule.h"
#include "service/prosody/ProsodyConfiguration.h"

namespace supportsdk::service {

namespace {

using Clock = std::chrono::steady_clock;

std::string randomToken() {
    std::array<unsigned char, 16> bytes{};
    RAND_bytes(bytes.data(), bytes.size());
    std::string token;
    for (const auto byte : bytes) {
        token += static_cast<char>('a' + (byte >> 4U));
        token += static_cast<char>('a' + (byte & 15U));
    }
    return token;
}

bool writeFile(const std::filesystem::path& path, std::string_view text) {
    // The configuration holds the token.
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (descriptor < 0) return false;
    const bool written =
        write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return close(descriptor) == 0 && written;
}

}  // namespace

ProsodyServer::ProsodyServer(ProsodyOptions options)
    : options_(std::move(options)),
      c2sPort_(options_.c2sPort),
      httpPort_(options_.httpPort),
      token_(randomToken()) {
    options_.folder = std::filesystem::absolute(options_.folder);
}

ProsodyServer::~ProsodyServer() = default;

bool ProsodyServer::prepareFolder() const {
    std::error_code error;
    std::filesystem::create_directories(options_.folder / "data", error);
    std::filesystem::create_directories(options_.folder / "modules", error);
    return writeFile(options_.folder / "modules" / "mod_support_control.lua", controlModule) &&
           writeFile(options_.folder / "prosody.cfg.lua", configuration());
}

std::string ProsodyServer::configuration() const {
    ProsodyConfiguration configuration;
    configuration.folder = options_.folder;
    configuration.domain = options_.domain;
    configuration.certificate = options_.certificate;
    configuration.c2sPort = c2sPort_;
    configuration.httpPort = httpPort_;
    configuration.controlToken = token_;
    configuration.readyFile = options_.folder / "ready";
    return configuration.text();
}

bool ProsodyServer::start(std::chrono::milliseconds limit) {
    kill();
    const auto ready = options_.folder / "ready";
    if (!prepareFolder()) return false;
    unlink(ready.c_str());
    if (mkfifo(ready.c_str(), 0600) != 0) return false;
    const int fifo = open(ready.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fifo < 0) return false;
    child_ = ChildProcess::start(
        {{"prosody", "-F", "--config", (options_.folder / "prosody.cfg.lua").string()},
         options_.folder / "prosody.out"});
    const bool up = child_ && awaitPorts(fifo, limit);
    close(fifo);
    if (!up) child_.reset();
    return up;
}

bool ProsodyServer::awaitPorts(int fifo, std::chrono::milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    std::string line;
    while (line.find('\n') == std::string::npos) {
        if (Clock::now() >= deadline || !child_->isRunning()) return false;
        // In slices, to notice a child that ended without a word.
        pollfd entry{fifo, POLLIN, 0};
        if (poll(&entry, 1, 100) <= 0) continue;
        std::array<char, 256> buffer{};
        const auto got = read(fifo, buffer.data(), buffer.size());
        if (got > 0) line.append(buffer.data(), static_cast<std::size_t>(got));
        if (got == 0) return false;
    }
    const Json ports = Json::parse(line, nullptr, false);
    if (!ports.is_object()) return false;
    c2sPort_ = ports.value("c2s", std::uint16_t{0});
    httpPort_ = ports.value("http", std::uint16_t{0});
    return c2sPort_ != 0 && httpPort_ != 0;
}

void ProsodyServer::stop(std::chrono::milliseconds limit) {
    if (!child_) return;
    child_->signal(SIGTERM);
    child_->waitForEnd(limit);
    child_.reset();
}

void ProsodyServer::kill() {
    child_.reset();
}

pid_t ProsodyServer::processId() const {
    return isRunning() ? child_->processId() : -1;
}

bool ProsodyServer::registerAccount(const std::string& user, const std::string& password) {
    return control().registerAccount(jid(user), password);
}

ProsodyControl ProsodyServer::control() const {
    return {httpPort_, roomsDomain(), token_};
}

}  // namespace supportsdk::service
