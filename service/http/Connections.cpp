#include "service/http/Connections.h"

#include <arpa/inet.h>
#include <sys/socket.h>

#include <filesystem>
#include <thread>

namespace supportsdk::service {

namespace {

int portOf(int descriptor, decltype(getsockname)* question) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (question(descriptor, reinterpret_cast<sockaddr*>(&address), &size) != 0) return -1;
    return address.sin_family == AF_INET ? ntohs(address.sin_port) : -1;
}

}  // namespace

void ConnectionThreads::enqueue(std::function<void()> serve) {
    {
        const std::lock_guard lock(mutex_);
        ++running_;
    }
    std::thread([this, serve = std::move(serve)] {
        serve();
        const std::lock_guard lock(mutex_);
        --running_;
        changed_.notify_all();
    }).detach();
}

void ConnectionThreads::shutdown() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return running_ == 0; });
}

void shutConnections(int localPort, int remotePort) {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", error)) {
        const int descriptor = std::atoi(entry.path().filename().c_str());
        const int peer = portOf(descriptor, getpeername);
        if (peer <= 0 || portOf(descriptor, getsockname) != localPort) continue;
        if (remotePort == 0 || peer == remotePort) ::shutdown(descriptor, SHUT_RDWR);
    }
}

}  // namespace supportsdk::service
