#pragma once

#include "app/Language.h"
#include "support/WaitUntil.h"
#include "support/fakes/FakeServices.h"
#include "ui/window/LanguageName.h"

#include <QApplication>
#include <QWidget>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace hollowfernpike::test {

/// For tests of the editor's windows among the fakes of a whole desktop. Japanese unless told
/// otherwise. Whatever happens there, nothing is logged.
class EditorTest : public testing::Test {
protected:
    using Calls = std::vector<std::string>;

    void TearDown() override { EXPECT_EQ(services_.standardOutput.str(), ""); }

    void speak(Language language) {
        services_.userDefaults.own["AppLanguage"] = std::string(language.rawValue());
    }

    /// One turn of the main loop, with everything that is due in it.
    void turn() {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        services_.mainQueue.runDue();
    }

    template <class Condition>
    [[nodiscard]] bool eventually(Condition condition) {
        return waitUntil([&] {
            turn();
            return condition();
        });
    }

    /// Gives the shown window the keys.
    void activate(QWidget& window) {
        window.activateWindow();
        EXPECT_TRUE(eventually([&] { return window.isActiveWindow(); }));
    }

    const Calls& calls() const { return services_.log.calls(); }

    FakeServices services_;
};

/// The same in each of the languages.
class EditorInEachLanguage : public EditorTest, public testing::WithParamInterface<Language::Case> {
protected:
    EditorInEachLanguage() { speak(GetParam()); }

    QString inLanguage(const char* japanese, const char* english) const {
        return GetParam() == Language::english ? english : japanese;
    }
};

template <class View>
View& find(const QWidget& parent, const char* name) {
    auto* view = dynamic_cast<View*>(parent.findChild<QWidget*>(name));
    EXPECT_NE(view, nullptr) << name;
    return *view;
}

} // namespace hollowfernpike::test
