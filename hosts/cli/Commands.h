#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "hosts/cli/DumpCommands.h"
#include "hosts/cli/HostParts.h"
#include "hosts/cli/HostPhotoChooser.h"
#include "hosts/cli/HostPresenter.h"
#include "hosts/cli/ProactiveCommands.h"
#include "hosts/cli/Reports.h"
#include "supportsdk/launcher/SupportButton.h"

namespace supportsdk::host {

/// Carries out the commands, one line each. Whatever cannot be done is answered with "refused".
class Commands {
 public:
    struct Parts {
        PlatformPtr platform;
        std::shared_ptr<Reports> reports;
        std::shared_ptr<HostPresenter> presenter;
        std::shared_ptr<HostTraits> traits;
        std::shared_ptr<HostPhotoChooser> chooser;
        std::shared_ptr<SupportButton> button;
        std::function<void()> quit;
    };

    explicit Commands(Parts parts);

    /// Takes one line (nothing: one that was too long), and calls `done` when the next may come:
    /// at once, or after a wait.
    void take(const std::optional<std::string>& line, std::function<void()> done);

 private:
    using Handler = void (Commands::*)(const Json& command);
    static Handler handlerOf(const std::string& name);

    void run(const std::optional<std::string>& line);
    void wait(const Json& command);
    void quit(const Json& command);

    // ApplicationCommands.cpp
    void load(const Json& command);
    void loadFile(const Json& command);
    void customer(const Json& command);
    void request(const Json& command);
    void dark(const Json& command);
    void theme(const Json& command);
    void advertise(const Json& command);
    void defaults(const Json& command);
    void settings(const Json& command);

    // PersonCommands.cpp
    void tap(const Json& command);
    void choose(const Json& command);
    void press(const Json& command);
    void select(const Json& command);
    void tapLine(const Json& command);
    void pick(const Json& command);
    void type(const Json& command);
    void set(const Json& command);
    void send(const Json& command);
    void pull(const Json& command);
    void back(const Json& command);
    void show(const Json& command);

    void refuseUnless(bool worked, const std::string& why);
    /// A string of the command; refuses and gives nothing when it is missing.
    std::optional<std::string> need(const Json& command, const char* key);
    bool needConfiguration();
    std::shared_ptr<ScreenAdapter> needScreen();

    Parts parts_;
    ProactiveCommands proactive_;
    DumpCommands dumps_;
    /// Of the command that runs.
    std::chrono::milliseconds pause_{0};
    Registration pauseTimer_;
};

}  // namespace supportsdk::host
