#include "fuzz/Fuzzing.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/QDIssue.h"
#include "supportsdk/core/Support.h"
#include "tests/support/FakePlatform.h"

using namespace supportsdk;
using fuzz::require;

namespace {

/// What of a record survives its storage: the user is stored under a key that is not read.
Json withoutUser(Json dictionary) {
    dictionary.erase("members_users_id");
    return dictionary;
}

void check(const QDIssue& issue) {
    const auto stored = issue.dict();
    require(stored.at("isRated").is_boolean());
    require(QDIssue(stored).dict() == withoutUser(stored));
    require(issue.isOpen() + issue.isResolved() + issue.isClosed() == 1);
    require(issue.transcripts && issue.transcripts->is_object());
    (void)issue.debugDescription();

    auto cleared = issue;
    cleared.clear();
    const auto rest = cleared.dict();
    for (const auto& [key, value] : rest.items()) {
        require(key == "isRated" || key == "resolved" || key == "rating");
    }
}

void checkStorage(Support& support, const std::shared_ptr<QDIssue>& issue) {
    support.saveCurrentIssue(issue);
    const auto loaded = support.loadCurrentIssue();
    require(loaded && loaded->dict() == withoutUser(issue->dict()));
    require(support.currentIssueId == issue->id && support.xmppdata == issue->xmpp_data);
    support.clearCurrentIssue();
    require(!support.loadCurrentIssue() && !support.currentIssueId && !support.xmppdata);
}

}  // namespace

/// The input is an answer of the service that may carry issues.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::FakePlatform fakes;
    static const auto support = Support::create(Json::object(), {}, fakes.platform);

    const auto response = parseJson({reinterpret_cast<const char*>(data), size});
    if (!response) return 0;
    check(QDIssue(*response));
    const auto issue = firstIssue(*response);
    require((issue != nullptr) == !arrayForKey(*response, "results").empty());
    if (!issue) return 0;
    check(*issue);
    checkStorage(*support, issue);
    return 0;
}
