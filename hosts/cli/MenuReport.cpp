#include "hosts/cli/MenuReport.h"

#include "hosts/cli/Looks.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/theme/Appearance.h"

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

void addLook(Json& fields, const Appearance& theme) {
    auto& colors = fields["colors"] = Json::object();
    putColor(colors, "text", theme.menuTextColor());
    putColor(colors, "icon", theme.menuIconColor());
    putColor(colors, "background", theme.menuBackgroundColor());
    putColor(colors, "border", theme.menuBorderColor());
    if (const auto style = theme.menuTextStyle()) fields["textStyle"] = *style;
    fields["textSize"] = theme.menuTextSize();
    fields["borderWidth"] = theme.menuBorderWidth();
    fields["padding"] = theme.menuPadding();
    fields["spacing"] = theme.menuSpacing();
    fields["dark"] = theme.darkMode();
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
    if (menu.support) addLook(fields, *menu.support->appearance);
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
