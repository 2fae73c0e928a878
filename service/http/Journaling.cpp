#include "service/http/Journaling.h"

namespace supportsdk::service {

namespace {
constexpr std::size_t maximumBodyKept = 64U << 10U;
}

std::uint64_t enterRequest(Journal& journal, const Call& call) {
    Json files = Json::object();
    for (const auto& [name, part] : call.files) files[name] = part.content.size();
    return journal.append("request", {{"method", call.method},
                                      {"path", call.path},
                                      {"query", call.query},
                                      {"headers", call.headers},
                                      {"body", call.content.substr(0, maximumBodyKept)},
                                      {"fields", call.fields},
                                      {"files", std::move(files)}});
}

void enterAnswer(Journal& journal, std::uint64_t request, const std::string& path,
                 const Answer& answer) {
    journal.append("answered", {{"request", request}, {"path", path}, {"status", answer.status}});
}

}  // namespace supportsdk::service
