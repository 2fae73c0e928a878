#include "hosts/cli/Commands.h"

#include <map>

#include "supportsdk/core/Fields.h"

namespace supportsdk::host {

namespace {

constexpr std::int64_t longestWait = 600'000;

}  // namespace

Commands::Commands(Parts parts)
    : parts_(std::move(parts)),
      proactive_(parts_.platform, parts_.reports),
      dumps_(parts_.platform->mainQueue, parts_.reports) {}

Commands::Handler Commands::handlerOf(const std::string& name) {
    static const std::map<std::string, Handler> handlers = {
        {"load", &Commands::load},
        {"loadFile", &Commands::loadFile},
        {"customer", &Commands::customer},
        {"request", &Commands::request},
        {"dark", &Commands::dark},
        {"theme", &Commands::theme},
        {"advertise", &Commands::advertise},
        {"defaults", &Commands::defaults},
        {"settings", &Commands::settings},
        {"tap", &Commands::tap},
        {"choose", &Commands::choose},
        {"press", &Commands::press},
        {"select", &Commands::select},
        {"tapLine", &Commands::tapLine},
        {"pick", &Commands::pick},
        {"type", &Commands::type},
        {"set", &Commands::set},
        {"send", &Commands::send},
        {"pull", &Commands::pull},
        {"back", &Commands::back},
        {"show", &Commands::show},
        {"wait", &Commands::wait},
        {"quit", &Commands::quit},
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
    if (const auto handler = handlerOf(*name)) return (this->*handler)(*command);
    refuseUnless(proactive_.take(*name, *command) || dumps_.take(*name, *command),
                 "this host cannot do \"" + *name + "\"");
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

bool Commands::needConfiguration() {
    refuseUnless(parts_.button->support != nullptr, "no configuration was loaded");
    return parts_.button->support != nullptr;
}

std::shared_ptr<ScreenAdapter> Commands::needScreen() {
    if (parts_.presenter->choices().isAlertOpen()) {
        parts_.reports->refuse("an alert is open: choose");
        return nullptr;
    }
    auto screen = parts_.presenter->top();
    if (!screen) parts_.reports->refuse("no screen is open");
    return screen;
}

}  // namespace supportsdk::host
