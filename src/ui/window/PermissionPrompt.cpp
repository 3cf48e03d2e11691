#include "ui/window/PermissionPrompt.h"

#include "app/Language.h"
#include "platform/Application.h"
#include "platform/Services.h"
#include "ui/parts/Alert.h"
#include "ui/parts/MessageBox.h"
#include "ui/window/MainWindowController.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QPushButton>
#include <QShowEvent>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace hollowfernpike {

namespace {

/// Comes back in front of the management window when that is shown, activated or clicked, and
/// leaves it the keys. A window asks for the front as soon as it is on the screen, so its first
/// exposure comes after that. Window managers raise what is clicked even if it has the keys
/// already. What the user opens from there, such as an editor, is left in front.
///
/// On Wayland no program can raise its windows. There it belongs to the management window, and is
/// shown anew for that, because a window says whose it is when it is shown.
class PromptWindow final : public MessageBox {
public:
    PromptWindow() {
        qApp->installEventFilter(this);
        const auto windows = QGuiApplication::topLevelWindows();
        const auto found = std::ranges::find_if(windows, [this](const QWindow* window) {
            return window->objectName() == nativeName_ && window->isVisible();
        });
        management_ = found == windows.end() ? nullptr : *found;
    }

private:
    // What the toolkit calls the native window of a widget with that name.
    const QString nativeName_ = QString(managementWindowName) + "Window";

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched->objectName() == managementWindowName) {
            if (event->type() == QEvent::Show) {
                isToBeExposed_ = true;
            } else if (event->type() == QEvent::Close) {
                // The toolkit hides a window with the one that it belongs to.
                comeInFrontOf(nullptr);
            }
        } else if (watched->objectName() == nativeName_) {
            const bool isExposed = event->type() == QEvent::Expose;
            if ((isExposed && std::exchange(isToBeExposed_, false)) ||
                event->type() == QEvent::FocusIn || event->type() == QEvent::MouseButtonPress) {
                comeInFrontOf(static_cast<QWindow*>(watched));
            }
        }
        return MessageBox::eventFilter(watched, event);
    }

    void showEvent(QShowEvent* event) override {
        if (isOnWayland_) {
            windowHandle()->setTransientParent(management_);
        }
        MessageBox::showEvent(event);
    }

    void comeInFrontOf(QWindow* management) {
        management_ = management;
        if (management != nullptr && !isOnWayland_) {
            raise();
        } else if (isOnWayland_ && isVisible() &&
                   windowHandle()->transientParent() != management_) {
            hide();
            show();
        }
    }

    const bool isOnWayland_ = QGuiApplication::platformName() == "wayland";
    QPointer<QWindow> management_; ///< while it is shown
    bool isToBeExposed_ = false;   ///< that window, for the first time since it was shown
};

std::unique_ptr<MessageBox> makeWindow() {
    auto window = std::make_unique<PromptWindow>();
    window->setPicture(QMessageBox::Warning);
    window->setModal(false);
    auto* quit = window->addButton(localized("終了", "Quit"), QMessageBox::DestructiveRole);
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
    auto* button = window_->findChild<QPushButton*>("remedy");
    if (button == nullptr && remedy) {
        button = window_->addButton("-", QMessageBox::ActionRole); // none without a title
        button->setObjectName("remedy");
    }
    if (button != nullptr) {
        // Not even the box sees the click, so that it stays open until the remedy has worked.
        QObject::disconnect(button, &QPushButton::clicked, nullptr, nullptr);
        button->setVisible(remedy.has_value());
    }
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
