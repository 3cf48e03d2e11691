#include "platform/qt/Application.h"

#include "platform/qt/status/TrayWindow.h"

#include <QApplication>
#include <QIcon>
#include <QMetaObject>
#include <QPlatformSurfaceEvent>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace hollowfernpike::qt {

namespace {

bool isOrdinary(Qt::WindowType type) {
    return type == Qt::Window || type == Qt::Dialog || type == Qt::Sheet;
}

bool belongsToStatusItem(const QWidget& widget) {
    return dynamic_cast<const TrayWindow*>(&widget) != nullptr;
}

bool isBeforeAll(const QWidget* dialog) {
    return dialog != nullptr && dialog->isVisible() &&
           dialog->windowModality() == Qt::ApplicationModal;
}

/// The open dialog that is modal to the whole application, even if sheets have opened after it;
/// null if there is none.
QWidget* dialogBeforeAll() {
    if (QWidget* latest = QApplication::activeModalWidget(); isBeforeAll(latest)) {
        return latest;
    }
    const auto widgets = QApplication::topLevelWidgets();
    const auto found = std::ranges::find_if(widgets, isBeforeAll);
    return found == widgets.end() ? nullptr : *found;
}

bool isSheetOn(const QWidget& window, const QWidget& other) {
    return other.isVisible() && other.windowModality() == Qt::WindowModal &&
           other.parentWidget() != nullptr && other.parentWidget()->window() == &window;
}

/// The window, or the sheet on it that has to be answered first.
QWidget* sheetOrSelf(QWidget* window) {
    for (QWidget* other : QApplication::topLevelWidgets()) {
        if (isSheetOn(*window, *other)) {
            return sheetOrSelf(other);
        }
    }
    return window;
}

// Called for the first window, not at the start: most runs open no window, and what draws the icon
// would stay in memory.
void useApplicationIcon() {
    if (QApplication::windowIcon().isNull()) {
        const QString name = QGuiApplication::desktopFileName();
        QApplication::setWindowIcon(QIcon::fromTheme(name, QIcon(":/icons/" + name + ".png")));
    }
}

} // namespace

Application::Application(platform::OwnWindows& ownWindows, platform::ActivationPolicy policy)
    : ownWindows_(ownWindows), policy_(policy) {
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QCoreApplication::instance()->installEventFilter(this);
}

void Application::setStatusItemShown(bool shown) {
    if (std::exchange(statusItemShown_, shown) != shown) {
        updateTaskBar();
    }
}

void Application::setActivationPolicy(platform::ActivationPolicy policy) {
    if (std::exchange(policy_, policy) != policy) {
        updateTaskBar();
    }
}

void Application::activateIgnoringOtherApps() {
    if (QWidget* dialog = dialogBeforeAll()) {
        ownWindows_.bringToFront(sheetOrSelf(dialog)->winId());
    } else if (keyWindow_ != nullptr && keyWindow_->isVisible()) {
        ownWindows_.bringToFront(sheetOrSelf(keyWindow_)->winId());
    }
}

std::vector<platform::ApplicationWindow> Application::windows() {
    std::vector<platform::ApplicationWindow> windows;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (belongsToStatusItem(*widget)) {
            windows.push_back({.isVisible = widget->isVisible(), .className = "StatusBarWindow"});
        } else if (isOrdinary(widget->windowType())) {
            windows.push_back({.isVisible = widget->isVisible() && !widget->isMinimized(),
                               .className = widget->metaObject()->className()});
        }
    }
    return windows;
}

bool Application::hasModalWindow() {
    return dialogBeforeAll() != nullptr;
}

void Application::sendAction(const platform::MenuItem& item) {
    if (platform::ActionTarget* target = item.target != nullptr ? item.target : delegate_) {
        target->performAction(item.action, &item);
    }
}

void Application::performAction(std::string_view action) {
    if (delegate_ != nullptr) {
        delegate_->performAction(action, nullptr);
    }
}

int Application::run() {
    delegate_->applicationDidFinishLaunching();
    const int status = QApplication::exec();
    delegate_->applicationWillTerminate();
    return status;
}

// Not QCoreApplication::quit(): it asks every window first, and an open dialog would refuse.
// Queued, because exit() has no effect before the event loop runs.
void Application::terminate() {
    const auto end = [] { QCoreApplication::exit(0); };
    QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
}

bool Application::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::PlatformSurface) {
        auto* window = qobject_cast<QWindow*>(watched);
        const auto* surface = static_cast<QPlatformSurfaceEvent*>(event);
        if (window != nullptr && isOrdinary(window->type()) &&
            surface->surfaceEventType() == QPlatformSurfaceEvent::SurfaceCreated) {
            ownWindows_.setShownInTaskBar(window->winId(), showsInTaskBar());
            useApplicationIcon();
        }
    } else if (event->type() == QEvent::ZOrderChange || event->type() == QEvent::WindowActivate) {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (widget != nullptr && widget->isWindow() && isOrdinary(widget->windowType())) {
            keyWindow_ = widget;
        }
    }
    return QObject::eventFilter(watched, event);
}

bool Application::showsInTaskBar() const {
    return policy_ == platform::ActivationPolicy::regular || !statusItemShown_;
}

void Application::updateTaskBar() {
    ownWindows_.setShownAsApplication(showsInTaskBar());
    for (const QWindow* window : QGuiApplication::topLevelWindows()) {
        if (window->handle() != nullptr && isOrdinary(window->type())) {
            ownWindows_.setShownInTaskBar(window->winId(), showsInTaskBar());
        }
    }
}

} // namespace hollowfernpike::qt
