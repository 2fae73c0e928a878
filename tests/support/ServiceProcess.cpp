#include "tests/support/ServiceProcess.h"

#include <httplib.h>

#include <csignal>

namespace supportsdk::test {
namespace {

std::optional<Json> objectOf(const httplib::Result& result) {
    if (!result || result->status != 200) return std::nullopt;
    Json json = Json::parse(result->body, nullptr, false);
    return json.is_object() ? std::optional(json) : std::nullopt;
}

httplib::Client clientFor(const std::string& address) {
    httplib::Client client(address);
    client.set_read_timeout(std::chrono::seconds{70});
    return client;
}

}  // namespace

std::unique_ptr<ServiceProcess> ServiceProcess::start(const std::vector<std::string>& arguments) {
    std::unique_ptr<ServiceProcess> service(new ServiceProcess);
    std::vector<std::string> words{SUPPORTSDK_BINARY_DIR "/service/support-service", "--data",
                                   service->folder_.path / "state"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    service->process_ = std::make_unique<LineProcess>(words, "/dev/stderr");
    const auto line = service->process_->readLine(std::chrono::seconds{10});
    service->ready_ = Json::parse(line.value_or(""), nullptr, false);
    return service->ready_.is_object() ? std::move(service) : nullptr;
}

ServiceProcess::~ServiceProcess() {
    signal(SIGTERM);
    waitForEnd(std::chrono::seconds{2});
}

std::string ServiceProcess::text(const char* key) const {
    return ready_.value(key, std::string());
}

Json ServiceProcess::configuration(const std::string& integration, bool secure) const {
    Json configuration = ready_.at("configurations").at(integration);
    configuration["apiHost"] = secure ? https() : http();
    return configuration;
}

pid_t ServiceProcess::chatServerId() const {
    return ready_.at("xmpp").value("processId", -1);
}

std::optional<Json> ServiceProcess::get(const std::string& path) const {
    return objectOf(clientFor(http()).Get("/lab" + path));
}

std::optional<Json> ServiceProcess::post(const std::string& path, const Json& body) const {
    return objectOf(clientFor(http()).Post("/lab" + path, body.dump(), "application/json"));
}

bool ServiceProcess::remove(const std::string& path) const {
    return objectOf(clientFor(http()).Delete("/lab" + path)).has_value();
}

bool ServiceProcess::say(const std::string& issue, const std::string& message,
                         const Json& more) const {
    Json body{{"issue", issue}, {"message", message}};
    body.update(more);
    return post("/say", body).has_value();
}

std::optional<Json> ServiceProcess::await(const std::string& kind, const Json& where,
                                          std::uint64_t after,
                                          std::chrono::milliseconds limit) const {
    httplib::Params query{
        {"kind", kind}, {"after", std::to_string(after)}, {"wait", std::to_string(limit.count())}};
    for (const auto& [name, value] : where.items()) query.emplace(name, value.get<std::string>());
    const auto answer = objectOf(clientFor(http()).Get("/lab/events", query, httplib::Headers{}));
    if (!answer || answer->at("results").empty()) return std::nullopt;
    return answer->at("results").at(0);
}

}  // namespace supportsdk::test
