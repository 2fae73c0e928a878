#include "hosts/cli/MenuReport.h"

#include "hosts/cli/Looks.h"

namespace supportsdk::host {

namespace {

const char* nameOfStyle(int menuStyle) {
    switch (menuStyle) {
        case 2:
            return "button";
        case 4:
            return "iconlistexit";
        default:
            return "iconlist";
    }
}

Json describeEntry(const SupportMenuEntry& entry) {
    Json fields = {{"label", entry.label}, {"icon", entry.image ? "found" : "missing"}};
    if (entry.image) {
        fields["width"] = entry.image->width;
        fields["height"] = entry.image->height;
    }
    putColor(fields, "color", entry.color);
    return fields;
}

}  // namespace

Json describeMenu(const SupportMenuView& menu) {
    Json fields = {{"heading", menu.heading},
                   {"style", nameOfStyle(menu.menuStyle)},
                   {"entries", Json::array()},
                   {"icons", Json::array()}};
    for (const auto& entry : menu.entries) {
        fields["entries"].push_back(entry.label);
        fields["icons"].push_back(describeEntry(entry));
    }
    return fields;
}

Json describeSheet(const ActionSheet& sheet) {
    Json fields = {{"heading", sheet.title}, {"entries", Json::array()}};
    for (const auto& action : sheet.actions) fields["entries"].push_back(action.label);
    if (!sheet.message.empty()) fields["message"] = sheet.message;
    putColor(fields, "tint", sheet.tint);
    return fields;
}

}  // namespace supportsdk::host
