#include "supportsdk/knowledge/KBArticle.h"

#include "supportsdk/core/Url.h"
#include "supportsdk/knowledge/KBViewController.h"
#include "supportsdk/theme/Appearance.h"

namespace supportsdk {

void presentArticle(const Support& support, const KBEntryModel& entry, ScreenController& over) {
    const auto& platform = *support.platform;
    const auto address = entry.url.value_or("");
    if (!isWebAddress(address)) return alertArticleIsMissing(platform, "");
    const auto navigation = std::make_shared<NavigationController>();
    navigation->children.push_back(std::make_shared<KBViewController>(
        platform, support.appearance, entry.title.value_or(""), address));
    platform.presenter->present(navigation, &over);
}

void pushArticle(const Support& support, const KBEntryModel& entry, ScreenController& from) {
    const auto& platform = *support.platform;
    const auto page = std::make_shared<BaseWebViewController>(
        platform, entry.title.value_or(""), platform.localizer->localized("Back"), "");
    page->html = entry.body.value_or("");
    page->isPushed = true;
    page->barColor = support.appearance->systemBackgroundColor;
    page->barTintColor = support.appearance->linkAndButtonTintColor;
    platform.presenter->push(page, from);
}

void alertArticleIsMissing(const Platform& platform, const std::string& message) {
    const auto& words = *platform.localizer;
    platform.presenter->showAlert({words.localized("Unable to retrieve knowledge base article"),
                                   words.localized(message),
                                   {},
                                   {{words.localized("OK"), {}, {}}}});
}

}  // namespace supportsdk
