#include <sys/mman.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "fuzz/Fuzzing.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/RestResponse.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/proactive/CheckResponse.h"
#include "supportsdk/proactive/SupportSDKProactive.h"
#include "supportsdk/proactive/files/FileHandle.h"
#include "tests/support/FakePlatform.h"

using namespace supportsdk;
using fuzz::require;

namespace {

double wholeNumber(const Json& response) {
    const auto text = stringForKey(response, "status");
    if (!text) return std::trunc(numberForKey(response, "status").value_or(0));
    // The other two blanks of C are none in such a text.
    const auto start = text->substr(0, 512).find_first_not_of(" \t\r\n");
    if (start == std::string::npos || text->find_first_of("\v\f", start) == start) return 0;
    return static_cast<double>(std::strtol(text->c_str() + start, nullptr, 10));
}

struct Runs {
    int successes = 0;
    int failures = 0;

    RestCallback success() {
        return [this](const Json&) { ++successes; };
    }
    RestCallback failure() {
        return [this](const Json&) { ++failures; };
    }
    /// At most one callback runs, once, and it is the right one.
    void check(const Json& response) const {
        const bool isSilent = !response.is_object() || isUnreadable(response);
        require(successes + failures == (isSilent ? 0 : 1));
        const double status = wholeNumber(response);
        if (!isSilent) require((successes == 1) == (status == 200));
    }
};

void answer(const test::FakePlatform& fakes, const HttpResponse& response) {
    fakes.queue->drain();
    require(fakes.http->sent.size() == 1);
    fakes.http->answerRaw(0, response);
    fakes.http->sent.clear();
    fakes.queue->drain();
}

std::ptrdiff_t uploadLines(const test::FakeLog& log) {
    return std::count_if(log.lines.begin(), log.lines.end(), [](const auto& line) {
        return line.find(" file upload ") != std::string::npos;
    });
}

}  // namespace

/// The input is a response: as JSON, and behind two bytes of status as the body of one that comes
/// to a list of checks and to a dump. Whatever it says, the dump leaves one line, and the next one
/// is sent.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::FakePlatform fakes;
    fakes.mainBundle->infos["CFBundleIdentifier"] = "com.example.host";
    fakes.mainBundle->files["support.json"] = "{}";
    static const auto proactive =
        SupportSDKProactive::create("support", std::nullopt, fakes.platform);
    static const auto file = std::make_shared<FileHandle>(memfd_create("dump", MFD_CLOEXEC));
    fakes.settle();

    const std::string_view input(reinterpret_cast<const char*>(data), size);
    if (const auto json = parseJson(input)) {
        Runs runs;
        byIntegerStatus(runs.success(), runs.failure())(*json);
        runs.check(*json);
    }
    if (size < 2) return 0;
    const HttpResponse response{(data[0] << 8 | data[1]) % 600, {}, toBytes(input.substr(2)), ""};
    const auto result = readResponse(response).dictionary;

    Runs posted;
    const auto check = std::make_shared<CheckAppHealth>("name", 1, std::nullopt);
    proactive->sdk->postChecks({check}, posted.success(), posted.failure());
    answer(fakes, response);
    posted.check(result);

    proactive->uploadFile(file);
    answer(fakes, response);
    require(uploadLines(*fakes.log) == 1);
    return 0;
}
