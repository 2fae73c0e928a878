#pragma once

#include <gtest/gtest.h>

#include "backends/curl/CurlHttpClient.h"
#include "tests/support/LoopMainQueue.h"
#include "tests/support/LoopbackHttpServer.h"
#include "tests/support/SharedLog.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {

/// A client with a main queue that the test pumps. Counts completions: each request has one.
class HttpFixture : public testing::Test {
 protected:
    HttpFixture() { makeClient({}); }

    void TearDown() override {
        if (client) queue->pumpFor(std::chrono::milliseconds{5});
        EXPECT_EQ(completions, sent);
    }

    void makeClient(std::vector<std::filesystem::path> authorities) {
        client = std::make_unique<CurlHttpClient>(
            CurlHttpClientOptions{queue, std::move(authorities), log});
    }

    HttpResponse fetch(HttpRequest request) {
        std::optional<HttpResponse> response;
        client->send(std::move(request), [&](HttpResponse got) {
            EXPECT_TRUE(queue->isCurrent());
            ++completions;
            response = std::move(got);
        });
        ++sent;
        EXPECT_FALSE(response) << "completed inside the call";
        EXPECT_TRUE(queue->pumpUntil([&] { return response.has_value(); }));
        return response.value_or(HttpResponse{});
    }

    HttpResponse get(const std::string& url, HttpHeaders headers = {}) {
        HttpRequest request;
        request.url = url;
        request.headers = std::move(headers);
        request.confinedHeaderPrefix = "X-Quorrand-";
        return fetch(std::move(request));
    }

    HttpResponse post(const std::string& url, const std::string& body, HttpHeaders headers = {}) {
        HttpRequest request;
        request.method = "POST";
        request.url = url;
        request.body = toBytes(body);
        request.headers = std::move(headers);
        return fetch(std::move(request));
    }

    /// One whose servers stand on loopback.
    service::CertificateAuthority& authority(const std::string& name) {
        auto made = service::CertificateAuthority::create(folder.path / name);
        return *issuers.emplace_back(std::move(made));
    }
    const service::CertificateRequest here{"here", {"localhost"}, {"127.0.0.1"}};

    TemporaryFolder folder;
    std::vector<std::unique_ptr<service::CertificateAuthority>> issuers;
    std::shared_ptr<SharedLog> log = std::make_shared<SharedLog>();
    std::shared_ptr<LoopMainQueue> queue = std::make_shared<LoopMainQueue>();
    std::unique_ptr<CurlHttpClient> client;
    int sent = 0;
    int completions = 0;
};

}  // namespace supportsdk::test
