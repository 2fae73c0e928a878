#include <strings.h>

#include "supportsdk/chat/QuorrandChat.h"
#include "supportsdk/core/Fields.h"
#include "supportsdk/core/ReplaceAll.h"
#include "supportsdk/core/Url.h"

namespace supportsdk {

namespace {

struct FileName {
    std::string base;
    std::string extension;
};

FileName splitFileName(const std::string& name) {
    const auto point = name.rfind('.');
    if (point == std::string::npos) return {name, ""};
    return {name.substr(0, point), name.substr(point + 1)};
}

/// Only GIFs move.
std::optional<AnimatedImage> decodeEmoticon(ImageCodec& images, const Bytes& data,
                                            const std::string& extension) {
    if (extension == "gif") return images.decodeAnimation(data);
    auto image = images.decode(data);
    if (!image) return std::nullopt;
    return AnimatedImage{{{std::move(image), {}}}};
}

}  // namespace

void QuorrandChat::setDefaults() {
    appearance = ChatAppearance{};
    appearance.remoteChatBubbleImage.image = imageForResource("bubbleSomeone.png");
    appearance.localChatBubbleImage.image = imageForResource("bubbleMine.png");
    appearance.chatAttachmentButtonImage = imageForResource("paperclip.png");
    appearance.chatSendButtonImage = imageForResource("send.png");
}

void QuorrandChat::setChatAttachmentButtonImage(ImagePtr image) {
    appearance.chatAttachmentButtonImage = std::move(image);
}

void QuorrandChat::setChatSendButtonImage(ImagePtr image) {
    appearance.chatSendButtonImage = std::move(image);
}

std::optional<std::string> QuorrandChat::URLForResource(const std::string& name,
                                                        const std::string& extension) const {
    const auto path = pathForResource(name, extension);
    return path ? std::optional("file://" + percentEncoded(*path, "/")) : std::nullopt;
}

std::optional<std::string> QuorrandChat::pathForResource(const std::string& name,
                                                         const std::string& type) const {
    const auto path = getBundle()->path(name, type);
    return path ? std::optional(path->string()) : std::nullopt;
}

ImagePtr QuorrandChat::imageForResource(const std::string& fileName) const {
    const auto [base, extension] = splitFileName(fileName);
    const auto data = getBundle()->data(base, extension);
    return data ? platform->images->decode(*data) : nullptr;
}

bool QuorrandChat::savePhotoToAlbum(const ImagePtr& photo) {
    return photo && platform->photoChooser->save(photo);
}

std::shared_ptr<const AnimatedImage> QuorrandChat::imageForEmoticon(
    const std::string& fileName) const {
    const auto [known, isNew] = emoticonImages_.try_emplace(fileName);
    if (!isNew) return known->second;
    const auto [base, extension] = splitFileName(fileName);
    const auto data = getBundle()->data(base, extension);
    auto image = data ? decodeEmoticon(*platform->images, *data, extension) : std::nullopt;
    if (image) known->second = std::make_shared<const AnimatedImage>(std::move(*image));
    return known->second;
}

void QuorrandChat::loadEmoticons() {
    emoticonPredictors = {"("};
    const auto data = getBundle()->data("Emoticons", "json");
    const auto parsed = data ? parseJson(toText(*data)) : std::nullopt;
    emoticons = parsed ? dictionaryForKey(*parsed, "Emoticons") : Json::object();
    emoticonsByName.clear();
    emoticonKeys.clear();
    for (const auto& [fileName, entry] : emoticons.items()) {
        for (const auto& equivalent : arrayForKey(entry, "Equivalents")) {
            const auto* text = equivalent.get_ptr<const std::string*>();
            if (text && !text->empty() && emoticonsByName.emplace(*text, fileName).second)
                emoticonKeys.push_back(*text);
        }
    }
    std::sort(emoticonKeys.begin(), emoticonKeys.end(), [](const auto& one, const auto& other) {
        return strcasecmp(one.c_str(), other.c_str()) < 0;
    });
}

std::optional<std::string> QuorrandChat::htmlStringWithEmoticonsFromChatMessage(
    const std::string& text) const {
    std::string html = text;
    bool replaced = false;
    for (const auto& key : emoticonKeys) {
        if (!key.starts_with('(') || html.find(key) == std::string::npos) continue;
        html = replaceAll(html, key, getImgTagForImageName(emoticonsByName.at(key)));
        replaced = true;
    }
    if (!replaced) return std::nullopt;
    return "<html><body>" + html + "</body></html>";
}

std::string QuorrandChat::getImgTagForImageName(const std::string& fileName) const {
    const auto [base, extension] = splitFileName(fileName);
    return "<img src=\"" + URLForResource(base, extension).value_or("") + "\">";
}

void QuorrandChat::picturesDidLoad() {
    tellDelegate(&QuorrandChatDelegate::chatDidLoadPictures);
}

}  // namespace supportsdk
