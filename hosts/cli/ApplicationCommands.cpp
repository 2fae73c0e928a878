#include "hosts/cli/Commands.h"
#include "hosts/cli/ThemeReport.h"
#include "supportsdk/core/Fields.h"

// What the application that embeds the kit does.

namespace supportsdk::host {

void Commands::load(const Json& command) {
    const auto* configuration = valueForKey(command, "configuration");
    if (!configuration || !(configuration->is_object() || configuration->is_string())) {
        return parts_.reports->refuse("\"configuration\" is no object and no string");
    }
    const auto text = stringForKey(command, "configuration").value_or(dumpJson(*configuration));
    bool result = false;
    if (const auto customer = stringForKey(command, "customerJSON")) {
        result = parts_.button->loadConfigurationJSON(text, *customer);
    } else {
        const auto* information = valueForKey(command, "customer");
        result = parts_.button->loadConfigurationJSON(text, information ? *information : Json());
    }
    parts_.reports->write("loaded", {{"result", result}});
}

void Commands::loadFile(const Json& command) {
    const auto name = need(command, "name");
    if (!name) return;
    const auto* information = valueForKey(command, "customer");
    const bool result =
        parts_.button->loadConfigurationFile(*name, information ? *information : Json());
    parts_.reports->write("loaded", {{"result", result}});
}

void Commands::customer(const Json& command) {
    if (const auto json = stringForKey(command, "json")) {
        parts_.button->getCustomerWithJSON(*json);
    } else if (const auto* information = valueForKey(command, "information")) {
        parts_.button->getCustomerWithInformation(*information);
    } else {
        parts_.reports->refuse("neither \"information\" nor \"json\" is there");
    }
}

void Commands::request(const Json& command) {
    if (const auto name = need(command, "name")) parts_.button->sendRequest(*name);
}

void Commands::dark(const Json& command) {
    parts_.traits->setDark(boolForKey(command, "on"));
    parts_.presenter->lookChanged();
}

void Commands::defaults(const Json& command) {
    const auto suite = stringForKey(command, "suite");
    const auto stored = suite ? parts_.platform->userDefaults->suite(*suite)
                              : parts_.platform->userDefaults->standard();
    Json values = Json::object();
    for (const auto& key : stored->keys()) values[key] = stored->value(key).value_or(Json());
    parts_.reports->write("defaults", {{"values", values}});
}

void Commands::settings(const Json&) {
    if (needConfiguration()) parts_.button->actionSettings();
}

void Commands::theme(const Json&) {
    if (!needConfiguration()) return;
    parts_.reports->write("theme", describeTheme(*parts_.button->support->appearance));
}

void Commands::advertise(const Json& command) {
    const auto* shown = valueForKey(command, "public");
    if (shown && !shown->is_object()) return parts_.reports->refuse("\"public\" is no object");
    const auto* hidden = valueForKey(command, "private");
    refuseUnless(parts_.button->advertiseServiceWithPublicData(shown ? *shown : Json::object(),
                                                               hidden ? *hidden : Json()),
                 "this device cannot be advertised");
}

}  // namespace supportsdk::host
