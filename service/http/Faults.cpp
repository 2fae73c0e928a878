#include "service/http/Faults.h"

#include <algorithm>
#include <array>
#include <utility>

#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

using Kind = Fault::Kind;

struct Preset {
    const char* name;
    Kind kind;
    int status;
    const char* content;
    const char* contentType;
};

constexpr std::array presets{
    Preset{"delay", Kind::delay, 200, "", ""},
    Preset{"silence", Kind::silence, 200, "", ""},
    Preset{"drop", Kind::drop, 200, "", ""},
    Preset{"cut", Kind::cut, 200, "", ""},
    Preset{"contentType", Kind::contentType, 200, "", "text/html"},
    Preset{"status", Kind::answer, 500, R"({"message":"An injected failure."})",
           "application/json"},
    Preset{"garbage", Kind::answer, 200, "\x01\xfe{[\"garbage\": nul", "application/json"},
    Preset{"list", Kind::answer, 200, R"([{"status":200}])", "application/json"},
    Preset{"answer", Kind::answer, 200, "{}", "application/json"},
};

bool fits(const Fault& fault, const std::string& method, const std::string& path) {
    if (!fault.method.empty() && fault.method != method) return false;
    if (fault.path.ends_with('*'))
        return path.starts_with(fault.path.substr(0, fault.path.size() - 1));
    return fault.path == path;
}

/// A line break would let a header end early and another begin.
bool isOneLine(const std::string& text) {
    return text.find_first_of("\r\n") == std::string::npos;
}

bool areHeaders(const Json& headers) {
    return std::all_of(headers.items().begin(), headers.items().end(), [](const auto& item) {
        return !item.key().empty() && isOneLine(item.key()) && item.value().is_string() &&
               isOneLine(item.value().template get<std::string>());
    });
}

}  // namespace

std::optional<Fault> Fault::read(const Json& json) {
    const auto name = stringForKey(json, "kind");
    const auto* preset = std::find_if(presets.begin(), presets.end(),
                                      [&](const Preset& entry) { return entry.name == name; });
    const auto path = stringForKey(json, "path");
    if (preset == presets.end() || !path || path->empty()) return std::nullopt;
    Fault fault;
    fault.kind = preset->kind;
    fault.method = stringForKey(json, "method").value_or("");
    fault.path = *path;
    fault.times = static_cast<int>(integerForKey(json, "times").value_or(1));
    fault.delay = std::chrono::milliseconds(integerForKey(json, "milliseconds").value_or(0));
    fault.status = static_cast<int>(integerForKey(json, "status").value_or(preset->status));
    fault.content = stringForKey(json, "content").value_or(preset->content);
    fault.contentType = stringForKey(json, "contentType").value_or(preset->contentType);
    fault.headers = dictionaryForKey(json, "headers");
    const bool sensible = fault.times >= 0 && fault.delay.count() >= 0 && fault.status >= 100 &&
                          fault.status <= 999 && isOneLine(fault.contentType) &&
                          areHeaders(fault.headers);
    return sensible ? std::optional(fault) : std::nullopt;
}

Json Fault::write() const {
    const auto* preset = std::find_if(presets.begin(), presets.end(),
                                      [this](const Preset& entry) { return entry.kind == kind; });
    return {{"id", id},           {"kind", kind == Kind::answer ? "answer" : preset->name},
            {"method", method},   {"path", path},
            {"times", times},     {"milliseconds", delay.count()},
            {"status", status},   {"contentType", contentType},
            {"content", content}, {"headers", headers}};
}

int Faults::add(Fault fault) {
    const std::lock_guard lock(mutex_);
    fault.id = ++last_;
    faults_.push_back(std::move(fault));
    return last_;
}

bool Faults::remove(int id) {
    const std::lock_guard lock(mutex_);
    return faults_.remove_if([id](const Fault& fault) { return fault.id == id; }) > 0;
}

void Faults::clear() {
    const std::lock_guard lock(mutex_);
    faults_.clear();
    ++clears_;
    changed_.notify_all();
}

Json Faults::list() const {
    const std::lock_guard lock(mutex_);
    Json faults = Json::array();
    for (const auto& fault : faults_) faults.push_back(fault.write());
    return faults;
}

std::optional<Fault> Faults::take(const std::string& method, const std::string& path) {
    const std::lock_guard lock(mutex_);
    const auto found = std::find_if(faults_.begin(), faults_.end(),
                                    [&](const Fault& fault) { return fits(fault, method, path); });
    if (found == faults_.end()) return std::nullopt;
    Fault fault = *found;
    if (found->times > 0 && --found->times == 0) faults_.erase(found);
    return fault;
}

void Faults::wait(std::chrono::milliseconds time) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::min<std::chrono::milliseconds>(time, std::chrono::hours{1}),
                      [this] { return closed_; });
}

void Faults::waitForClear() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this, before = clears_] { return closed_ || clears_ != before; });
}

void Faults::close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_all();
}

}  // namespace supportsdk::service
