#include "supportsdk/chat/ChatViewController.h"
#include "supportsdk/chat/QuorrandChatMessage.h"
#include "supportsdk/core/BaseWebViewController.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

void ChatViewController::chatDidTapKBForMessage(QuorrandChat& /*chat*/, const Message& message) {
    if (message->isKBMessage()) retrieveKB(*message->kb_id);
}

void ChatViewController::retrieveKB(const std::string& articleId) {
    support->retrieveKB(
        articleId,
        [weak = weak(this)](const Json& response) {
            if (const auto self = weak.lock()) self->articleDidArrive(response);
        },
        [weak = weak(this)](const Json& response) {
            if (const auto self = weak.lock())
                self->articleIsMissing(stringForKey(response, "message").value_or(""));
        });
}

void ChatViewController::articleDidArrive(const Json& response) {
    const auto& results = arrayForKey(response, "results");
    const auto body = results.empty() ? std::nullopt : stringForKey(results.front(), "body");
    // The page of an earlier article must not pass for this one.
    if (!body) return articleIsMissing("");
    if (!kbViewController) return;
    kbViewController->html = *body;
    showKBViewController();
}

void ChatViewController::articleIsMissing(const std::string& message) {
    alertWithTitle("Unable to retrieve knowledge base article", message);
}

void ChatViewController::showKBViewController() {
    // Two taps bring two answers, and a page is on view once.
    if (!showing || !kbViewController) return;
    kbViewController->barColor = support->appearance->systemBackgroundColor;
    kbViewController->barTintColor = support->appearance->linkAndButtonTintColor;
    handOver([this] { platform().presenter->push(kbViewController, *this); });
}

}  // namespace supportsdk
