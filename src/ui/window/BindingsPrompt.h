#pragma once

#include "platform/Desktop.h"

#include <functional>
#include <memory>

class QDialog;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace hollowfernpike {

/// The window with the lines that the user has to write into the settings of the desktop, and a
/// button that copies them. There is at most one; show() only changes what it says while it is
/// open. Main thread only.
class BindingsPrompt {
public:
    /// `onCopied` is called when the user has copied the lines that are shown.
    explicit BindingsPrompt(std::function<void()> onCopied);
    BindingsPrompt(const BindingsPrompt&) = delete;
    BindingsPrompt& operator=(const BindingsPrompt&) = delete;
    ~BindingsPrompt();

    /// Returns at once.
    void show(const platform::ManualBindings& bindings);

    bool isOpen() const;
    void close();

private:
    void build();
    void copy();

    std::function<void()> onCopied_;
    std::unique_ptr<QDialog> window_;
    QLabel* message_ = nullptr;
    QLabel* explanation_ = nullptr;
    QPlainTextEdit* lines_ = nullptr;
    QPushButton* copyButton_ = nullptr;
};

} // namespace hollowfernpike
