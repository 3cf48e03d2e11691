#pragma once

#include "platform/StatusBar.h"
#include "support/fakes/CallLog.h"

#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// A status bar that remembers what its items were told.
class FakeStatusBar final : public platform::StatusBar {
public:
    explicit FakeStatusBar(CallLog& log) : log_(log) {}

    std::vector<platform::Menu> menus;              ///< every menu set, the present one last
    std::vector<const platform::MenuItem*> changed; ///< by every change of a check mark

    std::unique_ptr<platform::StatusItem> createStatusItem() override {
        log_.record("statusBar.createStatusItem");
        return std::make_unique<Item>(*this);
    }

private:
    class Item final : public platform::StatusItem {
    public:
        explicit Item(FakeStatusBar& bar) : bar_(bar) {}

        void setImage(std::string_view symbolName,
                      std::string_view accessibilityDescription) override {
            bar_.log_.record("statusItem.setImage " + std::string{symbolName} + ' ' +
                             std::string{accessibilityDescription});
        }

        void setMenu(const platform::Menu& menu) override {
            bar_.log_.record("statusItem.setMenu");
            bar_.menus.push_back(menu);
        }

        void menuItemDidChange(const platform::MenuItem& item) override {
            bar_.changed.push_back(&item);
        }

    private:
        FakeStatusBar& bar_;
    };

    CallLog& log_;
};

} // namespace hollowfernpike::test
