#include <gtest/gtest.h>

#include <random>

#include "supportsdk/platform/Stanza.h"

namespace supportsdk::test {
namespace {

/// Writes one random stanza in both ways: with the builder, and as a tree.
class Twins {
 public:
    explicit Twins(unsigned seed) : random_(seed) { element(tree.append_child("message"), 1); }

    pugi::xml_document tree;
    StanzaBuilder builder;

 private:
    std::size_t below(std::size_t limit) { return random_() % limit; }

    std::string text() {
        static const std::vector<std::string> pieces{"a",  "&",   "<", ">", "\"", "'",     "\n",
                                                     "\r", "]]>", " ", "1", "é",  "&amp;", "plain"};
        std::string text = "x";
        for (auto count = below(4); count > 0; --count) text += pieces[below(pieces.size())];
        return text;
    }

    void element(pugi::xml_node node, int depth) {
        builder.open(node.name());
        for (const char* name : {"id", "xmlns", "from"}) {
            if (below(2) == 0) continue;
            const auto value = name[0] == 'x' ? "urn:" + std::to_string(below(2)) : text();
            node.append_attribute(name).set_value(value.c_str());
            builder.attribute(name, value);
        }
        bool afterText = false;
        for (auto count = below(5); count > 0; --count) {
            // A parser gives neighbouring texts as one.
            if (below(2) == 0 && !afterText) {
                const auto value = text();
                node.append_child(pugi::node_pcdata).set_value(value.c_str());
                builder.text(value);
                afterText = true;
            } else if (depth < 4) {
                static const char* const names[] = {"body", "delay", "x"};
                element(node.append_child(names[below(3)]), depth + 1);
                afterText = false;
            }
        }
        builder.close();
    }

    std::mt19937 random_;
};

std::string print(pugi::xml_node node) {
    std::ostringstream xml;
    node.print(xml, "", pugi::format_raw);
    return xml.str();
}

TEST(StanzaOutline, AnswersAsTheTreeDoes) {
    for (unsigned seed = 0; seed < 2000; ++seed) {
        Twins twins(seed);
        const auto outlined = twins.builder.finish();
        const auto tree = Stanza::parse(outlined->xml());
        ASSERT_TRUE(tree) << outlined->xml();
        ASSERT_EQ(print(tree->root()), print(twins.tree.document_element()));
        ASSERT_EQ(outlined->name(), "message");
        for (const char* name : {"id", "xmlns", "from", "to"})
            ASSERT_EQ(outlined->attribute(name), tree->attribute(name)) << tree->xml();
        for (const char* name : {"body", "delay", "x", "none"}) {
            ASSERT_EQ(outlined->childText(name), tree->childText(name)) << tree->xml();
            for (const char* xmlns : {"", "urn:0", "urn:1"}) {
                ASSERT_EQ(outlined->hasChild(name, xmlns), tree->hasChild(name, xmlns));
                ASSERT_EQ(outlined->childAttribute(name, xmlns, "id"),
                          tree->childAttribute(name, xmlns, "id"));
                ASSERT_STREQ(outlined->child(name, xmlns).name(), tree->child(name, xmlns).name());
            }
        }
        ASSERT_EQ(print(outlined->root()), print(tree->root()));
    }
}

}  // namespace
}  // namespace supportsdk::test
