#include "tests/support/LoopbackHttpServer.h"

#include <strings.h>

#include <algorithm>

namespace supportsdk::test {
namespace {

bool sameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

RecordedRequest parseHead(std::string_view head) {
    RecordedRequest request;
    const auto line = head.substr(0, head.find("\r\n"));
    request.method = line.substr(0, line.find(' '));
    const auto target = line.substr(std::min(line.size(), request.method.size() + 1));
    request.target = target.substr(0, target.find(' '));
    head.remove_prefix(std::min(head.size(), line.size() + 2));
    while (!head.empty()) {
        const auto field = head.substr(0, head.find("\r\n"));
        const auto colon = std::min(field.size(), field.find(':'));
        auto value = field.substr(std::min(field.size(), colon + 1));
        while (value.starts_with(' ')) value.remove_prefix(1);
        request.headers.emplace_back(field.substr(0, colon), value);
        head.remove_prefix(std::min(head.size(), field.size() + 2));
    }
    return request;
}

/// The next request in whole, out of what is left of `buffer`; nothing when the peer went away
/// first.
std::optional<RecordedRequest> nextRequest(LoopbackConnection& connection, std::string& buffer) {
    const auto fill = [&] {
        const auto more = connection.receive();
        buffer += more;
        return !more.empty();
    };
    std::size_t end = 0;
    while ((end = buffer.find("\r\n\r\n")) == std::string::npos) {
        // A record of TLS, to a server without it, has no end.
        if (!fill() || buffer.starts_with('\x16')) return std::nullopt;
    }
    auto request = parseHead(std::string_view(buffer).substr(0, end));
    buffer.erase(0, end + 4);
    const auto length =
        request.hasHeader("Content-Length") ? std::stoul(request.header("Content-Length")) : 0;
    while (buffer.size() < length) {
        if (!fill()) return std::nullopt;
    }
    request.body = buffer.substr(0, length);
    buffer.erase(0, length);
    return request;
}

}  // namespace

std::string RecordedRequest::header(std::string_view name) const {
    for (const auto& [each, value] : headers) {
        if (sameName(each, name)) return value;
    }
    return "(none)";
}

bool RecordedRequest::hasHeader(std::string_view name) const {
    return header(name) != "(none)";
}

std::string LoopbackHttpServer::url(std::string_view target) const {
    return (server_.isSecure() ? "https" : "http") + ("://127.0.0.1:" + std::to_string(port())) +
           std::string(target);
}

void LoopbackHttpServer::on(const std::string& path, Handler handler) {
    const std::lock_guard lock(mutex_);
    handlers_[path] = std::move(handler);
}

void LoopbackHttpServer::answer(const std::string& path, int status, const std::string& body,
                                const Headers& headers) {
    on(path, [bytes = response(status, body, headers)](const auto&, auto& connection) {
        connection.send(bytes);
    });
}

void LoopbackHttpServer::answerRaw(const std::string& path, const std::string& bytes) {
    on(path, [bytes](const auto&, auto& connection) {
        connection.send(bytes);
        connection.close();
    });
}

std::string LoopbackHttpServer::response(int status, std::string_view body,
                                         const Headers& headers) {
    std::string bytes = "HTTP/1.1 " + std::to_string(status) + " Scripted\r\n";
    for (const auto& [name, value] : headers) bytes.append(name + ": " + value + "\r\n");
    bytes.append("Content-Length: " + std::to_string(body.size()) + "\r\n\r\n");
    return bytes.append(body);
}

std::vector<RecordedRequest> LoopbackHttpServer::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

RecordedRequest LoopbackHttpServer::lastRequest(const std::string& path) const {
    RecordedRequest last;
    for (auto& each : requests()) {
        if (each.path() == path) last = std::move(each);
    }
    return last;
}

std::size_t LoopbackHttpServer::requestCount(const std::string& path) const {
    const auto all = requests();
    return static_cast<std::size_t>(std::count_if(
        all.begin(), all.end(), [&](const auto& each) { return each.path() == path; }));
}

void LoopbackHttpServer::serve(LoopbackConnection& connection) {
    std::string buffer;
    while (const auto request = nextRequest(connection, buffer)) {
        Handler handler = [](const auto&, auto& peer) { peer.send(response(404, "")); };
        {
            const std::lock_guard lock(mutex_);
            const auto found = handlers_.find(request->path());
            if (found != handlers_.end()) handler = found->second;
            requests_.push_back(*request);
        }
        handler(*request, connection);
        if (connection.ended()) return;
    }
}

}  // namespace supportsdk::test
