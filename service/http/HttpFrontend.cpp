#include "service/http/HttpFrontend.h"

#include <httplib.h>
#include <sys/socket.h>

#include <algorithm>
#include <cctype>

#include "service/http/Connections.h"
#include "service/http/Faults.h"
#include "service/http/Journaling.h"

namespace supportsdk::service {

namespace {

/// A dump of 64 MiB as Base64 with its line feeds, escaped for JSON, has 88 MiB.
constexpr std::size_t maximumBody = 96U << 20U;
constexpr int backlog = 128;

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

Call takeApart(const httplib::Request& request, const char* scheme) {
    Call call;
    call.method = request.method;
    call.path = request.path;
    call.content = request.body;
    for (const auto& [name, value] : request.params) call.query.try_emplace(name, value);
    for (const auto& [name, value] : request.headers)
        call.headers.try_emplace(lowered(name), value);
    for (const auto& [name, part] : request.files) {
        if (part.filename.empty()) {
            call.fields.try_emplace(name, part.content);
        } else {
            call.files.try_emplace(name, FilePart{part.filename, part.content_type, part.content});
        }
    }
    const auto host = call.header("host");
    call.base = std::string(scheme) + "://" +
                (host.empty() ? "127.0.0.1:" + std::to_string(request.local_port) : host);
    return call;
}

void write(const Answer& answer, httplib::Response& response) {
    response.status = answer.status;
    for (const auto& [name, value] : answer.headers) response.set_header(name, value);
    response.set_content(answer.content, answer.contentType);
}

/// Announces all of the body and sends half of it.
void writeHalf(const Answer& answer, httplib::Response& response) {
    response.status = answer.status;
    for (const auto& [name, value] : answer.headers) response.set_header(name, value);
    response.set_content_provider(
        std::max<std::size_t>(answer.content.size(), 2), answer.contentType,
        [content = answer.content](std::size_t offset, std::size_t, httplib::DataSink& sink) {
            if (offset > 0) return false;
            const auto half = std::max<std::size_t>(content.size() / 2, 1);
            return sink.write(content.empty() ? " " : content.data(), half);
        });
}

Answer injected(const Fault& fault) {
    Answer answer{fault.status, fault.content, fault.contentType};
    for (const auto& [name, value] : fault.headers.items())
        answer.headers[name] = value.get<std::string>();
    return answer;
}

}  // namespace

HttpFrontend::HttpFrontend(std::function<Answer(Call&)> handler, Faults& faults, Journal& journal)
    : handler_(std::move(handler)), faults_(faults), journal_(journal) {}

HttpFrontend::~HttpFrontend() {
    stop();
}

bool HttpFrontend::start(const Options& options) {
    http_.server = std::make_unique<httplib::Server>();
    https_.server = std::make_unique<httplib::SSLServer>(options.certificate.c_str(),
                                                         options.privateKey.c_str());
    return https_.server->is_valid() && listen(http_, options.httpPort, "http") &&
           listen(https_, options.httpsPort, "https");
}

bool HttpFrontend::listen(Listener& listener, std::uint16_t port, const char* scheme) {
    httplib::Server& server = *listener.server;
    server.new_task_queue = [] { return new ConnectionThreads; };
    server.set_tcp_nodelay(true);
    server.set_keep_alive_timeout(120);
    server.set_keep_alive_max_count(1'000'000);
    server.set_read_timeout(30);
    server.set_write_timeout(30);
    server.set_payload_max_length(maximumBody);
    server.set_socket_options([&listener](int descriptor) {
        // Without cpp-httplib's SO_REUSEPORT: two services must not share one port.
        const int on = 1;
        setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        listener.descriptor = descriptor;
    });
    const auto serveAll = [this, scheme](const httplib::Request& request,
                                         httplib::Response& response) {
        serve(request, response, scheme);
    };
    const std::string everything = R"([\s\S]*)";
    server.Get(everything, serveAll).Post(everything, serveAll).Put(everything, serveAll);
    server.Patch(everything, serveAll).Delete(everything, serveAll).Options(everything, serveAll);
    server.set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (!response.body.empty() || response.content_provider_) return;
        const bool isTooLarge = response.status == 413;
        const auto* words = isTooLarge ? "The body is too large." : "The request cannot be read.";
        write(failure(response.status, words), response);
        // What is left of it must not pass for the next request.
        response.set_header("Connection", "close");
    });
    server.set_exception_handler(
        [](const httplib::Request&, httplib::Response& response, const std::exception_ptr&) {
            write(failure(500, "The service is at fault."), response);
        });

    listener.port = port == 0 ? server.bind_to_any_port("127.0.0.1")
                              : (server.bind_to_port("127.0.0.1", port) ? port : -1);
    if (listener.port <= 0) return false;
    // Once more, for a longer queue than cpp-httplib's five.
    ::listen(listener.descriptor, backlog);
    listener.thread = std::thread([&server] { server.listen_after_bind(); });
    while (!server.is_running()) std::this_thread::yield();
    return true;
}

void HttpFrontend::stop() {
    for (Listener* listener : {&http_, &https_}) {
        if (!listener->thread.joinable()) continue;
        listener->server->stop();
        shutConnections(listener->port);
        listener->thread.join();
    }
}

std::string HttpFrontend::http() const {
    return "http://127.0.0.1:" + std::to_string(http_.port);
}

std::string HttpFrontend::https() const {
    return "https://127.0.0.1:" + std::to_string(https_.port);
}

void HttpFrontend::serve(const httplib::Request& request, httplib::Response& response,
                         const char* scheme) {
    Call call = takeApart(request, scheme);
    if (call.path == "/lab" || call.path.starts_with("/lab/")) {
        write(handler_(call), response);
        return;
    }
    const auto number = enterRequest(journal_, call);
    const Answer given = answer(call, request, response);
    enterAnswer(journal_, number, call.path, given);
}

Answer HttpFrontend::answer(Call& call, const httplib::Request& request,
                            httplib::Response& response) {
    const auto fault = faults_.take(call.method, call.path);
    if (fault) faults_.wait(fault->delay);
    if (fault && fault->kind == Fault::Kind::silence) faults_.waitForClear();
    if (fault && (fault->kind == Fault::Kind::drop || fault->kind == Fault::Kind::silence)) {
        shutConnections(request.local_port, request.remote_port);
        return {0, ""};
    }
    Answer answer = fault && fault->kind == Fault::Kind::answer ? injected(*fault) : handler_(call);
    if (fault && fault->kind == Fault::Kind::contentType) answer.contentType = fault->contentType;
    if (fault && fault->kind == Fault::Kind::cut) {
        writeHalf(answer, response);
    } else {
        write(answer, response);
    }
    return answer;
}

}  // namespace supportsdk::service
