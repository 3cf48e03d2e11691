#pragma once

#include "platform/Application.h"
#include "platform/OwnWindows.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace hollowfernpike::qt {

/// The application on Qt's event loop. Made when there is a QApplication, destroyed before it.
class Application final : public QObject, public platform::Application {
public:
    /// `ownWindows` outlives this. `policy` holds until setActivationPolicy() is called.
    explicit Application(platform::OwnWindows& ownWindows,
                         platform::ActivationPolicy policy = platform::ActivationPolicy::regular);

    /// Tells whether the desktop shows our status item; it does not until this is called.
    void setStatusItemShown(bool shown);

    void setDelegate(platform::ApplicationDelegate* delegate) override { delegate_ = delegate; }
    void setActivationPolicy(platform::ActivationPolicy policy) override;
    void activateIgnoringOtherApps() override;
    std::vector<platform::ApplicationWindow> windows() override;
    bool hasModalWindow() override;
    void sendAction(const platform::MenuItem& item) override;
    int run() override;
    void terminate() override;

    /// Has the delegate perform an action that no menu item asks for.
    void performAction(std::string_view action);

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool showsInTaskBar() const;
    void updateTaskBar();

    platform::OwnWindows& ownWindows_;
    platform::ApplicationDelegate* delegate_ = nullptr;
    platform::ActivationPolicy policy_;
    bool statusItemShown_ = false;
    QPointer<QWidget> keyWindow_; ///< the one that was raised or activated last
};

} // namespace hollowfernpike::qt
