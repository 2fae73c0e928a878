#include "hosts/cli/Adapters.h"

#include "hosts/cli/CallMeAdapter.h"
#include "hosts/cli/ChatAdapter.h"
#include "hosts/cli/FormAdapter.h"
#include "hosts/cli/HistoryAdapter.h"
#include "hosts/cli/HistoryMenuAdapter.h"
#include "hosts/cli/KBListAdapter.h"
#include "hosts/cli/KBSearchAdapter.h"
#include "hosts/cli/ListAdapter.h"
#include "hosts/cli/RatingAdapter.h"
#include "hosts/cli/SettingsAdapter.h"
#include "hosts/cli/WebAdapter.h"
#include "supportsdk/core/BaseWebViewController.h"
#include "supportsdk/forms/FormListViewController.h"
#include "supportsdk/knowledge/JourneysViewController.h"

namespace supportsdk::host {

namespace {

using Screen = std::shared_ptr<ScreenController>;
using Made = std::shared_ptr<ScreenAdapter>;

/// An `Adapter` that is the view of `screen`; null when that is of another class.
template <typename Class, typename Adapter>
Made make(const Screen& screen, const std::function<void()>& reloaded) {
    const auto own = std::dynamic_pointer_cast<Class>(screen);
    if (!own) return nullptr;
    const auto adapter = std::make_shared<Adapter>(own, reloaded);
    own->view = adapter;
    return adapter;
}

Made makeForWeb(const Screen& screen, const std::function<void()>&) {
    const auto web = std::dynamic_pointer_cast<BaseWebViewController>(screen);
    if (!web) return nullptr;
    auto content = web->html ? Json{{"html", *web->html}} : Json{{"url", web->initialUrl}};
    return std::make_shared<WebAdapter>(web, std::move(content));
}

constexpr Made (*makers[])(const Screen&, const std::function<void()>&) = {
    make<QDChatViewController, ChatAdapter>,
    make<SettingsViewController, SettingsAdapter>,
    make<KBListViewController, KBListAdapter>,
    make<KBSearchViewController, KBSearchAdapter>,
    make<HistoryViewController, HistoryAdapter>,
    make<HistoryActionPopupMenu, HistoryMenuAdapter>,
    make<CallMeViewController, CallMeAdapter>,
    make<RatingViewController, RatingAdapter>,
    make<FormListViewController, TextListAdapter<FormListViewController>>,
    make<FormViewController, FormAdapter>,
    make<JourneysViewController, TextListAdapter<JourneysViewController>>,
    makeForWeb,
};

}  // namespace

std::shared_ptr<ScreenAdapter> adapterFor(const std::shared_ptr<ScreenController>& screen,
                                          const std::function<void()>& reloaded) {
    for (const auto maker : makers) {
        if (auto adapter = maker(screen, reloaded)) return adapter;
    }
    return std::make_shared<ScreenAdapter>(screen);
}

}  // namespace supportsdk::host
