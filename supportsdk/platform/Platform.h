#pragma once

#include <memory>

#include "supportsdk/platform/Bundle.h"
#include "supportsdk/platform/Clock.h"
#include "supportsdk/platform/Device.h"
#include "supportsdk/platform/HttpClient.h"
#include "supportsdk/platform/Images.h"
#include "supportsdk/platform/Localizer.h"
#include "supportsdk/platform/Log.h"
#include "supportsdk/platform/NetService.h"
#include "supportsdk/platform/PhotoChooser.h"
#include "supportsdk/platform/Queues.h"
#include "supportsdk/platform/Reachability.h"
#include "supportsdk/platform/Screens.h"
#include "supportsdk/platform/UrlOpener.h"
#include "supportsdk/platform/UserDefaults.h"
#include "supportsdk/platform/XmppStream.h"

namespace supportsdk {

/// All that the kit asks of the system it runs on. Every slot must be filled: linuxPlatform()
/// (backends/LinuxPlatform.h) fills them all, and a host replaces those that it has an own part
/// for. Shared by everything the kit creates; it must not change once the kit has it.
struct Platform {
    std::shared_ptr<Log> log;
    std::shared_ptr<Clock> clock;
    std::shared_ptr<Device> device;

    std::shared_ptr<MainQueue> mainQueue;
    std::shared_ptr<BackgroundQueue> backgroundQueue;

    std::shared_ptr<HttpClient> http;
    std::shared_ptr<XmppStreamFactory> xmpp;
    std::shared_ptr<ReachabilitySource> reachability;
    std::shared_ptr<NetServiceFactory> netServices;

    std::shared_ptr<UserDefaultsStore> userDefaults;
    /// The host application's bundle, and the kit's own ("com.goquorrand.supportsdk").
    std::shared_ptr<Bundle> mainBundle;
    std::shared_ptr<Bundle> kitBundle;
    std::shared_ptr<Localizer> localizer;
    std::shared_ptr<ImageCodec> images;

    std::shared_ptr<Presenter> presenter;
    std::shared_ptr<Progress> progress;
    std::shared_ptr<Traits> traits;
    std::shared_ptr<GlobalAppearance> globalAppearance;
    std::shared_ptr<UrlOpener> urlOpener;
    std::shared_ptr<PhotoChooser> photoChooser;
};

using PlatformPtr = std::shared_ptr<const Platform>;

}  // namespace supportsdk
