#pragma once

#include "app/Language.h"
#include "hotkeys/Shortcuts.h"
#include "platform/EventTap.h"
#include "support/TemporaryDirectory.h"
#include "support/WaitUntil.h"
#include "support/fakes/FakeServices.h"
#include "ui/icons/SymbolButton.h"
#include "ui/parts/Labels.h"
#include "ui/window/CardStackView.h"
#include "ui/window/LanguageName.h"
#include "ui/window/MainWindowController.h"
#include "ui/window/ShortcutCardView.h"

#include <QApplication>
#include <QPushButton>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

using namespace platform::event_flags;

/// The management window among the fakes of a whole desktop. Japanese unless told otherwise.
class WindowTest : public testing::Test {
protected:
    void speak(Language language) {
        desktop.userDefaults.own["AppLanguage"] = std::string(language.rawValue());
    }

    /// Handles what is due, and lets go of what is to be deleted.
    static void settle() {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    template <class Condition>
    [[nodiscard]] static bool eventually(Condition condition) {
        return waitUntil([&] {
            settle();
            return condition();
        });
    }

    MainWindowController& open() {
        controller = std::make_unique<MainWindowController>();
        controller->showWindow();
        settle();
        return *controller;
    }

    std::vector<std::string> shownNames() const {
        std::vector<std::string> names;
        for (const ShortcutCardView* card : controller->stackView()->cards()) {
            names.push_back(card->appNameLabel().text().toStdString());
        }
        return names;
    }

    ShortcutCardView& card(std::size_t index) const {
        return *controller->stackView()->cards().at(index);
    }

    FakeServices desktop;
    std::unique_ptr<MainWindowController> controller;
};

/// The same in each of the languages.
class WindowInEachLanguage : public WindowTest, public testing::WithParamInterface<Language::Case> {
protected:
    WindowInEachLanguage() { speak(GetParam()); }

    std::string inLanguage(const char* japanese, const char* english) const {
        return GetParam() == Language::english ? english : japanese;
    }
};

/// Whether that is what the button shows.
inline bool shows(const SymbolButton& button, Symbol symbol, SymbolTint tint) {
    const QSize size = button.iconSize();
    return button.icon().pixmap(size).toImage() == symbolImage(symbol, tint).pixmap(size).toImage();
}

/// A view's place in a window of which it is a part.
inline QRect placeIn(const QWidget& window, const QWidget& view) {
    return {view.mapTo(&window, QPoint()), view.size()};
}

} // namespace hollowfernpike::test
