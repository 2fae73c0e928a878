#include "supportsdk/core/ImageLoader.h"

#include <deque>
#include <map>
#include <utility>
#include <vector>

#include "supportsdk/core/Url.h"

namespace supportsdk {

/// Only the loader owns it: all that is under way elsewhere knows it weakly, and so ends with the
/// loader.
struct ImageLoader::State : std::enable_shared_from_this<State> {
    struct Encoded {
        std::string url;
        Bytes data;
    };

    explicit State(PlatformPtr wanted) : platform(std::move(wanted)) {}

    void load(const std::string& url, Completion completion) {
        auto& waiting = completions[url];
        waiting.push_back(std::move(completion));
        if (waiting.size() > 1) return;
        toFetch.push_back(url);
        fetchNext();
    }

    void fetchNext() {
        while (loads < maximumLoads && !toFetch.empty()) {
            const auto url = std::move(toFetch.front());
            toFetch.pop_front();
            ++loads;
            fetch(url);
        }
    }

    void fetch(const std::string& url) {
        if (!isWebAddress(url)) return postResult(url, nullptr);
        HttpRequest request;
        request.url = url;
        request.maximumResponseBytes = maximumBytes;
        request.idleTimeout = idleTimeLimit;
        request.totalTimeout = timeLimit;
        platform->http->send(std::move(request),
                             [weak = weak_from_this(), url](HttpResponse response) {
                                 if (const auto state = weak.lock())
                                     state->didFetch(url, std::move(response));
                             });
    }

    void didFetch(const std::string& url, HttpResponse response) {
        // What comes with an error status may be a picture too: one that tells of the error.
        if (!response.error.empty() || response.status / 100 != 2) return postResult(url, nullptr);
        toDecode.push_back({url, std::move(response.body)});
        decodeNext();
    }

    void decodeNext() {
        if (decodes == maximumDecodes || toDecode.empty()) return;
        ++decodes;
        auto next = std::make_shared<const Encoded>(std::move(toDecode.front()));
        toDecode.pop_front();
        platform->backgroundQueue->post([weak = weak_from_this(), next = std::move(next),
                                         images = platform->images, queue = platform->mainQueue] {
            queue->post([weak, url = next->url, image = images->decode(next->data)] {
                if (const auto state = weak.lock()) state->didDecode();
                finish(weak, url, image);
            });
        });
    }

    void didDecode() {
        --decodes;
        decodeNext();
    }

    void postResult(const std::string& url, const ImagePtr& image) {
        platform->mainQueue->post(
            [weak = weak_from_this(), url, image] { finish(weak, url, image); });
    }

    /// Completions may destroy the loader, after which none of the others may run.
    static void finish(const std::weak_ptr<State>& weak, const std::string& url,
                       const ImagePtr& image) {
        std::vector<Completion> waiting;
        if (const auto state = weak.lock()) {
            --state->loads;
            waiting = std::move(state->completions.extract(url).mapped());
            state->fetchNext();
        }
        for (const auto& completion : waiting) {
            if (weak.expired()) return;
            if (completion) completion(image);
        }
    }

    const PlatformPtr platform;
    /// By address, from the call to the result.
    std::map<std::string, std::vector<Completion>> completions;
    std::deque<std::string> toFetch;
    std::deque<Encoded> toDecode;
    /// From the start of a fetch to its result.
    std::size_t loads = 0;
    std::size_t decodes = 0;
};

ImageLoader::ImageLoader(PlatformPtr platform)
    : state_(std::make_shared<State>(std::move(platform))) {}

ImageLoader::~ImageLoader() = default;

void ImageLoader::load(const std::string& url, Completion completion) {
    state_->load(url, std::move(completion));
}

}  // namespace supportsdk
