#include "ui/window/PermissionPrompt.h"

#include "app/Language.h"
#include "platform/Application.h"
#include "platform/Services.h"
#include "ui/parts/Alert.h"
#include "ui/parts/MessageBox.h"

#include <QPushButton>

namespace hollowfernpike {

namespace {

std::unique_ptr<MessageBox> makeWindow() {
    auto window = std::make_unique<MessageBox>();
    window->setPicture(QMessageBox::Warning);
    window->setModal(false);
    auto* quit = window->addButton(QString(), QMessageBox::DestructiveRole);
    quit->setObjectName("quit");
    QObject::connect(quit, &QPushButton::clicked,
                     [] { platform::services().application.terminate(); });
    auto* remedy = window->addButton(QString(), QMessageBox::ActionRole);
    remedy->setObjectName("remedy");
    remedy->disconnect(); // this window stays open until the remedy has worked
    auto* ok = window->addButton("OK", QMessageBox::AcceptRole); // as in all alerts
    window->setDefaultButton(ok);
    window->setEscapeButton(ok);
    return window;
}

} // namespace

PermissionPrompt::PermissionPrompt() = default;

PermissionPrompt::~PermissionPrompt() = default;

void PermissionPrompt::show(const platform::Distrust& problem) {
    const bool isNew = window_ == nullptr;
    if (isNew) {
        window_ = makeWindow();
    }
    window_->setTexts(
        localized("ショートカットキーを検出できません", "Shortcuts cannot be seen"),
        QString::fromStdString(localized(problem.reason.japanese(), problem.reason.english())));
    window_->findChild<QPushButton*>("quit")->setText(localized("終了", "Quit"));
    showRemedy(problem.remedy);
    if (!window_->isVisible()) {
        window_->setAttribute(Qt::WA_ShowWithoutActivating, !isNew);
        window_->show();
    }
}

void PermissionPrompt::showRemedy(const std::optional<platform::TrustRemedy>& remedy) {
    auto* const button = window_->findChild<QPushButton*>("remedy");
    button->setVisible(remedy.has_value());
    button->disconnect(window_.get());
    if (remedy) {
        button->setText(QString::fromStdString(localized(remedy->japanese, remedy->english)));
        QObject::connect(button, &QPushButton::clicked, window_.get(),
                         [this, remedy] { apply(*remedy); });
    }
}

void PermissionPrompt::apply(const platform::TrustRemedy& remedy) {
    try {
        remedy.apply();
    } catch (const platform::LocalizedError& error) {
        Alert{.style = Alert::Style::warning,
              .message = localized("実行できませんでした", "This could not be done"),
              .informativeText = localized(error.japanese(), error.english())}
            .beginSheet(*window_);
    }
}

void PermissionPrompt::close() {
    window_.reset();
}

} // namespace hollowfernpike
