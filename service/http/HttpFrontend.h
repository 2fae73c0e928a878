#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "service/http/Call.h"

namespace httplib {
class Server;
struct Request;
struct Response;
}  // namespace httplib

namespace supportsdk::service {

class Faults;
class Journal;

/// Listens on 127.0.0.1 by HTTP and HTTPS, lets the faults strike, enters each request ("request")
/// and what became of it ("answered") into the journal, and leaves the rest to one handler.
/// Requests under /lab pass without faults and without entries.
class HttpFrontend {
 public:
    struct Options {
        /// 0 lets the system choose.
        std::uint16_t httpPort = 0;
        std::uint16_t httpsPort = 0;
        std::filesystem::path certificate;
        std::filesystem::path privateKey;
    };

    /// `handler` is called on many threads at once.
    HttpFrontend(std::function<Answer(Call&)> handler, Faults& faults, Journal& journal);
    /// stop().
    ~HttpFrontend();
    HttpFrontend(const HttpFrontend&) = delete;
    HttpFrontend& operator=(const HttpFrontend&) = delete;

    /// False when a port is taken or the certificate will not do.
    [[nodiscard]] bool start(const Options& options);
    /// Shuts all connections and returns when no handler runs any more. The faults and the journal
    /// must have been closed, or those who wait there hold it up.
    void stop();

    /// Valid after start().
    [[nodiscard]] std::string http() const;
    [[nodiscard]] std::string https() const;

 private:
    struct Listener {
        std::unique_ptr<httplib::Server> server;
        int descriptor = -1;
        int port = 0;
        std::thread thread;
    };

    bool listen(Listener& listener, std::uint16_t port, const char* scheme);
    void serve(const httplib::Request& request, httplib::Response& response, const char* scheme);
    Answer answer(Call& call, const httplib::Request& request, httplib::Response& response);

    std::function<Answer(Call&)> handler_;
    Faults& faults_;
    Journal& journal_;
    Listener http_;
    Listener https_;
};

}  // namespace supportsdk::service
