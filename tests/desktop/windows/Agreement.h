#pragma once

#include "desktop/windows/WindowStory.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// A shortcut as people know it.
struct KnownShortcut {
    const Application& application;
    Combination combination;
};

/// Whether the utility's file, its cards and its live combinations agree.
///
/// Cards are recognized by what they look like: a shortcut's card must look as it did before, and
/// unlike that of every other shortcut.
class Agreement {
public:
    /// The story must outlive it.
    explicit Agreement(WindowStory& story) : story_(story) {}

    /// Opens the management window and looks whether, after some waiting, all three are these
    /// shortcuts in this order, and combinations of former ones are free.
    testing::AssertionResult on(const std::vector<KnownShortcut>& shortcuts);

private:
    using Look = std::vector<std::uint32_t>;

    testing::AssertionResult ofTheFile(const std::vector<KnownShortcut>& shortcuts);
    testing::AssertionResult ofTheCards(const std::vector<KnownShortcut>& shortcuts);
    testing::AssertionResult ofTheKeys(const std::vector<KnownShortcut>& shortcuts);

    /// The cards on the screen from top to bottom, without their parts that are not always there.
    std::vector<Look> cards(xcb_window_t window);
    bool areTheCardsOf(const std::vector<KnownShortcut>& shortcuts, const std::vector<Look>& cards);
    bool isTheCardOf(const KnownShortcut& shortcut, const Look& card);

    WindowStory& story_;
    std::map<std::string, Look> looks_;
    std::map<std::string, Combination> combinations_;
};

} // namespace hollowfernpike::test
