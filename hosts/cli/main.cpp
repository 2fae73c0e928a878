// support-host: an application without screens that embeds the kit and speaks JSON lines.

#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <fstream>

#include "backends/LinuxPlatform.h"
#include "backends/asio/AsioMainQueue.h"
#include "hosts/cli/CommandReader.h"
#include "hosts/cli/Commands.h"
#include "hosts/cli/EventReporter.h"
#include "hosts/cli/HostDelegate.h"
#include "hosts/cli/HostParts.h"
#include "hosts/cli/HostPhotoChooser.h"
#include "hosts/cli/HostPresenter.h"
#include "hosts/cli/Options.h"
#include "hosts/cli/Reports.h"

namespace {

using namespace supportsdk;
using namespace supportsdk::host;

/// Before any thread starts: the reader's thread alone waits for these.
void leaveSignalsToTheReader() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

std::shared_ptr<Platform> makePlatform(const Options& options,
                                       const std::shared_ptr<AsioMainQueue>& queue) {
    LinuxPlatformOptions wanted;
    wanted.mainQueue = queue;
    wanted.dataFolder = options.data;
    wanted.mainBundleFolder = options.bundle;
    wanted.extraAuthorities = options.authorities;
    wanted.logFile = options.log;
    return linuxPlatform(wanted);
}

void serve(const std::shared_ptr<Platform>& platform, AsioMainQueue& queue) {
    const auto reports = std::make_shared<Reports>(STDOUT_FILENO);
    const auto presenter = std::make_shared<HostPresenter>(reports, platform->mainQueue);
    const auto traits = std::make_shared<HostTraits>();
    platform->presenter = presenter;
    platform->progress = std::make_shared<HostProgress>(reports);
    platform->traits = traits;
    platform->globalAppearance = std::make_shared<HostGlobalAppearance>(reports);
    const auto chooser = std::make_shared<HostPhotoChooser>(reports, platform->mainQueue);
    platform->photoChooser = chooser;
    platform->urlOpener = std::make_shared<HostUrlOpener>(reports, platform->mainQueue);

    const EventReporter events(reports);
    const auto delegate = std::make_shared<HostDelegate>(reports, presenter);
    auto button = SupportButton::create(platform);
    button->delegate = delegate;
    button->view = delegate;
    delegate->iconDidChange(button->icon());

    const auto quit = [&queue] { queue.stop(); };
    Commands commands({platform, reports, presenter, traits, chooser, button, quit});
    std::unique_ptr<CommandReader> reader;
    reader = std::make_unique<CommandReader>(
        STDIN_FILENO, platform->mainQueue,
        CommandReader::Handlers{[&](std::optional<std::string> line) {
                                    commands.take(line, [&reader] { reader->next(); });
                                },
                                quit});
    reader->next();
    queue.run();
    reader.reset();
    presenter->clear();
}

}  // namespace

int main(int count, char** values) {
    const auto options = Options::parse({values + 1, values + count});
    if (!options) {
        std::fputs(usage, stderr);
        return 2;
    }
    if (!options->log.empty() && !std::ofstream(options->log, std::ios::app)) {
        std::fprintf(stderr, "support-host: cannot write to %s\n", options->log.c_str());
        return 2;
    }
    leaveSignalsToTheReader();
    const auto queue = std::make_shared<AsioMainQueue>();
    const auto platform = makePlatform(*options, queue);
    serve(platform, *queue);
    return 0;
}
