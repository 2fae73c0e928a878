#include "supportsdk/core/Fields.h"
#include "supportsdk/core/Support.h"
#include "supportsdk/knowledge/KBViewModel.h"

namespace supportsdk {

void Support::retrieveKB(const std::optional<std::string>& identifier, RestCallback success,
                         RestCallback failure) {
    executeGet(identifier ? "/kb/get?id=" + *identifier : "/kb/get", endpoint, Json(),
               strictly(std::move(success), std::move(failure)));
}

void Support::searchKB(const std::optional<std::string>& text, RestCallback success,
                       RestCallback failure) {
    executeGet(text ? "/kb/search?query=" + *text : "/kb/search", endpoint, Json(),
               strictly(std::move(success), std::move(failure)));
}

void Support::getKB(std::weak_ptr<SupportDelegate> listener) {
    isKBRequested = true;
    retrieveKB(
        std::nullopt,
        [weak = weak_from_this(), listener](const Json& response) {
            const auto self = weak.lock();
            if (!self) return;
            self->isKBRequested = false;
            const auto& results = arrayForKey(response, "results");
            if (results.empty() || self->isRetired_) return updateKBDelegate(listener, nullptr);
            const auto model = KBViewModel::createWithArray(results);
            model->appearance = self->appearance;
            self->kbViewModel = model;
            updateKBDelegate(listener, model);
        },
        [weak = weak_from_this(), listener](const Json&) {
            const auto self = weak.lock();
            if (!self) return;
            self->isKBRequested = false;
            self->platform->progress->dismiss();
            updateKBDelegate(listener, nullptr);
        });
}

void Support::searchKB(std::weak_ptr<SupportDelegate> listener,
                       const std::optional<std::string>& text) {
    searchKB(
        text,
        [weak = weak_from_this(), listener](const Json& response) {
            const auto self = weak.lock();
            const auto told = listener.lock();
            if (!self || !told) return;
            const auto& results = arrayForKey(response, "results");
            if (results.empty()) return told->supportSearchKBFailed();
            const auto model = KBViewModel::createWithSearchResults(results);
            model->appearance = self->appearance;
            told->supportSearchKBWithModel(model);
        },
        [listener](const Json&) {
            if (const auto told = listener.lock()) told->supportSearchKBFailed();
        });
}

void Support::updateKBDelegate(const std::weak_ptr<SupportDelegate>& listener,
                               const std::shared_ptr<KBViewModel>& model) {
    if (const auto told = listener.lock()) told->supportUpdateKBWithModel(model);
}

}  // namespace supportsdk
