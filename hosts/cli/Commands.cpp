#include "hosts/cli/Commands.h"

#include <algorithm>
#include <map>

#include "supportsdk/core/Fields.h"

namespace supportsdk::host {

namespace {

constexpr std::int64_t longestWait = 600'000;

}  // namespace

Commands::Handler Commands::handlerOf(const std::string& name) {
    static const std::map<std::string, Handler> handlers = {
        {"load", &Commands::load},         {"loadFile", &Commands::loadFile},
        {"customer", &Commands::customer}, {"tap", &Commands::tap},
        {"choose", &Commands::choose},     {"press", &Commands::press},
        {"select", &Commands::select},     {"type", &Commands::type},
        {"send", &Commands::send},         {"pull", &Commands::pull},
        {"back", &Commands::back},         {"request", &Commands::request},
        {"dark", &Commands::dark},         {"show", &Commands::show},
        {"defaults", &Commands::defaults}, {"settings", &Commands::settings},
        {"wait", &Commands::wait},         {"quit", &Commands::quit},
    };
    const auto found = handlers.find(name);
    return found == handlers.end() ? nullptr : found->second;
}

void Commands::take(const std::optional<std::string>& line, std::function<void()> done) {
    pause_ = {};
    run(line);
    if (pause_.count() == 0) {
        done();
    } else {
        pauseTimer_ = parts_.platform->mainQueue->after(pause_, std::move(done));
    }
}

void Commands::run(const std::optional<std::string>& line) {
    if (!line) return parts_.reports->refuse("the line is too long");
    const auto command = parseJson(*line);
    if (!command || !command->is_object()) {
        return parts_.reports->refuse("the line is no JSON object");
    }
    const auto name = stringForKey(*command, "do");
    if (!name) return parts_.reports->refuse("\"do\" is missing");
    const auto handler = handlerOf(*name);
    if (!handler) return parts_.reports->refuse("this host cannot do \"" + *name + "\"");
    (this->*handler)(*command);
}

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

void Commands::tap(const Json&) {
    parts_.button->clicked();
}

void Commands::choose(const Json& command) {
    const auto label = need(command, "label");
    if (label) refuseUnless(parts_.presenter->choose(*label), "\"" + *label + "\" is not offered");
}

void Commands::press(const Json& command) {
    const auto label = need(command, "label");
    const auto screen = label ? needScreen() : nullptr;
    if (screen) refuseUnless(screen->press(*label), "\"" + *label + "\" is not on the screen");
}

void Commands::select(const Json& command) {
    const auto row = integerForKey(command, "row");
    const auto section = integerForKey(command, "section").value_or(0);
    if (!row || *row < 0 || section < 0) return parts_.reports->refuse("\"row\" is no row");
    const auto screen = needScreen();
    if (!screen) return;
    refuseUnless(screen->select(static_cast<std::size_t>(section), static_cast<std::size_t>(*row)),
                 "the screen has no such row");
}

void Commands::type(const Json& command) {
    const auto text = need(command, "text");
    if (!text) return;
    const auto field = stringForKey(command, "field");
    if (parts_.presenter->typeIntoAlert(*text, field)) return;
    const auto screen = needScreen();
    if (screen) refuseUnless(screen->type(*text, field), "nothing takes text here");
}

void Commands::send(const Json&) {
    const auto screen = needScreen();
    if (screen) refuseUnless(screen->send(), "there is nothing to send");
}

void Commands::pull(const Json&) {
    const auto screen = needScreen();
    if (screen) refuseUnless(screen->pull(), "this screen cannot be pulled");
}

void Commands::back(const Json&) {
    refuseUnless(parts_.presenter->back(), "no screen is open");
}

void Commands::request(const Json& command) {
    if (const auto name = need(command, "name")) parts_.button->sendRequest(*name);
}

void Commands::dark(const Json& command) {
    parts_.traits->setDark(boolForKey(command, "on"));
}

void Commands::show(const Json&) {
    refuseUnless(parts_.presenter->show(), "no screen is open");
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
    if (!parts_.button->support) return parts_.reports->refuse("no configuration was loaded");
    parts_.button->actionSettings();
}

void Commands::wait(const Json& command) {
    const auto milliseconds = integerForKey(command, "milliseconds").value_or(-1);
    if (milliseconds < 0 || milliseconds > longestWait) {
        return parts_.reports->refuse("\"milliseconds\" is not from 0 to 600000");
    }
    pause_ = std::chrono::milliseconds{milliseconds};
}

void Commands::quit(const Json&) {
    parts_.quit();
}

void Commands::refuseUnless(bool worked, const std::string& why) {
    if (!worked) parts_.reports->refuse(why);
}

std::optional<std::string> Commands::need(const Json& command, const char* key) {
    auto value = stringForKey(command, key);
    if (!value) parts_.reports->refuse("\"" + std::string(key) + "\" is missing or no string");
    return value;
}

std::shared_ptr<ScreenAdapter> Commands::needScreen() {
    auto screen = parts_.presenter->top();
    if (!screen) parts_.reports->refuse("no screen is open");
    return screen;
}

}  // namespace supportsdk::host
