#include "fuzz/Fuzzing.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/knowledge/JourneyModel.h"
#include "supportsdk/knowledge/JourneysViewController.h"
#include "tests/support/FakePlatform.h"

using namespace supportsdk;
using fuzz::require;

namespace {

void answer(const test::FakePlatform& fakes, const Json& response) {
    require(fakes.http->sent.size() == 1);
    fakes.http->answer(0, 200, response);
    fakes.http->sent.clear();
    fakes.settle();
}

}  // namespace

/// The input is an answer of the service to the request for journeys.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::FakePlatform fakes;
    static const auto support = Support::create(Json::object(), {}, fakes.platform);

    const auto response = parseJson({reinterpret_cast<const char*>(data), size});
    if (!response) return 0;
    fakes.settle();
    int completions = 0;
    support->getJourneysWithCompletion([&completions] { ++completions; });
    require(support->journeys.empty());
    answer(fakes, *response);
    require(completions == 1);
    require(support->journeys.size() == arrayForKey(*response, "results").size());
    std::size_t number = 0;
    for (const auto& journey : support->journeys) {
        const auto& record = arrayForKey(*response, "results")[number++];
        require(journey->stages.size() == arrayForKey(record, "stages").size());
    }

    const auto screen = JourneysViewController::create(support);
    screen->viewDidLoad();
    screen->viewWillAppear();
    for (std::size_t row = 0; row <= screen->numberOfRows(); ++row) screen->didSelectRow(row);
    screen->viewWillDisappear();
    fakes.settle();
    fakes.presenter->pushed.clear();
    fakes.presenter->alerts.clear();
    fakes.presenter->log.clear();
    fakes.progress->shown.clear();
    fakes.log->lines.clear();
    return 0;
}
