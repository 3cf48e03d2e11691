#include "platform/sway/windows/Tree.h"

#include <gmock/gmock.h>
#include <unistd.h>

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A node with these members and children.
std::string node(const std::string& members, const std::string& tiled = {},
                 const std::string& floating = {}) {
    return "{" + members + R"(, "nodes": [)" + tiled + R"(], "floating_nodes": [)" + floating +
           "]}";
}

std::string window(int identifier, const std::string& applicationId, const std::string& more = {}) {
    return node(R"("id": )" + std::to_string(identifier) + R"(, "type": "con", "name": "title", )" +
                R"("pid": )" + std::to_string(100 + identifier) + R"(, "app_id": ")" +
                applicationId + R"(", "visible": true, "focus": [])" + more);
}

std::vector<std::int64_t> identifiersOf(const std::string& tree) {
    std::vector<std::int64_t> identifiers;
    const auto windows = sway::readTree(tree).value();
    for (const auto& found : windows) {
        identifiers.push_back(found.identifier);
    }
    return identifiers;
}

TEST(TreeTest, WindowsAreOrderedByTheirLastUseOnEveryLevel) {
    const auto first = node(R"("id": 10, "type": "workspace", "focus": [3, 11, 4])",
                            window(4, "d") + "," +
                                node(R"("id": 11, "type": "con", "focus": [6, 5])",
                                     window(5, "e") + "," + window(6, "f")),
                            window(3, "c"));
    const auto second = node(R"("id": 20, "type": "workspace", "focus": [7])", window(7, "g"));
    const auto output = [](int id, const std::string& focus, const std::string& workspaces) {
        return node(R"("id": )" + std::to_string(id) + R"(, "type": "output", "focus": [)" + focus +
                        "]",
                    workspaces);
    };
    EXPECT_THAT(identifiersOf(node(R"("id": 1, "type": "root", "focus": [31, 30])",
                                   output(30, "20", second) + "," + output(31, "10", first))),
                ElementsAre(3, 6, 5, 4, 7));
}

TEST(TreeTest, TheScratchpadComesLast) {
    const auto scratchpad =
        node(R"("id": 2147483646, "type": "workspace", "focus": [])", "", window(9, "hidden"));
    const auto workspace = node(R"("id": 2, "type": "workspace", "focus": [3])", window(3, "c"));
    EXPECT_THAT(identifiersOf(
                    node(R"("id": 1, "type": "root", "focus": [2])", scratchpad + "," + workspace)),
                ElementsAre(3, 9));
}

TEST(TreeTest, AWaylandWindowTellsItsProcessItsEntryAndWhetherItIsVisible) {
    const auto windows = sway::readTree(
        node(R"("id": 1, "focus": [])",
             window(5, "org.example.Five", R"(, "sandbox_app_id": "org.example.Box")") + "," +
                 node(R"("id": 6, "name": null, "pid": 7, "app_id": "six", "visible": false)")));
    ASSERT_THAT(*windows, SizeIs(2));
    EXPECT_EQ(windows->at(0).title, "") << "titles of others are not kept";
    EXPECT_TRUE(windows->at(0).isVisible);
    EXPECT_EQ(windows->at(0).facts,
              (platform::WindowFacts{.process = 105,
                                     .instanceName = "org.example.Five",
                                     .className = "org.example.Five",
                                     .gtkApplicationId = {},
                                     .desktopFile = "org.example.Five",
                                     .sandboxApplicationId = "org.example.Box"}));
    EXPECT_EQ(windows->at(1).title, "");
    EXPECT_FALSE(windows->at(1).isVisible);
}

TEST(TreeTest, AWindowOfOursTellsItsTitle) {
    const auto windows = sway::readTree(node(
        R"("id": 1)",
        node(R"("id": 5, "app_id": "a", "name": "ours", "pid": )" + std::to_string(::getpid()))));
    ASSERT_THAT(*windows, SizeIs(1));
    EXPECT_EQ(windows->at(0).title, "ours");
}

TEST(TreeTest, AWindowOfXTellsItsClass) {
    const auto windows = sway::readTree(node(
        R"("id": 1, "focus": [])",
        node(R"("id": 5, "pid": 7, "app_id": null, "window": 4194311, "visible": true, )"
             R"("window_properties": {"class": "XTerm", "instance": "xterm", "title": "t"})")));
    ASSERT_THAT(*windows, SizeIs(1));
    EXPECT_EQ(windows->at(0).facts, (platform::WindowFacts{.process = 7,
                                                           .instanceName = "xterm",
                                                           .className = "XTerm",
                                                           .gtkApplicationId = {},
                                                           .desktopFile = {},
                                                           .sandboxApplicationId = {}}));
}

TEST(TreeTest, ProcessesThatCannotBeAreNone) {
    for (const auto* const pid : {"0", "-1", "99999999999", "null", "\"7\""}) {
        const auto windows = sway::readTree(
            node(R"("id": 1)", node(R"("id": 5, "app_id": "a", "pid": )" + std::string{pid})));
        ASSERT_THAT(*windows, SizeIs(1)) << pid;
        EXPECT_EQ(windows->at(0).facts.process, std::nullopt) << pid;
    }
}

TEST(TreeTest, LongTextsOfClientsAreCut) {
    const auto windows = sway::readTree(node(R"("id": 1)", window(5, std::string(100000, 'x'))));
    ASSERT_THAT(*windows, SizeIs(1));
    EXPECT_EQ(windows->at(0).facts.className.size(), 1024U);
}

TEST(TreeTest, HoweverDeepWindowsAreNestedTheyAreFound) {
    std::string opening;
    std::string closing;
    for (int depth = 0; depth < 20000; ++depth) {
        opening += R"({"nodes": [)";
        closing += "]}";
    }
    EXPECT_THAT(identifiersOf(opening + window(5, "deep") + closing), ElementsAre(5));
}

TEST(TreeTest, WhatIsNoTreeIsNone) {
    for (const auto* const text : {"", "[]", "null", "{", R"({"id": 1} x)"}) {
        EXPECT_EQ(sway::readTree(text), std::nullopt) << text;
    }
    EXPECT_THAT(sway::readTree(R"({"nodes": 3, "floating_nodes": {}, "focus": "x"})").value(),
                IsEmpty());
}

} // namespace

} // namespace hollowfernpike::test
