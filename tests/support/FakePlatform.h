#pragma once

#include <ctime>
#include <deque>
#include <string>

#include "supportsdk/platform/Observers.h"
#include "supportsdk/platform/Platform.h"
#include "supportsdk/platform/Stanza.h"

// Fakes for every platform slot: no threads, no clock of their own, no network. Time passes only
// when a test says so, and what the kit asks of the system is recorded.

namespace supportsdk::test {

class FakeMainQueue : public MainQueue {
 public:
    void post(std::function<void()> work) override { posted_.push_back(std::move(work)); }
    [[nodiscard]] Registration after(std::chrono::milliseconds delay,
                                     std::function<void()> work) override;
    [[nodiscard]] bool isCurrent() const override { return true; }

    /// Runs what is posted, and what that posts, until nothing is left; timers do not fire.
    void drain();
    /// Lets time pass: drains, then fires timers in their order up to `duration` from now, draining
    /// in between.
    void advance(std::chrono::milliseconds duration);
    [[nodiscard]] std::size_t pendingTimers() const { return timers_->size(); }

 private:
    using Timers = std::multimap<std::chrono::milliseconds, std::pair<int, std::function<void()>>>;
    std::deque<std::function<void()>> posted_;
    std::shared_ptr<Timers> timers_ = std::make_shared<Timers>();
    std::chrono::milliseconds now_{0};
    int nextTimer_ = 0;
};

/// Runs background work inside drain() of the main queue it was made with.
class FakeBackgroundQueue : public BackgroundQueue {
 public:
    explicit FakeBackgroundQueue(std::shared_ptr<MainQueue> queue) : queue_(std::move(queue)) {}
    void post(std::function<void()> work) override { queue_->post(std::move(work)); }
    [[nodiscard]] std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& label) override;

    std::vector<std::string> labels;

 private:
    std::shared_ptr<MainQueue> queue_;
};

/// Stands still at 2026-01-31 12:00:30 UTC until a test moves it; the zone is a fixed offset.
class FakeClock : public Clock {
 public:
    [[nodiscard]] Time now() const override { return time; }
    [[nodiscard]] std::tm local(Time moment) const override;
    [[nodiscard]] Time fromLocal(const std::tm& parts) const override;

    Time time = Time(std::chrono::seconds{1769860830});
    std::chrono::seconds offset{0};
};

class FakeLog : public Log {
 public:
    void write(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

class FakeDevice : public Device {
 public:
    [[nodiscard]] std::string systemVersion() const override { return "6.1"; }
    [[nodiscard]] std::string model() const override { return "TestDevice"; }
};

/// Records requests; a test answers them by index, in any order.
class FakeHttpClient : public HttpClient {
 public:
    void send(HttpRequest request, Completion completion) override {
        sent.push_back({std::move(request), std::move(completion)});
    }
    [[nodiscard]] std::optional<Bytes> read(const std::string& url,
                                            std::chrono::milliseconds limit) override;

    struct Sent {
        HttpRequest request;
        Completion completion;
    };

    /// Answers request `index` with a JSON body. Runs the completion inside the call.
    void answer(std::size_t index, int status, const Json& body, HttpHeaders headers = {});
    void answerRaw(std::size_t index, HttpResponse response);
    /// Answers the latest request whose URL contains `part`; fails the test when there is none
    /// unanswered.
    void answerTo(const std::string& part, int status, const Json& body, HttpHeaders headers = {});
    [[nodiscard]] const HttpRequest& request(std::size_t index) const {
        return sent.at(index).request;
    }
    [[nodiscard]] static std::optional<std::string> header(const HttpRequest& request,
                                                           std::string_view name);

    std::vector<Sent> sent;
    /// What read() finds, by URL.
    std::map<std::string, Bytes> readable;
    std::vector<std::string> reads;
};

/// A stream that a test drives: it sees what was sent and injects stanzas.
class FakeXmppStream : public XmppStream {
 public:
    struct State {
        XmppStreamOptions options;
        Callbacks callbacks;
        std::vector<std::string> sent;
        bool connected = false;
        bool authenticated = false;
        bool disconnectRequested = false;
        bool aborted = false;
        bool destroyed = false;

        void authenticate(const std::string& jid = "user@example.test/kit");
        void receive(std::string_view xml);
        void end(XmppLoss loss, const std::string& description = {});
    };

    explicit FakeXmppStream(std::shared_ptr<State> state) : state_(std::move(state)) {}
    ~FakeXmppStream() override { state_->destroyed = true; }

    void connect(const XmppStreamOptions& options, Callbacks callbacks) override;
    void send(std::string xml) override;
    void disconnect() override { state_->disconnectRequested = true; }
    void abort() override { state_->aborted = true; }
    [[nodiscard]] bool isConnecting() const override {
        return state_->connected && !state_->authenticated;
    }
    [[nodiscard]] bool isAuthenticated() const override { return state_->authenticated; }

 private:
    std::shared_ptr<State> state_;
};

class FakeXmppStreamFactory : public XmppStreamFactory {
 public:
    [[nodiscard]] std::unique_ptr<XmppStream> makeStream() override;
    /// The streams made so far, the latest last; their states outlive them.
    std::vector<std::shared_ptr<FakeXmppStream::State>> streams;
};

class FakeReachabilityRef : public ReachabilityRef {
 public:
    [[nodiscard]] std::optional<std::uint32_t> flags() override { return current; }
    bool setCallback(std::function<void(std::uint32_t)> newCallback) override;
    bool setQueue(std::shared_ptr<SerialQueue> newQueue) override;
    void change(std::uint32_t newFlags);

    std::optional<std::uint32_t> current = 0;
    bool acceptsQueue = true;
    int callbacksSet = 0;
    std::function<void(std::uint32_t)> callback;
    std::shared_ptr<SerialQueue> queue;
};

class FakeReachabilitySource : public ReachabilitySource {
 public:
    [[nodiscard]] std::shared_ptr<ReachabilityRef> withHostName(const std::string& name) override;
    [[nodiscard]] std::shared_ptr<ReachabilityRef> withAddress(const sockaddr& address) override;
    std::vector<std::shared_ptr<FakeReachabilityRef>> refs;
    std::vector<std::string> names;
    std::vector<std::uint32_t> addresses;  // IPv4, host byte order
    bool available = true;
};

class FakeUserDefaults : public UserDefaults {
 public:
    [[nodiscard]] std::optional<Json> value(const std::string& key) const override;
    void setValue(const std::string& key, const Json& value) override { values[key] = value; }
    void remove(const std::string& key) override { values.erase(key); }
    bool flush() override { return ++flushes > 0; }
    [[nodiscard]] std::vector<std::string> keys() const override;

    std::map<std::string, Json> values;
    int flushes = 0;
};

class FakeUserDefaultsStore : public UserDefaultsStore {
 public:
    [[nodiscard]] std::shared_ptr<UserDefaults> standard() override { return suite(""); }
    [[nodiscard]] std::shared_ptr<UserDefaults> suite(const std::string& name) override;
    [[nodiscard]] FakeUserDefaults& fake(const std::string& name = "");

 private:
    std::map<std::string, std::shared_ptr<FakeUserDefaults>> suites_;
};

class FakeBundle : public Bundle {
 public:
    [[nodiscard]] std::optional<std::string> info(const std::string& key) const override;
    [[nodiscard]] std::optional<std::filesystem::path> path(const std::string& name,
                                                            const std::string& type) const override;
    [[nodiscard]] std::optional<Bytes> data(const std::string& name,
                                            const std::string& type) const override;

    std::map<std::string, std::string> infos;
    /// By file name, "name.type".
    std::map<std::string, std::string> files;
};

/// Returns the key, or what a test put into `texts`.
class FakeLocalizer : public Localizer {
 public:
    [[nodiscard]] std::string localized(const std::string& english) const override;
    std::map<std::string, std::string> texts;
};

/// Every non-empty data is a picture of one pixel, unless it begins with "bad". What it encodes is
/// "jpeg" or "png".
class FakeImageCodec : public ImageCodec {
 public:
    [[nodiscard]] ImagePtr decode(std::span<const std::byte> data) override;
    [[nodiscard]] std::optional<AnimatedImage> decodeAnimation(
        std::span<const std::byte> data) override;
    [[nodiscard]] ImagePtr scaled(const Image& image, std::uint32_t width,
                                  std::uint32_t height) override;
    [[nodiscard]] std::optional<Bytes> encodeJpeg(const Image&, double) override {
        return toBytes("jpeg");
    }
    [[nodiscard]] std::optional<Bytes> encodePng(const Image&) override { return toBytes("png"); }
};

/// Keeps what was published; a test says what becomes of it.
class FakeNetService : public NetService {
 public:
    void setIncludesPeerToPeer(bool includes) override { peerToPeer = includes; }
    void setDelegate(std::weak_ptr<NetServiceDelegate> wanted) override { delegate = wanted; }
    bool setTXTRecordData(Bytes wanted) override {
        record = std::move(wanted);
        return true;
    }
    void publish() override { published = true; }
    [[nodiscard]] std::string name() const override { return wantedName; }
    [[nodiscard]] std::string type() const override { return wantedType; }
    [[nodiscard]] std::string domain() const override { return wantedDomain; }
    [[nodiscard]] std::uint16_t port() const override { return wantedPort; }

    std::string wantedName, wantedType, wantedDomain;
    std::uint16_t wantedPort = 0;
    std::weak_ptr<NetServiceDelegate> delegate;
    Bytes record;
    bool peerToPeer = false;
    bool published = false;
};

class FakeNetServiceFactory : public NetServiceFactory {
 public:
    [[nodiscard]] std::shared_ptr<NetService> makeService(const std::string& domain,
                                                          const std::string& type,
                                                          const std::string& name,
                                                          std::uint16_t port) override;
    std::vector<std::weak_ptr<FakeNetService>> services;
    bool available = true;
};

class FakePresenter : public Presenter {
 public:
    [[nodiscard]] std::shared_ptr<ScreenController> rootController() override { return root; }
    void present(std::shared_ptr<ScreenController> screen, ScreenController*) override {
        presented.push_back(std::move(screen));
        if (cover) cover();
    }
    void push(std::shared_ptr<ScreenController> screen, ScreenController&) override {
        pushed.push_back(std::move(screen));
        if (cover) cover();
    }
    void pop(ScreenController& screen) override { log.push_back("pop " + screen.title); }
    void dismiss(ScreenController& screen) override { log.push_back("dismiss " + screen.title); }
    void showAlert(Alert alert) override { alerts.push_back(std::move(alert)); }
    void showSheet(ActionSheet) override {}

    /// Chooses an action of the latest alert by its label; fails the test when there is none.
    void choose(const std::string& label, const std::vector<std::string>& fields = {});

    std::shared_ptr<ScreenController> root;
    std::vector<std::shared_ptr<ScreenController>> presented;
    std::vector<std::shared_ptr<ScreenController>> pushed;
    std::vector<Alert> alerts;
    std::vector<std::string> log;
    /// Runs when a screen comes to lie over another one.
    std::function<void()> cover;
};

/// Writes down what was shown: "status X", "error X", "info X", "success X", "dismiss", "dismiss
/// after 3000".
class FakeProgress : public Progress {
 public:
    void showStatus(const std::string& text) override { shown.push_back("status " + text); }
    void showError(const std::string& text) override { shown.push_back("error " + text); }
    void showInfo(const std::string& text) override { shown.push_back("info " + text); }
    void showSuccess(const std::string& text) override { shown.push_back("success " + text); }
    void dismiss() override { shown.emplace_back("dismiss"); }
    void dismissAfter(std::chrono::milliseconds delay) override {
        shown.push_back("dismiss after " + std::to_string(delay.count()));
    }
    void setMinimumDisplayTime(std::chrono::milliseconds) override {}
    void setDarkStyle(bool dark) override { darkStyle = dark; }

    std::vector<std::string> shown;
    bool darkStyle = false;
};

/// Remembers who asked; a test answers.
class FakePhotoChooser : public PhotoChooser {
 public:
    void choose(const PhotoChooserOptions& wanted,
                std::function<void(std::vector<PhotoItem>)> done) override {
        options = wanted;
        ++openings;
        completion = std::move(done);
    }
    void answer(std::vector<PhotoItem> items) {
        std::exchange(completion, nullptr)(std::move(items));
    }

    PhotoChooserOptions options;
    int openings = 0;
    std::function<void(std::vector<PhotoItem>)> completion;
};

class FakeTraits : public Traits {
 public:
    [[nodiscard]] bool darkMode() const override { return dark; }
    [[nodiscard]] std::optional<Color> systemColor(const std::string& name) const override;
    [[nodiscard]] Registration observe(std::function<void()> changed) override {
        return observers.add(std::move(changed));
    }
    /// Switches, and tells who observes.
    void setDark(bool on) {
        dark = on;
        observers.notify();
    }

    bool dark = false;
    std::map<std::string, Color> systemColors;
    Observers observers;
};

class FakeGlobalAppearance : public GlobalAppearance {
 public:
    void setNavigationBarTranslucent(bool on) override { translucent = on; }
    void setNavigationBarTintColor(const std::optional<Color>& color) override { barTint = color; }
    void setNavigationBarBarTintColor(const std::optional<Color>& color) override {
        barBackground = color;
    }
    void setControlTintColor(const std::optional<Color>& color) override { controlTint = color; }

    bool translucent = true;
    std::optional<Color> barTint, barBackground, controlTint;
};

class FakeUrlOpener : public UrlOpener {
 public:
    [[nodiscard]] bool canOpen(const std::string& url) override {
        return telephone || !url.starts_with("tel:");
    }
    void open(const std::string& url, std::function<void(bool)> completion) override {
        opened.push_back(url);
        completion(works);
    }
    [[nodiscard]] bool canSendMail() override { return mail; }

    std::vector<std::string> opened;
    bool works = true;
    bool mail = true;
    bool telephone = true;
};

/// A platform of fakes, with a typed view of each.
struct FakePlatform {
    FakePlatform();
    /// Screens keep the platform, and what presents them keeps the screens: an end to that.
    ~FakePlatform();
    FakePlatform(const FakePlatform&) = delete;
    FakePlatform& operator=(const FakePlatform&) = delete;

    /// Fails every request, those that follow included, so that nothing is held by one any more;
    /// empties the log.
    void settle() const;

    std::shared_ptr<FakeMainQueue> queue = std::make_shared<FakeMainQueue>();
    std::shared_ptr<FakeBackgroundQueue> background = std::make_shared<FakeBackgroundQueue>(queue);
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    std::shared_ptr<FakeLog> log = std::make_shared<FakeLog>();
    std::shared_ptr<FakeHttpClient> http = std::make_shared<FakeHttpClient>();
    std::shared_ptr<FakeXmppStreamFactory> xmpp = std::make_shared<FakeXmppStreamFactory>();
    std::shared_ptr<FakeReachabilitySource> reachability =
        std::make_shared<FakeReachabilitySource>();
    std::shared_ptr<FakeUserDefaultsStore> defaults = std::make_shared<FakeUserDefaultsStore>();
    std::shared_ptr<FakeBundle> mainBundle = std::make_shared<FakeBundle>();
    std::shared_ptr<FakeBundle> kitBundle = std::make_shared<FakeBundle>();
    std::shared_ptr<FakeLocalizer> localizer = std::make_shared<FakeLocalizer>();
    std::shared_ptr<FakePresenter> presenter = std::make_shared<FakePresenter>();
    std::shared_ptr<FakeProgress> progress = std::make_shared<FakeProgress>();
    std::shared_ptr<FakeTraits> traits = std::make_shared<FakeTraits>();
    std::shared_ptr<FakeGlobalAppearance> globalAppearance =
        std::make_shared<FakeGlobalAppearance>();
    std::shared_ptr<FakeNetServiceFactory> netServices = std::make_shared<FakeNetServiceFactory>();
    std::shared_ptr<FakeUrlOpener> urlOpener = std::make_shared<FakeUrlOpener>();
    std::shared_ptr<FakePhotoChooser> photoChooser = std::make_shared<FakePhotoChooser>();

    std::shared_ptr<Platform> platform = std::make_shared<Platform>();
};

}  // namespace supportsdk::test
