#include "service/state/Seed.h"

#include <set>

#include "supportsdk/core/Fields.h"

namespace supportsdk::service {

namespace {

int depthOf(const Json& articles, const Json& article) {
    for (const auto& parent : articles) {
        if (parent["id"] == article["parent_id"]) return depthOf(articles, parent) + 1;
    }
    return 0;
}

TEST(SeedTest, TheBuiltInOneHoldsWhatDemosNeed) {
    std::string problem;
    const auto seed = readSeed(defaultSeed(), problem);
    ASSERT_TRUE(seed) << problem;
    const auto& articles = seed->at("articles");
    int deepest = 0;
    for (const auto& article : articles) {
        deepest = std::max(deepest, depthOf(articles, article));
        const bool isRoot = article["type"] == 2;
        EXPECT_EQ(depthOf(articles, article) == 0, isRoot) << article["id"];
    }
    EXPECT_EQ(deepest, 6) << "one level more than a list goes down to";
    for (const auto& form : seed->at("forms")) {
        bool hasCondition = false;
        for (const auto& field : form.at("field_defs")) {
            const auto parent = stringForKey(field, "parentKey");
            EXPECT_TRUE(!parent || form.at("field_defs").contains(*parent)) << field;
            hasCondition = hasCondition || parent;
        }
        EXPECT_TRUE(hasCondition) << form["name"];
    }
}

TEST(SeedTest, ABadOneIsNamed) {
    std::string problem;
    EXPECT_FALSE(readSeed("{", problem));
    EXPECT_FALSE(readSeed("{}", problem));
    EXPECT_FALSE(readSeed(R"({"integrations":[{"apiKey":"k"}]})", problem));
    EXPECT_NE(problem.find("integrationId"), std::string::npos);
}

}  // namespace

}  // namespace supportsdk::service
