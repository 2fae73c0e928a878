#include "service/technician/Technician.h"

#include <httplib.h>

#include <thread>

#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

using Clock = std::chrono::steady_clock;
/// These bound how long stop() takes: while the service answers, and while it hangs.
constexpr int pollMilliseconds = 400;
constexpr std::chrono::seconds answerTime{2};
constexpr std::chrono::milliseconds retryTime{100};

}  // namespace

Technician::Technician(const std::string& lab, Script script) : script_(std::move(script)) {
    const auto scheme = lab.find("://");
    const auto path = lab.find('/', scheme == std::string::npos ? 0 : scheme + 3);
    address_ = lab.substr(0, path);
    prefix_ = path == std::string::npos ? "/lab" : lab.substr(path);
    while (prefix_.ends_with('/')) prefix_.pop_back();
}

std::optional<Json> Technician::call(const std::string& path, const Json* body) {
    if (ending_) return std::nullopt;
    httplib::Client client(address_);
    client.set_read_timeout(answerTime);
    const auto result = body ? client.Post(prefix_ + path, dumpJson(*body), "application/json")
                             : client.Get(prefix_ + path);
    return result && result->status == 200 ? parseJson(result->body) : std::nullopt;
}

void Technician::run(std::chrono::milliseconds patience) {
    auto lastHeard = Clock::now();
    while (!ending_ && Clock::now() - lastHeard < patience) {
        const auto events = call("/events?kind=joined,line&after=" + std::to_string(after_) +
                                     "&wait=" + std::to_string(pollMilliseconds),
                                 nullptr);
        if (!events) {
            std::this_thread::sleep_for(retryTime);
            continue;
        }
        lastHeard = Clock::now();
        for (const auto& event : arrayForKey(*events, "results")) answer(event);
        after_ = static_cast<std::uint64_t>(integerForKey(*events, "next").value_or(0));
    }
}

void Technician::answer(const Json& event) {
    const auto commId = stringForKey(event, "comm_id").value_or("");
    if (stringForKey(event, "is") == "joined") {
        if (greeted_.insert(commId).second) greet(commId);
        return;
    }
    if (stringForKey(event, "role") != "customer") return;
    const auto said = stringForKey(event, "text").value_or("");
    if (said.empty()) return;
    const auto rule = script_.answerTo(said);
    if (rule.resolve) {
        // Before the word of it: who hears that may ask for the case at once.
        const Json body{{"issue", stringForKey(event, "issue_id").value_or("")},
                        {"resolution", "Solved in the chat"}};
        call("/resolve", &body);
    }
    speak(commId, rule.say);
}

void Technician::greet(const std::string& commId) {
    const Json body{{"comm", commId}, {"present", true}};
    call("/presence", &body);
    speak(commId, script_.greeting);
}

void Technician::speak(const std::string& commId, const std::vector<Json>& messages) {
    for (auto message : messages) {
        message["comm"] = commId;
        const Json typing{{"comm", commId}};
        call("/typing", &typing);
        call("/say", &message);
    }
}

}  // namespace supportsdk::service
