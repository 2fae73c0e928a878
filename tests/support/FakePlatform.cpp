#include "tests/support/FakePlatform.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <strings.h>

namespace supportsdk::test {

Registration FakeMainQueue::after(std::chrono::milliseconds delay, std::function<void()> work) {
    const int id = nextTimer_++;
    timers_->emplace(now_ + delay, std::pair(id, std::move(work)));
    return Registration([timers = std::weak_ptr(timers_), id] {
        if (const auto held = timers.lock()) {
            std::erase_if(*held, [id](const auto& timer) { return timer.second.first == id; });
        }
    });
}

void FakeMainQueue::drain() {
    while (!posted_.empty()) {
        auto work = std::move(posted_.front());
        posted_.pop_front();
        work();
    }
}

void FakeMainQueue::advance(std::chrono::milliseconds duration) {
    const auto end = now_ + duration;
    drain();
    while (!timers_->empty() && timers_->begin()->first <= end) {
        now_ = timers_->begin()->first;
        auto work = std::move(timers_->begin()->second.second);
        timers_->erase(timers_->begin());
        work();
        drain();
    }
    now_ = end;
}

namespace {

class FakeSerialQueue : public SerialQueue {
 public:
    explicit FakeSerialQueue(std::shared_ptr<MainQueue> queue) : queue_(std::move(queue)) {}
    void post(std::function<void()> work) override { queue_->post(std::move(work)); }

 private:
    std::shared_ptr<MainQueue> queue_;
};

}  // namespace

std::shared_ptr<SerialQueue> FakeBackgroundQueue::makeSerialQueue(const std::string& label) {
    labels.push_back(label);
    return std::make_shared<FakeSerialQueue>(queue_);
}

std::tm FakeClock::local(Time moment) const {
    const std::time_t shifted = std::chrono::system_clock::to_time_t(moment + offset);
    std::tm parts{};
    gmtime_r(&shifted, &parts);
    parts.tm_gmtoff = offset.count();
    return parts;
}

Clock::Time FakeClock::fromLocal(const std::tm& parts) const {
    std::tm copy = parts;
    return std::chrono::system_clock::from_time_t(timegm(&copy)) - offset;
}

std::optional<Bytes> FakeHttpClient::read(const std::string& url, std::chrono::milliseconds) {
    reads.push_back(url);
    const auto found = readable.find(url);
    if (found == readable.end() || found->second.size() > maximumReadBytes) return std::nullopt;
    return found->second;
}

void FakeHttpClient::answer(std::size_t index, int status, const Json& body, HttpHeaders headers) {
    answerRaw(index, {status, std::move(headers), toBytes(body.dump()), ""});
}

void FakeHttpClient::answerRaw(std::size_t index, HttpResponse response) {
    ASSERT_LT(index, sent.size()) << "no such request";
    auto completion = std::exchange(sent[index].completion, nullptr);
    ASSERT_TRUE(completion) << "request " << index << " was answered before";
    completion(std::move(response));
}

void FakeHttpClient::answerTo(const std::string& part, int status, const Json& body,
                              HttpHeaders headers) {
    for (std::size_t index = sent.size(); index-- > 0;) {
        if (sent[index].completion && sent[index].request.url.find(part) != std::string::npos) {
            answer(index, status, body, std::move(headers));
            return;
        }
    }
    FAIL() << "no unanswered request to " << part;
}

std::optional<std::string> FakeHttpClient::header(const HttpRequest& request,
                                                  std::string_view name) {
    for (const auto& [key, value] : request.headers) {
        if (key.size() == name.size() && strncasecmp(key.data(), name.data(), key.size()) == 0)
            return value;
    }
    return std::nullopt;
}

void FakeXmppStream::State::authenticate(const std::string& jid) {
    authenticated = true;
    callbacks.authenticated(jid);
}

void FakeXmppStream::State::receive(std::string_view xml) {
    auto stanza = Stanza::parse(xml);
    ASSERT_TRUE(stanza) << xml;
    callbacks.received(std::move(stanza));
}

void FakeXmppStream::State::end(XmppLoss loss, const std::string& description) {
    authenticated = false;
    connected = false;
    // The stream may be destroyed inside its last callback.
    const auto ended = callbacks.ended;
    ended({loss, "", description});
}

void FakeXmppStream::connect(const XmppStreamOptions& options, Callbacks callbacks) {
    state_->options = options;
    state_->callbacks = std::move(callbacks);
    state_->connected = true;
}

void FakeXmppStream::send(std::string xml) {
    if (state_->authenticated) state_->sent.push_back(std::move(xml));
}

std::unique_ptr<XmppStream> FakeXmppStreamFactory::makeStream() {
    streams.push_back(std::make_shared<FakeXmppStream::State>());
    return std::make_unique<FakeXmppStream>(streams.back());
}

bool FakeReachabilityRef::setCallback(std::function<void(std::uint32_t)> newCallback) {
    if (newCallback) ++callbacksSet;
    callback = std::move(newCallback);
    return true;
}

bool FakeReachabilityRef::setQueue(std::shared_ptr<SerialQueue> newQueue) {
    if (newQueue && !acceptsQueue) return false;
    queue = std::move(newQueue);
    return true;
}

void FakeReachabilityRef::change(std::uint32_t newFlags) {
    current = newFlags;
    if (callback && queue) queue->post([callback = callback, newFlags] { callback(newFlags); });
}

std::shared_ptr<ReachabilityRef> FakeReachabilitySource::withHostName(const std::string& name) {
    if (!available) return nullptr;
    names.push_back(name);
    return refs.emplace_back(std::make_shared<FakeReachabilityRef>());
}

std::shared_ptr<ReachabilityRef> FakeReachabilitySource::withAddress(const sockaddr& address) {
    if (!available) return nullptr;
    if (address.sa_family == AF_INET) {
        addresses.push_back(ntohl(reinterpret_cast<const sockaddr_in&>(address).sin_addr.s_addr));
    }
    return refs.emplace_back(std::make_shared<FakeReachabilityRef>());
}

std::optional<Json> FakeUserDefaults::value(const std::string& key) const {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

std::vector<std::string> FakeUserDefaults::keys() const {
    std::vector<std::string> all;
    for (const auto& [key, value] : values) all.push_back(key);
    return all;
}

std::shared_ptr<UserDefaults> FakeUserDefaultsStore::suite(const std::string& name) {
    auto& found = suites_[name];
    if (!found) found = std::make_shared<FakeUserDefaults>();
    return found;
}

FakeUserDefaults& FakeUserDefaultsStore::fake(const std::string& name) {
    (void)suite(name);
    return *suites_.at(name);
}

namespace {

std::string fileName(const std::string& name, const std::string& type) {
    return type.empty() ? name : name + "." + type;
}

}  // namespace

std::optional<std::string> FakeBundle::info(const std::string& key) const {
    const auto found = infos.find(key);
    return found == infos.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::filesystem::path> FakeBundle::path(const std::string& name,
                                                      const std::string& type) const {
    const auto file = fileName(name, type);
    return files.contains(file) ? std::optional<std::filesystem::path>("/bundle/" + file)
                                : std::nullopt;
}

std::optional<Bytes> FakeBundle::data(const std::string& name, const std::string& type) const {
    const auto found = files.find(fileName(name, type));
    return found == files.end() ? std::nullopt : std::optional(toBytes(found->second));
}

std::string FakeLocalizer::localized(const std::string& english) const {
    const auto found = texts.find(english);
    return found == texts.end() ? english : found->second;
}

ImagePtr FakeImageCodec::decode(std::span<const std::byte> data) {
    if (data.empty() || toText(data).starts_with("bad")) return nullptr;
    return std::make_shared<Image>(Image{1, 1, {0, 0, 0, 255}});
}

void FakePresenter::choose(const std::string& label, const std::vector<std::string>& fields) {
    ASSERT_FALSE(alerts.empty()) << "no alert is open";
    const Alert alert = std::move(alerts.back());
    alerts.pop_back();
    for (const auto& action : alert.actions) {
        if (action.label != label) continue;
        if (action.handler) action.handler(fields);
        return;
    }
    FAIL() << "the alert has no action " << label;
}

std::optional<AnimatedImage> FakeImageCodec::decodeAnimation(std::span<const std::byte> data) {
    const auto image = decode(data);
    if (!image) return std::nullopt;
    return AnimatedImage{{{image, std::chrono::milliseconds{0}}}};
}

ImagePtr FakeImageCodec::scaled(const Image&, std::uint32_t width, std::uint32_t height) {
    auto image = std::make_shared<Image>();
    image->width = width;
    image->height = height;
    image->pixels.resize(std::size_t{4} * width * height);
    return image;
}

std::shared_ptr<NetService> FakeNetServiceFactory::makeService(const std::string& domain,
                                                               const std::string& type,
                                                               const std::string& name,
                                                               std::uint16_t port) {
    if (!available) return nullptr;
    auto service = std::make_shared<FakeNetService>();
    service->wantedName = name;
    service->wantedType = type;
    service->wantedDomain = domain;
    service->wantedPort = port;
    services.push_back(service);
    return service;
}

std::optional<Color> FakeTraits::systemColor(const std::string& name) const {
    const auto found = systemColors.find(name);
    return found == systemColors.end() ? std::nullopt : std::optional(found->second);
}

void FakePlatform::settle() const {
    do {
        for (const auto& request : std::exchange(http->sent, {})) request.completion({});
        queue->drain();
    } while (!http->sent.empty());
    log->lines.clear();
}

FakePlatform::FakePlatform() {
    platform->log = log;
    platform->clock = clock;
    platform->device = std::make_shared<FakeDevice>();
    platform->mainQueue = queue;
    platform->backgroundQueue = background;
    platform->http = http;
    platform->xmpp = xmpp;
    platform->reachability = reachability;
    platform->userDefaults = defaults;
    platform->mainBundle = mainBundle;
    platform->kitBundle = kitBundle;
    platform->localizer = localizer;
    platform->images = std::make_shared<FakeImageCodec>();
    platform->presenter = presenter;
    platform->progress = progress;
    platform->traits = traits;
    platform->globalAppearance = globalAppearance;
    platform->netServices = netServices;
    platform->urlOpener = urlOpener;
    platform->photoChooser = photoChooser;
}

FakePlatform::~FakePlatform() {
    presenter->presented.clear();
    presenter->pushed.clear();
}

}  // namespace supportsdk::test
