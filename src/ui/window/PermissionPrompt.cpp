#include "ui/window/PermissionPrompt.h"

#include "app/Language.h"
#include "platform/Application.h"
#include "platform/Services.h"
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
    auto* ok = window->addButton("OK", QMessageBox::AcceptRole); // as in all alerts
    window->setDefaultButton(ok);
    window->setEscapeButton(ok);
    return window;
}

} // namespace

PermissionPrompt::PermissionPrompt() = default;

PermissionPrompt::~PermissionPrompt() = default;

void PermissionPrompt::show(const platform::LocalizedError& message) {
    const bool isNew = window_ == nullptr;
    if (isNew) {
        window_ = makeWindow();
    }
    window_->setTexts(localized("ショートカットキーを検出できません", "Shortcuts cannot be seen"),
                      QString::fromStdString(localized(message.japanese(), message.english())));
    window_->findChild<QPushButton*>("quit")->setText(localized("終了", "Quit"));
    if (!window_->isVisible()) {
        window_->setAttribute(Qt::WA_ShowWithoutActivating, !isNew);
        window_->show();
    }
}

void PermissionPrompt::close() {
    window_.reset();
}

} // namespace hollowfernpike
