#pragma once

#include <memory>

#include "supportsdk/chat/ChatCompanions.h"

namespace supportsdk {

class Support;
class SupportButton;

/// What a chat screen asks for the rating of its issue. It opens nothing once `button` is gone or
/// has another configuration than `support`.
std::shared_ptr<ChatRating> ratingAfterChat(std::weak_ptr<Support> support,
                                            std::weak_ptr<SupportButton> button);

}  // namespace supportsdk
