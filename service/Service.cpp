#include "service/Service.h"

#include <unistd.h>

#include <fstream>
#include <sstream>

#include "service/lab/Lab.h"
#include "service/rest/Credentials.h"
#include "service/state/Identifiers.h"
#include "service/state/Seed.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

constexpr std::chrono::milliseconds chatServerFarewell{300};
constexpr char domain[] = "support.test";

std::optional<std::string> seedText(const std::filesystem::path& file) {
    if (file.empty()) return std::string(defaultSeed());
    std::ifstream in(file);
    std::ostringstream text;
    text << in.rdbuf();
    return in ? std::optional(text.str()) : std::nullopt;
}

}  // namespace

Service::~Service() {
    stop();
}

bool Service::openStore(const Options& options, std::string& problem) {
    store_ = Store::open(folder_->path() / "state.sqlite");
    if (!store_) {
        problem = "the state in " + folder_->path().string() + " cannot be opened";
        return false;
    }
    if (store_->list(kind::integration).empty()) {
        const auto text = seedText(options.seed);
        const auto seed = text ? readSeed(*text, problem) : std::nullopt;
        if (!text) problem = "it cannot be read";
        if (!seed) {
            problem = "the seed " + options.seed.string() + " will not do: " + problem;
            return false;
        }
        plantSeed(*seed, *store_);
    }
    if (!options.integration.empty() && !store_->get(kind::integration, options.integration)) {
        problem = "there is no integration " + options.integration;
        return false;
    }
    return true;
}

bool Service::start(const Options& options, const std::function<bool()>& isUnwanted,
                    std::string& problem) {
    options_ = options;
    if (!openStore(options, problem) || isUnwanted()) return false;

    const auto authority = CertificateAuthority::create(folder_->path() / "certificates");
    const auto chatCertificate =
        authority ? authority->issue({"chat", {domain, std::string("rooms.") + domain}, {}})
                  : std::nullopt;
    const auto webCertificate =
        authority ? authority->issue({"web", {"localhost"}, {"127.0.0.1"}}) : std::nullopt;
    if (!chatCertificate || !webCertificate) {
        problem = "no certificates can be made";
        return false;
    }
    caFile_ = authority->certificate();
    if (isUnwanted()) return false;

    rooms_ = std::make_unique<ChatRooms>(
        *store_, journal_,
        ProsodyOptions{folder_->path() / "prosody", domain, chatCertificate, 0, 0});
    issues_ = std::make_unique<Issues>(*store_, *rooms_, journal_);
    desk_ = std::make_unique<Desk>(Desk{*store_, journal_, *rooms_, *issues_});
    addRoutes();
    frontend_ = std::make_unique<HttpFrontend>([this](Call& call) { return handle(call); }, faults_,
                                               journal_);
    if (!rooms_->start()) {
        problem = "Prosody does not start; see " + (folder_->path() / "prosody").string();
        return false;
    }
    if (!frontend_->start({options.httpPort, options.httpsPort, webCertificate->certificate,
                           webCertificate->key})) {
        problem = "a port is taken";
        return false;
    }
    return folder_->leaveWord(dumpJson(readyLine()));
}

void Service::addRoutes() {
    addSettingsRoutes(router_, *desk_);
    addCustomerRoutes(router_, *desk_);
    addIssueRoutes(router_, *desk_);
    addChatRoutes(router_, *desk_);
    addFileRoutes(router_, *desk_);
    addFormRoutes(router_, *desk_);
    addKnowledgeRoutes(router_, *desk_);
    addJourneyRoutes(router_, *desk_);
    addDiagnosticsRoutes(router_, *desk_);
    addAvatarRoutes(router_);
    addLabRoomRoutes(router_, *desk_);
    addLabSightRoutes(router_, *desk_);
    addLabServerRoutes(router_, *desk_);
    addLabFaultRoutes(router_, faults_);
    router_.add("GET", "/lab", Body::none, [this](Call&) { return ok(readyLine()); });
}

/// Only the calls of the kit carry credentials, and only they hand out a download token.
Answer Service::handle(Call& call) {
    if (!call.path.starts_with("/sdk/")) return router_.dispatch(call);
    if (auto refusal = authenticate(call, *store_)) return *refusal;
    auto answer = router_.dispatch(call);
    if (answer.status == 200) answer.headers["X-Quorrand-DownloadSessionToken"] = randomHex(16);
    return answer;
}

Json Service::configurationFor(const Json& integration) const {
    Json configuration{{"apiHost", options_.secure ? frontend_->https() : frontend_->http()}};
    for (const char* key :
         {"integrationId", "apiKey", "partnerToken", "partnerTeam", "privateKey", "buttonURL"}) {
        if (const auto value = stringForKey(integration, key)) configuration[key] = *value;
    }
    return configuration;
}

Json Service::readyLine() const {
    Json configurations = Json::object();
    std::string chosen = options_.integration;
    for (const auto& integration : store_->list(kind::integration)) {
        const auto id = stringForKey(integration, "integrationId").value_or("");
        if (chosen.empty()) chosen = id;
        configurations[id] = configurationFor(integration);
    }
    Json customer = Json::object();
    for (const auto& record : store_->list(kind::customer)) {
        if (stringForKey(record, "integration") != chosen || !customer.empty()) continue;
        for (const char* key : {"members_external_id", "members_locations_external_id",
                                "members_users_external_id"}) {
            if (const auto value = stringForKey(record, key)) customer[key] = *value;
        }
    }
    return {{"is", "ready"},
            {"configuration", configurations[chosen]},
            {"configurations", configurations},
            {"customer", customer},
            {"caFile", caFile_.string()},
            {"http", frontend_->http()},
            {"https", frontend_->https()},
            {"lab", frontend_->http() + "/lab"},
            {"xmpp",
             {{"host", "127.0.0.1"},
              {"port", rooms_->port()},
              {"domain", rooms_->domain()},
              {"processId", rooms_->processId()}}},
            {"data", folder_->path().string()},
            {"processId", getpid()}};
}

void Service::stop() {
    journal_.close();
    faults_.close();
    if (rooms_) rooms_->stop(chatServerFarewell);
    if (frontend_) frontend_->stop();
}

}  // namespace supportsdk::service
