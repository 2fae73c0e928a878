#include "backends/gio/PortalPhotoChooser.h"

#include <gio/gio.h>

#include <filesystem>
#include <utility>

#include "backends/gio/PortalRequest.h"
#include "backends/posix/PlainFile.h"

namespace supportsdk {

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t maximumBytes = std::uintmax_t{64} * 1024 * 1024;

fs::path pathOf(const std::string& uri) {
    gchar* path = g_filename_from_uri(uri.c_str(), nullptr, nullptr);
    fs::path result = path ? path : "";
    g_free(path);
    return result;
}

std::vector<PhotoItem> itemsOf(const std::vector<std::string>& uris) {
    std::vector<PhotoItem> items;
    items.reserve(uris.size());
    for (const auto& uri : uris)
        items.push_back({nullptr, [uri] { return readPlainFile(pathOf(uri), maximumBytes); }});
    return items;
}

}  // namespace

/// One opening of the window. However its work ends, dropped unrun included, the end of it
/// completes the choice.
struct PortalPhotoChooser::Choice {
    Choice(std::weak_ptr<MainQueue> queue, Completion done)
        : weakQueue(std::move(queue)), completion(std::move(done)) {}
    ~Choice() {
        g_object_unref(cancellable);
        const auto queue = weakQueue.lock();
        if (!queue || !completion) return;
        queue->post([done = std::move(completion), chosen = std::move(items)]() mutable {
            done(std::move(chosen));
        });
    }
    Choice(const Choice&) = delete;
    Choice& operator=(const Choice&) = delete;

    // Weak: the host may let go of it while the person chooses.
    const std::weak_ptr<MainQueue> weakQueue;
    Completion completion;
    std::vector<PhotoItem> items;
    GCancellable* const cancellable = g_cancellable_new();
};

PortalPhotoChooser::PortalPhotoChooser(PortalPhotoChooserOptions options)
    : options_(std::move(options)) {}

PortalPhotoChooser::~PortalPhotoChooser() {
    cancel();
}

void PortalPhotoChooser::cancel() {
    if (const auto choice = latest_.lock()) g_cancellable_cancel(choice->cancellable);
}

void PortalPhotoChooser::choose(const PhotoChooserOptions& /*options*/, Completion completion) {
    cancel();
    auto choice = std::make_shared<Choice>(options_.mainQueue, std::move(completion));
    latest_ = choice;
    if (!queue_) queue_ = options_.backgroundQueue->makeSerialQueue("photo-chooser");
    const PortalTimeouts timeouts{options_.callTimeout, options_.choiceTimeout};
    queue_->post([choice = std::move(choice), timeouts, log = options_.log,
                  title = options_.localizer->localized("Choose pictures")] {
        if (g_cancellable_is_cancelled(choice->cancellable)) return;
        const auto answer = choosePicturesThroughPortal(title, timeouts, choice->cancellable);
        if (g_cancellable_is_cancelled(choice->cancellable)) return;
        if (!answer.isAnswered) log->write("No desktop portal to choose pictures.");
        choice->items = itemsOf(answer.uris);
    });
}

}  // namespace supportsdk
