#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "supportsdk/platform/Images.h"

namespace supportsdk {

class ImageLoader;
class QuorrandChat;
class QuorrandChatMessage;

/// The pictures of one engine's lines: avatars and previews, and what stands for them until they
/// have come. Lines that ask for an address while it is being loaded share one request and one
/// picture, made off the main thread; each line is held until its picture has come or failed.
/// Requests carry no credentials, because strangers choose the addresses. Main thread.
class ChatPictures {
 public:
    static constexpr std::uint32_t previewSide = 100;
    /// Strangers choose the addresses, and some servers never answer: beyond so many that wait, a
    /// line keeps what stands for its picture.
    static constexpr std::size_t maximumWaitingAvatars = 256;
    static constexpr std::size_t maximumWaitingPreviews = 256;

    ChatPictures();
    ~ChatPictures();

    /// Null where the kit's resources lack it.
    ImagePtr avatarPlaceholder(const QuorrandChat& chat);
    ImagePtr missingPreview(const QuorrandChat& chat);

    /// Gives `line` the picture at `address`, cut round, once it has come, and puts it into the
    /// engine's `avatars` under that address.
    void loadAvatar(QuorrandChat& chat, const std::string& address,
                    std::shared_ptr<QuorrandChatMessage> line);
    /// Likewise the picture of an attachment, in the size of a preview.
    void loadPreview(QuorrandChat& chat, const std::string& address,
                     std::shared_ptr<QuorrandChatMessage> line);

 private:
    /// By address, from the call to the result.
    using Waiting = std::map<std::string, std::vector<std::shared_ptr<QuorrandChatMessage>>>;

    using Shape = ImagePtr (*)(ImageCodec& images, const Image& image);
    using Arrival = void (ChatPictures::*)(QuorrandChat& chat, const std::string& address,
                                           const ImagePtr& image);

    static void load(ImageLoader& loader, QuorrandChat& chat, const std::string& address,
                     Shape shape, Arrival arrival);
    static std::vector<std::shared_ptr<QuorrandChatMessage>> takeLines(Waiting& waiting,
                                                                       const std::string& address);
    void avatarDidArrive(QuorrandChat& chat, const std::string& address, const ImagePtr& image);
    void previewDidArrive(QuorrandChat& chat, const std::string& address, const ImagePtr& image);

    /// Apart from the one for avatars, so that previews hold up no avatar.
    std::unique_ptr<ImageLoader> previewLoader_;
    Waiting avatars_;
    Waiting previews_;
    std::optional<ImagePtr> avatarPlaceholder_;
    std::optional<ImagePtr> missingPreview_;
};

}  // namespace supportsdk
