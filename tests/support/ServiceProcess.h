#pragma once

#include <memory>

#include "supportsdk/platform/Values.h"
#include "tests/support/LineProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace supportsdk::test {

/// A support-service of one's own, as a child, on free ports and with a fresh state. It dies with
/// the thread that started it. One thread at a time.
class ServiceProcess {
 public:
    /// Returns when the service is ready; null when it did not get there within ten seconds.
    static std::unique_ptr<ServiceProcess> start(const std::vector<std::string>& arguments = {});

    /// SIGTERM, and SIGKILL two seconds later. Removes the state.
    ~ServiceProcess();
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;

    /// The line that it printed when it was ready.
    [[nodiscard]] const Json& ready() const { return ready_; }
    /// For a host; `secure` chooses the address.
    [[nodiscard]] Json configuration(const std::string& integration = "harbor-lobby",
                                     bool secure = true) const;
    [[nodiscard]] std::string caFile() const { return text("caFile"); }
    [[nodiscard]] std::string http() const { return text("http"); }
    [[nodiscard]] std::string https() const { return text("https"); }

    [[nodiscard]] pid_t processId() const { return process_->processId(); }
    /// Of the chat server as it was when the service got ready.
    [[nodiscard]] pid_t chatServerId() const;
    void signal(int number) const { process_->signal(number); }
    /// As of LineProcess.
    std::optional<int> waitForEnd(std::chrono::milliseconds limit) const {
        return process_->waitForEnd(limit);
    }

    /// Calls below /lab; nothing when the answer is not 200 with a JSON object.
    std::optional<Json> get(const std::string& path) const;
    std::optional<Json> post(const std::string& path, const Json& body) const;
    bool remove(const std::string& path) const;

    /// Says something in the chat of an issue; `more` adds members such as "kind".
    bool say(const std::string& issue, const std::string& message,
             const Json& more = Json::object()) const;

    /// The first event of `kind` behind number `after` whose text members are as in `where`.
    std::optional<Json> await(const std::string& kind, const Json& where = Json::object(),
                              std::uint64_t after = 0,
                              std::chrono::milliseconds limit = std::chrono::seconds{10}) const;

 private:
    ServiceProcess() = default;
    [[nodiscard]] std::string text(const char* key) const;

    TemporaryFolder folder_;
    Json ready_;
    std::unique_ptr<LineProcess> process_;
};

}  // namespace supportsdk::test
