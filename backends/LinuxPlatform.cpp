#include "backends/LinuxPlatform.h"

#include <dlfcn.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "backends/avahi/AvahiNetServiceFactory.h"
#include "backends/curl/CurlHttpClient.h"
#include "backends/gio/PortalPhotoChooser.h"
#include "backends/gio/PortalTraits.h"
#include "backends/gio/PortalUrlOpener.h"
#include "backends/image/PixbufImageCodec.h"
#include "backends/netlink/NetlinkReachability.h"
#include "backends/sqlite/SqliteUserDefaults.h"
#include "backends/strophe/StropheStreamFactory.h"
#include "backends/system/DirectoryBundle.h"
#include "backends/system/GettextLocalizer.h"
#include "backends/system/LinuxDevice.h"
#include "backends/system/Logs.h"
#include "backends/system/NoneScreens.h"
#include "backends/system/SystemClock.h"
#include "backends/system/ThreadBackgroundQueue.h"

namespace supportsdk {

namespace fs = std::filesystem;

namespace {

/// The folder that the library, or the program that it was linked into, was loaded from.
fs::path libraryFolder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&linuxPlatform), &info) == 0 || !info.dli_fname)
        return {};
    std::error_code error;
    return fs::canonical(info.dli_fname, error).parent_path();
}

/// Found from the library, so that an installation can be moved; in a build tree they lie beside
/// it.
fs::path defaultResources() {
    fs::path installed(SUPPORTSDK_INSTALLED_RESOURCES);
    const auto folder = libraryFolder();
    if (folder.empty()) return installed;
    std::error_code error;
    for (const auto& candidate :
         {folder / SUPPORTSDK_RESOURCES_FROM_LIBRARY, folder / "resources"}) {
        if (fs::exists(candidate / "deployment.json", error)) return candidate.lexically_normal();
    }
    return installed;
}

fs::path homeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    passwd entry{};
    passwd* found = nullptr;
    std::vector<char> buffer(16'384);
    getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
    return found && found->pw_dir ? found->pw_dir : "/";
}

/// By the rules of the XDG base folders a relative path counts as none.
fs::path defaultDataFolder() {
    const char* named = std::getenv("XDG_DATA_HOME");
    const fs::path data(named ? named : "");
    return (data.is_absolute() ? data : homeFolder() / ".local/share") / "supportsdk";
}

fs::path firstNamed(const fs::path& wanted, fs::path (*otherwise)()) {
    return wanted.empty() ? otherwise() : wanted;
}

std::shared_ptr<Log> makeLog(const LinuxPlatformOptions& options) {
    if (options.log) return options.log;
    if (!options.logFile.empty()) return std::make_shared<FileLog>(options.logFile);
    return std::make_shared<StderrLog>();
}

void fillNetwork(Platform& platform, const LinuxPlatformOptions& options) {
    platform.http = std::make_shared<CurlHttpClient>(
        CurlHttpClientOptions{options.mainQueue, options.extraAuthorities, platform.log});
    platform.xmpp = std::make_shared<StropheStreamFactory>(
        StropheOptions{options.mainQueue, platform.log, options.extraAuthorities,
                       options.allowClearTextOnLoopback});
    platform.reachability = std::make_shared<NetlinkReachability>(platform.backgroundQueue);
    platform.netServices = std::make_shared<AvahiNetServiceFactory>(options.mainQueue);
}

void fillFiles(Platform& platform, const LinuxPlatformOptions& options) {
    const auto resources = firstNamed(options.resourcesFolder, defaultResources);
    platform.userDefaults = std::make_shared<SqliteUserDefaultsStore>(
        firstNamed(options.dataFolder, defaultDataFolder), platform.log);
    platform.mainBundle = std::make_shared<DirectoryBundle>(options.mainBundleFolder);
    platform.kitBundle = std::make_shared<DirectoryBundle>(resources);
    platform.localizer = std::make_shared<GettextLocalizer>(
        resources / "translations",
        options.languages.empty() ? languagesOfEnvironment() : options.languages);
    platform.images = std::make_shared<PixbufImageCodec>();
}

}  // namespace

std::shared_ptr<Platform> linuxPlatform(const LinuxPlatformOptions& options) {
    if (!options.mainQueue) return nullptr;
    auto platform = std::make_shared<Platform>();
    platform->log = makeLog(options);
    platform->clock = std::make_shared<SystemClock>();
    platform->device = std::make_shared<LinuxDevice>();
    platform->mainQueue = options.mainQueue;
    platform->backgroundQueue = std::make_shared<ThreadBackgroundQueue>();
    fillNetwork(*platform, options);
    fillFiles(*platform, options);
    platform->presenter = std::make_shared<NonePresenter>();
    platform->progress = std::make_shared<NoneProgress>();
    platform->traits = std::make_shared<PortalTraits>(options.mainQueue);
    platform->globalAppearance = std::make_shared<NoneGlobalAppearance>();
    platform->urlOpener = std::make_shared<PortalUrlOpener>(
        PortalUrlOpenerOptions{options.mainQueue, platform->backgroundQueue});
    platform->photoChooser = std::make_shared<PortalPhotoChooser>(PortalPhotoChooserOptions{
        options.mainQueue, platform->backgroundQueue, platform->log, platform->localizer});
    return platform;
}

}  // namespace supportsdk
