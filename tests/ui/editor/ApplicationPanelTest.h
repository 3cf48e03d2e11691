#pragma once

#include "ui/editor/ApplicationPanel.h"
#include "ui/editor/EditorTest.h"

#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>

#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// A window on which the panel opens, with four installed applications to choose from.
class ApplicationPanelTest : public EditorTest {
protected:
    ApplicationPanelTest() {
        for (const std::string name : {"Terminal", "Mail", "Calculator", "Maps"}) {
            install(name);
        }
    }

    void install(const std::string& name) {
        services_.applicationBundles.installed.push_back({.path = "/apps/" + name + ".desktop",
                                                          .bundleIdentifier = "org.example." + name,
                                                          .name = name,
                                                          .genericName = {},
                                                          .keywords = {},
                                                          .icon = {}});
    }

    QDialog& open() {
        window_->show();
        ApplicationPanel::beginSheet(*window_,
                                     [this](const std::string& path) { chosen_.push_back(path); });
        return *window_->findChild<QDialog*>("applicationPanel");
    }

    bool isOpen() const {
        const auto* panel = window_->findChild<QDialog*>("applicationPanel");
        return panel != nullptr && panel->isVisible();
    }

    static void type(QWidget& widget, int key, const QString& text = {}) {
        for (const auto kind : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(kind, key, Qt::NoModifier, text);
            QCoreApplication::sendEvent(&widget, &event);
        }
    }

    static QLineEdit& searchField(const QDialog& panel) {
        return find<QLineEdit>(panel, "searchField");
    }

    static QListView& list(const QDialog& panel) { return find<QListView>(panel, "list"); }

    static QPushButton& button(const QDialog& panel, const char* name) {
        return find<QPushButton>(panel, name);
    }

    static std::vector<std::string> rows(const QDialog& panel) {
        std::vector<std::string> names;
        const QAbstractItemModel& model = *list(panel).model();
        for (int row = 0; row < model.rowCount(); ++row) {
            names.push_back(model.index(row, 0).data().toString().toStdString());
        }
        return names;
    }

    static std::string current(const QDialog& panel) {
        return list(panel).currentIndex().data().toString().toStdString();
    }

    std::unique_ptr<QWidget> window_ = std::make_unique<QWidget>();
    std::vector<std::string> chosen_;
};

} // namespace hollowfernpike::test
