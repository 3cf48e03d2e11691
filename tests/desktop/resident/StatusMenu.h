#pragma once

#include "support/ChildProcess.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// An entry of the utility's menu as its panel sees it.
struct MenuEntry {
    int id = 0;
    std::string label; ///< without the mark of its mnemonic
    bool isOn = false; ///< carries a check mark
    bool isRadio = false;
    std::string mnemonic = {}; ///< the letter that chooses it; empty if there is none
};

/// A panel of a private session that shows the utility's status item, and somebody who uses the
/// menu there.
class StatusMenu {
public:
    /// For a private session of any kind.
    template <class Desktop>
    explicit StatusMenu(const Desktop& desktop) : environment_(desktop.environment()) {}

    /// Starts a panel and waits until it is there: a host of status notifier items, or a tray of
    /// the older kind.
    ChildProcess& startHost();
    ChildProcess& startTray();
    void endPanel() { panel_.reset(); }

    /// Whether the host shows the utility's item, after some waiting.
    testing::AssertionResult showsItem();

    /// The whole menu, entries of submenus behind the one that opens them; separators are empty.
    std::vector<MenuEntry> entries();
    std::vector<std::string> labels();
    MenuEntry entry(const std::string& label);

    /// Whether the menu has this entry, with this mark, after some waiting.
    testing::AssertionResult becomes(const std::string& label, bool isOn);

    /// Chooses the entry with this label. Throws if there is none.
    void choose(const std::string& label);

private:
    Environment environment_;
    std::unique_ptr<ChildProcess> panel_;
    std::string item_;
};

} // namespace hollowfernpike::test
