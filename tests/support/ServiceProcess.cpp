#include "tests/support/ServiceProcess.h"

#include <fcntl.h>
#include <httplib.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace supportsdk::test {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

int remaining(Clock::time_point deadline) {
    const auto left = std::chrono::duration_cast<milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<milliseconds::rep>(left.count(), 0));
}

std::string readLine(int descriptor, milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    std::string line;
    while (!line.ends_with('\n')) {
        pollfd entry{descriptor, POLLIN, 0};
        if (poll(&entry, 1, remaining(deadline)) <= 0) break;
        std::array<char, 4096> buffer{};
        const auto got = read(descriptor, buffer.data(), buffer.size());
        if (got <= 0) break;
        line.append(buffer.data(), static_cast<std::size_t>(got));
    }
    return line;
}

std::optional<Json> objectOf(const httplib::Result& result) {
    if (!result || result->status != 200) return std::nullopt;
    Json json = Json::parse(result->body, nullptr, false);
    return json.is_object() ? std::optional(json) : std::nullopt;
}

httplib::Client clientFor(const std::string& address) {
    httplib::Client client(address);
    client.set_read_timeout(std::chrono::seconds{70});
    return client;
}

}  // namespace

bool processEnds(pid_t pid, milliseconds limit) {
    const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    if (descriptor < 0) return true;
    pollfd entry{descriptor, POLLIN, 0};
    const bool ended = poll(&entry, 1, static_cast<int>(limit.count())) == 1;
    close(descriptor);
    return ended;
}

std::unique_ptr<ServiceProcess> ServiceProcess::start(const std::vector<std::string>& arguments) {
    std::unique_ptr<ServiceProcess> service(new ServiceProcess);
    auto pattern = (std::filesystem::temp_directory_path() / "service-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) return nullptr;
    service->folder_ = pattern;
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return nullptr;
    const bool launched = service->launch(arguments, ends[1]);
    close(ends[1]);
    if (launched) {
        service->ready_ = Json::parse(readLine(ends[0], std::chrono::seconds{10}), nullptr, false);
    }
    close(ends[0]);
    if (!service->ready_.is_object()) return nullptr;
    return service;
}

bool ServiceProcess::launch(const std::vector<std::string>& arguments, int output) {
    std::vector<std::string> words{SUPPORTSDK_BINARY_DIR "/service/support-service", "--data",
                                   (folder_ / "state").string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (auto& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);

    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ != 0) return pid_ > 0;
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) _exit(126);
    dup2(output, STDOUT_FILENO);
    execv(pointers[0], pointers.data());
    _exit(127);
}

ServiceProcess::~ServiceProcess() {
    signal(SIGTERM);
    if (pid_ > 0 && !waitForEnd(std::chrono::seconds{2})) {
        signal(SIGKILL);
        waitForEnd(std::chrono::seconds{2});
    }
    std::error_code error;
    if (!folder_.empty()) std::filesystem::remove_all(folder_, error);
}

std::string ServiceProcess::text(const char* key) const {
    return ready_.value(key, std::string());
}

Json ServiceProcess::configuration(const std::string& integration, bool secure) const {
    Json configuration = ready_.at("configurations").at(integration);
    configuration["apiHost"] = secure ? https() : http();
    return configuration;
}

pid_t ServiceProcess::chatServerId() const {
    return ready_.at("xmpp").value("processId", -1);
}

void ServiceProcess::signal(int number) const {
    if (pid_ > 0) kill(pid_, number);
}

std::optional<int> ServiceProcess::waitForEnd(milliseconds limit) {
    int status = 0;
    if (pid_ <= 0 || !processEnds(pid_, limit) || waitpid(pid_, &status, 0) != pid_)
        return std::nullopt;
    pid_ = -1;
    return status;
}

std::optional<Json> ServiceProcess::get(const std::string& path) const {
    return objectOf(clientFor(http()).Get("/lab" + path));
}

std::optional<Json> ServiceProcess::post(const std::string& path, const Json& body) const {
    return objectOf(clientFor(http()).Post("/lab" + path, body.dump(), "application/json"));
}

bool ServiceProcess::remove(const std::string& path) const {
    return objectOf(clientFor(http()).Delete("/lab" + path)).has_value();
}

bool ServiceProcess::say(const std::string& issue, const std::string& message,
                         const Json& more) const {
    Json body{{"issue", issue}, {"message", message}};
    body.update(more);
    return post("/say", body).has_value();
}

std::optional<Json> ServiceProcess::await(const std::string& kind, const Json& where,
                                          std::uint64_t after, milliseconds limit) const {
    httplib::Params query{
        {"kind", kind}, {"after", std::to_string(after)}, {"wait", std::to_string(limit.count())}};
    for (const auto& [name, value] : where.items()) query.emplace(name, value.get<std::string>());
    const auto answer = objectOf(clientFor(http()).Get("/lab/events", query, httplib::Headers{}));
    if (!answer || answer->at("results").empty()) return std::nullopt;
    return answer->at("results").at(0);
}

}  // namespace supportsdk::test
