#pragma once

#include <functional>
#include <memory>

#include "hosts/cli/ScreenAdapter.h"
#include "supportsdk/chat/QDChatViewController.h"

namespace supportsdk::host {

/// A chat: its lines in groups, their buttons, and the entry bar.
class ChatAdapter : public ScreenAdapter, public QDChatViewController::View {
 public:
    ChatAdapter(std::shared_ptr<QDChatViewController> chat, std::function<void()> reloaded);

    /// Takes a suggestion.
    bool select(std::size_t section, std::size_t row) override;
    bool type(const std::string& text, const std::optional<std::string>& field) override;
    bool tapLine(const std::string& id, const std::string& part) override;
    bool send() override;
    bool pull() override;

    void reloadData() override { reloaded_(); }
    void entryDidChange() override;

 protected:
    [[nodiscard]] Json state() const override;
    bool pressControl(const std::string& label) override;

 private:
    [[nodiscard]] std::shared_ptr<QDChatMessageEntryView> entry() const;
    [[nodiscard]] Json describeEntry(const QDChatMessageEntryView& bar) const;
    [[nodiscard]] Json describeLine(const QuorrandChatMessage& line) const;
    /// Null when no such line is on view.
    [[nodiscard]] std::shared_ptr<QuorrandChatMessage> lineOf(const std::string& id) const;

    std::shared_ptr<QDChatViewController> chat_;
    std::function<void()> reloaded_;
    /// As whoever drives this host knows it.
    Json knownEntry_;
    /// The entry bar is in the middle of a change.
    bool isActing_ = false;
};

}  // namespace supportsdk::host
