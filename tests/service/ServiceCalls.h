#pragma once

#include <httplib.h>

#include "tests/support/ServiceProcess.h"

namespace supportsdk::test {

struct Reply {
    /// 0 when there was no answer.
    int status = 0;
    Json body;
    std::string content;
};

/// Calls a service as one of its integrations does.
class ServiceCalls {
 public:
    explicit ServiceCalls(const ServiceProcess& service,
                          const std::string& integration = "harbor-lobby")
        : client_(service.http()) {
        const auto configuration = service.configuration(integration);
        for (const auto& [header, key] : {std::pair{"X-Quorrand-Integration", "integrationId"},
                                          {"X-Quorrand-Key", "apiKey"},
                                          {"X-Quorrand-Token", "partnerToken"}}) {
            if (configuration.contains(key)) headers.emplace(header, configuration[key]);
        }
        client_.set_read_timeout(std::chrono::seconds{10});
    }

    Reply get(const std::string& path) { return replyTo(client_.Get(path, headers)); }
    Reply post(const std::string& path, const std::string& body) {
        return replyTo(client_.Post(path, headers, body, "application/json"));
    }
    Reply post(const std::string& path, const Json& body) { return post(path, body.dump()); }

    /// A new issue of Jo Linden, as it is answered.
    Json createIssue() {
        const Json ids{{"members_id", "m-100"},
                       {"members_users_id", "u-101"},
                       {"members_locations_id", "l-110"},
                       {"user_agent", "tests"}};
        return post("/sdk/v1/issues/create", Json{{"issues", ids}, {"description", "It is dark"}})
            .body.at("results")
            .at(0);
    }

    httplib::Headers headers;

 private:
    static Reply replyTo(const httplib::Result& result) {
        if (!result) return {};
        return {result->status, Json::parse(result->body, nullptr, false), result->body};
    }
    httplib::Client client_;
};

/// One service for all tests of this program: most of them do not get into each other's way.
inline ServiceProcess& sharedService() {
    static const auto service = ServiceProcess::start();
    if (!service) throw std::runtime_error("the service does not start");
    return *service;
}

}  // namespace supportsdk::test
