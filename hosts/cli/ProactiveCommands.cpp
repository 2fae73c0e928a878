#include "hosts/cli/ProactiveCommands.h"

#include <map>
#include <stdexcept>

#include "hosts/cli/CommandFields.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/proactive/files/FileHandle.h"

namespace supportsdk::host {

namespace {

/// Reports what becomes of the settings.
class ReportingProactive : public SupportSDKProactive {
 public:
    ReportingProactive(std::optional<Json> customer, PlatformPtr platform,
                       std::shared_ptr<Reports> reports)
        : SupportSDKProactive(std::move(customer), std::move(platform)),
          reports_(std::move(reports)) {}

    void supportDidRetrieveSettings(const Json& response) override {
        reports_->write("delegate", {{"operation", "supportDidRetrieveSettings"}});
        SupportSDKProactive::supportDidRetrieveSettings(response);
    }

    void supportDidFailToRetrieveSettings(const Json& response) override {
        Json fields = {{"operation", "supportDidFailToRetrieveSettings"}};
        for (const char* key : {"status", "message"}) {
            if (const auto* value = valueForKey(response, key)) fields[key] = *value;
        }
        reports_->write("delegate", fields);
    }

 private:
    const std::shared_ptr<Reports> reports_;
};

std::optional<std::uint64_t> statusOf(const Json& command) {
    const auto* status = valueForKey(command, "status");
    const auto* number = status ? status->get_ptr<const Json::number_unsigned_t*>() : nullptr;
    return number ? std::optional<std::uint64_t>(*number) : std::nullopt;
}

Json describe(const Check& check) {
    auto fields = check.dict();
    if (const auto* dump = dynamic_cast<const CheckAppDump*>(&check))
        fields["files"] = dump->files.size();
    return fields;
}

Json describe(const Identity& identity) {
    Json fields = Json::object();
    for (const auto& [key, value] :
         std::initializer_list<std::pair<const char*, const IdentityValue&>>{
             {"members_id", identity.membersId},
             {"members_users_id", identity.membersUsersId},
             {"members_locations_id", identity.membersLocationsId},
             {"members_devices_id", identity.membersDevicesId}}) {
        if (value.isSet()) fields[key] = value.json();
    }
    return fields;
}

}  // namespace

bool ProactiveCommands::take(const std::string& name, const Json& command) {
    using Handler = void (ProactiveCommands::*)(const Json&);
    static const std::map<std::string, Handler> handlers = {
        {"proactive", &ProactiveCommands::proactive},
        {"check", &ProactiveCommands::check},
        {"flush", &ProactiveCommands::flush},
        {"queue", &ProactiveCommands::queue},
    };
    const auto found = handlers.find(name);
    if (found == handlers.end()) return false;
    if (!proactive_ && name != "proactive") {
        reports_->refuse("\"proactive\" comes first");
    } else {
        (this->*found->second)(command);
    }
    return true;
}

void ProactiveCommands::proactive(const Json& command) {
    const auto name = stringForKey(command, "name");
    if (!name) return reports_->refuse("\"name\" is missing or no string");
    const auto* customer = valueForKey(command, "customer");
    if (!proactive_) {
        proactive_ = std::make_shared<ReportingProactive>(std::nullopt, platform_, reports_);
    }
    if (customer) proactive_->customerInfo = *customer;
    const bool result = proactive_->loadConfigurationFile(*name);
    reports_->write("proactive", {{"result", result}, {"sdk", proactive_->sdk != nullptr}});
}

void ProactiveCommands::check(const Json& command) {
    try {
        if (const auto made = makeCheck(command)) {
            const bool inForeground =
                valueForKey(command, "background") && !boolForKey(command, "background");
            proactive_->putCheck(made, !inForeground);
        }
    } catch (const std::logic_error& error) {
        reports_->refuse(error.what());
    }
}

void ProactiveCommands::flush(const Json&) {
    const auto before = proactive_->stack.size();
    proactive_->checkQueueFlushHandler();
    reports_->write("flushed", {{"before", before}, {"after", proactive_->stack.size()}});
}

void ProactiveCommands::queue(const Json&) {
    Json checks = Json::array();
    for (const auto& check : proactive_->stack.contents()) checks.push_back(describe(*check));
    Json fields = {{"checks", std::move(checks)}, {"settings", false}};
    if (const auto& sdk = proactive_->sdk) {
        fields["settings"] = sdk->isCloudConfigComplete;
        fields["customer"] = describe(sdk->identity);
    }
    reports_->write("queue", fields);
}

std::shared_ptr<const Check> ProactiveCommands::makeCheck(const Json& command) {
    const auto kind = stringForKey(command, "kind").value_or("");
    const auto name = stringForKey(command, "name");
    const auto detail = stringForKey(command, "detail");
    const auto status = statusOf(command);
    if (!status) {
        reports_->refuse("\"status\" is no whole number from 0");
        return nullptr;
    }
    if (kind == "health") return std::make_shared<CheckAppHealth>(name, *status, detail);
    if (kind == "hardware") return std::make_shared<CheckAppHardware>(name, *status, detail);
    if (kind == "cloud") return std::make_shared<CheckAppCloud>(name, *status, detail);
    if (kind == "unknown")
        return std::make_shared<Check>(CheckType::unknown, name, *status, detail);
    if (kind == "dump") {
        const auto files = openFiles(command);
        if (!files) return nullptr;
        return std::make_shared<CheckAppDump>(*status, detail, *files);
    }
    reports_->refuse("\"kind\" is none of health, hardware, cloud, dump and unknown");
    return nullptr;
}

/// Nothing when one of them cannot be opened, which is refused.
std::optional<FileHandles> ProactiveCommands::openFiles(const Json& command) {
    if (!valueForKey(command, "files")) return FileHandles();
    const auto paths = stringsForKey(command, "files");
    if (!paths) {
        reports_->refuse("\"files\" is no list of paths");
        return std::nullopt;
    }
    FileHandles files;
    for (const auto& path : *paths) {
        files.push_back(FileHandle::forReadingAtPath(path));
        if (files.back()) continue;
        reports_->refuse("\"" + path + "\" cannot be opened");
        return std::nullopt;
    }
    return files;
}

}  // namespace supportsdk::host
