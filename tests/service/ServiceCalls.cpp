#include "tests/service/ServiceCalls.h"

namespace supportsdk::test {

ServiceCalls::ServiceCalls(const Json& configuration)
    : headers{{"X-Quorrand-Integration", configuration.value("integrationId", "")},
              {"X-Quorrand-Key", configuration.value("apiKey", "")}},
      client_(configuration.value("apiHost", "")) {
    if (configuration.contains("partnerToken"))
        headers.emplace("X-Quorrand-Token", configuration.value("partnerToken", ""));
    client_.set_read_timeout(std::chrono::seconds{10});
}

Reply ServiceCalls::replyTo(const httplib::Result& result) {
    if (!result) return {};
    return {result->status, Json::parse(result->body, nullptr, false), result->headers,
            result->body};
}

Reply ServiceCalls::get(const std::string& path) {
    return replyTo(client_.Get(path, headers));
}

Reply ServiceCalls::post(const std::string& path, const std::string& body) {
    return replyTo(client_.Post(path, headers, body, "application/json"));
}

Json ServiceCalls::createIssue() {
    const Json ids{{"members_id", "m-100"},
                   {"members_users_id", "u-101"},
                   {"members_locations_id", "l-110"},
                   {"user_agent", "tests"}};
    const auto reply =
        post("/sdk/v1/issues/create", Json{{"issues", ids}, {"description", "It is dark"}});
    return reply.status == 200 ? reply.body.at("results").at(0) : Json();
}

ServiceProcess& sharedService() {
    static const auto service = ServiceProcess::start();
    if (!service) {
        std::fprintf(stderr, "the service does not start\n");
        std::abort();
    }
    return *service;
}

}  // namespace supportsdk::test
