#include "service/rest/Desk.h"
#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

Answer data(const Desk& desk, const Call& call) {
    const auto location = call.parameter("members_locations_id");
    const auto member = call.parameter("members_id");
    Json list = Json::array();
    for (auto& journey : listOwn(desk, kind::journey, call)) {
        if (location && stringForKey(journey, "customer_location_id") != location) continue;
        if (member && stringForKey(journey, "customer_id") != member) continue;
        const auto id = stringForKey(journey, "id").value_or("");
        journey["journey_url"] = call.base + "/journeys/" + id;
        list.push_back(std::move(journey));
    }
    return results(std::move(list));
}

std::string escaped(const std::string& text) {
    std::string html;
    for (const char letter : text) {
        if (letter == '<') {
            html += "&lt;";
        } else if (letter == '&') {
            html += "&amp;";
        } else {
            html += letter;
        }
    }
    return html;
}

Answer page(const Desk& desk, const Call& call) {
    const auto journey = desk.store.get(kind::journey, call.id);
    if (!journey) return failure(404, "This journey is unknown.");
    const auto title = escaped(stringForKey(*journey, "title").value_or(""));
    std::string html =
        "<!doctype html><meta charset=utf-8><title>" + title + "</title><h1>" + title + "</h1><ol>";
    for (const auto& stage : arrayForKey(*journey, "stages"))
        html += "<li>" + escaped(stringForKey(stage, "title").value_or(""));
    return bytes(html + "</ol>", "text/html; charset=utf-8");
}

}  // namespace

void addJourneyRoutes(Router& router, Desk& desk) {
    router.add("GET", "/sdk/v1/journeys/data", Body::none,
               [&desk](Call& call) { return data(desk, call); });
    router.add("GET", "/journeys/*", Body::none, [&desk](Call& call) { return page(desk, call); });
}

}  // namespace supportsdk::service
