#include <gmock/gmock.h>

#include <limits>

#include "supportsdk/chat/QDChatActionButton.h"
#include "supportsdk/chat/QDChatButtonCollectionView.h"
#include "tests/chat/ChatFixture.h"

namespace supportsdk::test {
namespace {

TEST(ButtonCollection, OnlyTheFirstMeasureOfItsContentCounts) {
    struct Parent : QDChatButtonCollectionViewDelegate {
        void collectionViewDidFinishReloading(QDChatButtonCollectionView& collection) override {
            heights.push_back(collection.height);
            collection.contentSizeDidChange(1);
        }
        std::vector<double> heights;
    };
    const auto parent = std::make_shared<Parent>();
    QDChatButtonCollectionView collection(88);
    collection.parentDelegate = parent;
    collection.contentSizeDidChange(50);
    EXPECT_EQ(collection.height, 88);
    collection.startObserving();
    collection.contentSizeDidChange(std::numeric_limits<double>::quiet_NaN());
    collection.contentSizeDidChange(-1);
    collection.contentSizeDidChange(50);
    collection.contentSizeDidChange(60);
    EXPECT_THAT(parent->heights, testing::ElementsAre(65));
    EXPECT_EQ(collection.height, 65);
    EXPECT_EQ(collection.buttonForItem(0), nullptr);
    EXPECT_EQ(collection.cornerRadiusForItem(0), 0);
}

}  // namespace
}  // namespace supportsdk::test
