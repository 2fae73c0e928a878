#include "supportsdk/core/ImageLoader.h"

#include <gtest/gtest.h>

#include "backends/curl/CurlHttpClient.h"
#include "backends/image/PixbufImageCodec.h"
#include "backends/system/ThreadBackgroundQueue.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/LoopMainQueue.h"
#include "tests/support/LoopbackHttpServer.h"

namespace supportsdk::test {
namespace {

/// With a real server, codec and threads.
class ImageLoaderTest : public testing::Test {
 protected:
    ImageLoaderTest() {
        platform->mainQueue = queue;
        platform->backgroundQueue = std::make_shared<ThreadBackgroundQueue>();
        platform->images = std::make_shared<PixbufImageCodec>();
        platform->http =
            std::make_shared<CurlHttpClient>(CurlHttpClientOptions{queue, {}, nullptr});
        server.answer("/picture", 200, picture);
        server.on("/never",
                  [](const auto&, LoopbackConnection& connection) { connection.stall(); });
    }

    /// Whether there is a picture at `url`.
    bool loads(const std::string& url) {
        std::optional<ImagePtr> result;
        loader->load(url, [&](ImagePtr image) {
            EXPECT_TRUE(queue->isCurrent());
            EXPECT_FALSE(result) << "completed twice";
            result = std::move(image);
        });
        EXPECT_FALSE(result) << "completed inside the call";
        EXPECT_TRUE(queue->pumpUntil([&] { return result.has_value(); })) << url;
        return result && *result && (*result)->width == 5;
    }

    static std::string makePicture() {
        const Image image{5, 5, std::vector<std::uint8_t>(100, 200)};
        return toText(PixbufImageCodec().encodePng(image).value());
    }

    const std::string picture = makePicture();
    std::shared_ptr<LoopMainQueue> queue = std::make_shared<LoopMainQueue>();
    std::shared_ptr<Platform> platform = std::make_shared<Platform>();
    LoopbackHttpServer server;
    std::unique_ptr<ImageLoader> loader = std::make_unique<ImageLoader>(platform);
};

TEST_F(ImageLoaderTest, givesNothingForWhatIsNoPicture) {
    server.answer("/moved", 302, "", {{"Location", "/picture"}});
    server.answer("/page", 200, "<!DOCTYPE html><html></html>");
    server.answer("/missing", 404, picture);
    server.answer("/bomb", 200, std::string("GIF89a\xff\xff\xff\xff\0\0\0,", 14));
    EXPECT_TRUE(loads(server.url("/picture")));
    EXPECT_TRUE(loads(server.url("/moved")));
    for (const auto* path : {"/page", "/missing", "/bomb", "/nowhere"})
        EXPECT_FALSE(loads(server.url(path))) << path;
    for (const auto* url : {"", "http://", "http://a b/", "file:///etc/hostname", "ftp://h/p.png"})
        EXPECT_FALSE(loads(url)) << url;
    EXPECT_TRUE(loads(server.url("/picture"))) << "as before";
}

TEST_F(ImageLoaderTest, endsWithoutAWordWhenItIsDestroyed) {
    int completed = 0;
    const auto count = [&](const ImagePtr&) { ++completed; };
    loader->load(server.url("/never"), count);
    loader->load("nothing", count);
    for (int each = 0; each < 3; ++each) {
        loader->load(server.url("/picture"), [&](const ImagePtr& image) {
            EXPECT_TRUE(image);
            ++completed;
            loader.reset();
        });
    }
    EXPECT_TRUE(queue->pumpUntil([&] { return loader == nullptr; }));
    queue->pumpFor(std::chrono::milliseconds{50});
    EXPECT_EQ(completed, 2)
        << "of three that share a picture only the first, which ends the loader";
}

/// Holds work until the test runs it.
struct HeldQueue : FakeBackgroundQueue {
    using FakeBackgroundQueue::FakeBackgroundQueue;
    void post(std::function<void()> work) override { held.push_back(std::move(work)); }
    std::vector<std::function<void()>> held;
};

TEST(ImageLoaderCrowd, isServedAFewAtATimeAndOncePerAddress) {
    FakePlatform fakes;
    const auto background = std::make_shared<HeldQueue>(fakes.queue);
    fakes.platform->backgroundQueue = background;
    ImageLoader loader(fakes.platform);
    int completed = 0;
    for (int each = 0; each < 40; ++each) {
        loader.load("http://h/" + std::to_string(each % 20),
                    [&](const ImagePtr& image) { completed += image ? 1 : 0; });
    }
    const auto& sent = fakes.http->sent;
    EXPECT_EQ(sent.at(0).request.totalTimeout, ImageLoader::timeLimit);
    EXPECT_EQ(sent.at(0).request.maximumResponseBytes, ImageLoader::maximumBytes);
    std::size_t answered = 0;
    for (int round = 0; round < 40 && completed < 40; ++round) {
        EXPECT_LE(sent.size() - answered, ImageLoader::maximumLoads);
        while (answered < sent.size())
            fakes.http->answerRaw(answered++, {200, {}, toBytes("picture"), ""});
        EXPECT_LE(background->held.size(), ImageLoader::maximumDecodes);
        for (const auto& work : std::exchange(background->held, {})) work();
        fakes.queue->drain();
    }
    EXPECT_EQ(sent.size(), 20U);
    EXPECT_EQ(completed, 40);
}

}  // namespace
}  // namespace supportsdk::test
