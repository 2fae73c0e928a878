#include "hosts/cli/CommandFields.h"
#include "hosts/cli/Commands.h"
#include "supportsdk/core/Fields.h"

// What the person in front of the device does.

namespace supportsdk::host {

void Commands::tap(const Json&) {
    parts_.button->clicked();
}

void Commands::choose(const Json& command) {
    const auto label = need(command, "label");
    if (label)
        refuseUnless(parts_.presenter->choices().choose(*label),
                     "\"" + *label + "\" is not offered");
}

void Commands::press(const Json& command) {
    const auto label = need(command, "label");
    const auto screen = label ? needScreen() : nullptr;
    if (screen)
        refuseUnless(screen->press(*label), "\"" + *label + "\" is not on the screen, or disabled");
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

void Commands::tapLine(const Json& command) {
    const auto id = need(command, "id");
    const auto part = id ? need(command, "part") : std::nullopt;
    const auto screen = part ? needScreen() : nullptr;
    if (screen) refuseUnless(screen->tapLine(*id, *part), "no such part of a line is on view");
}

void Commands::pick(const Json& command) {
    const auto files = stringsForKey(command, "files");
    if (!files) return parts_.reports->refuse("\"files\" is no list of paths");
    refuseUnless(parts_.chooser->pick(*files), "no pictures are asked for");
}

void Commands::type(const Json& command) {
    const auto text = need(command, "text");
    if (!text) return;
    const auto field = stringForKey(command, "field");
    if (parts_.presenter->choices().type(*text, field)) return;
    const auto screen = needScreen();
    if (screen) refuseUnless(screen->type(*text, field), "nothing takes text here");
}

void Commands::set(const Json& command) {
    const auto field = need(command, "field");
    const auto* value = valueForKey(command, "value");
    if (!field) return;
    if (!value) return parts_.reports->refuse("\"value\" is missing");
    const auto screen = needScreen();
    if (screen) {
        refuseUnless(screen->set(*field, *value), "\"" + *field + "\" does not take that");
    }
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
    if (needScreen()) parts_.presenter->back();
}

void Commands::show(const Json&) {
    refuseUnless(parts_.presenter->show(), "no screen is open");
}

}  // namespace supportsdk::host
