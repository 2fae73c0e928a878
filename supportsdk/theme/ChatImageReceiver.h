#pragma once

#include "supportsdk/platform/Images.h"

namespace supportsdk {

/// The chat as the theme sees it: the place for two of its pictures. Main thread.
class ChatImageReceiver {
 public:
    virtual ~ChatImageReceiver() = default;

    virtual void setChatAttachmentButtonImage(ImagePtr image) = 0;
    virtual void setChatSendButtonImage(ImagePtr image) = 0;
};

}  // namespace supportsdk
