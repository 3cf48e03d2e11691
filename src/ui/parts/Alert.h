#pragma once

#include <QIcon>

#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace hollowfernpike {

/// A question or a message with buttons. Texts are UTF-8 and shown as they are, never as markup.
/// Main thread only.
///
/// Return presses the first button. Escape, and closing the alert, press the last one.
struct Alert {
    enum class Style : unsigned char { warning, informational };

    /// Told of the pressed button's index in `buttons`.
    using Completion = std::function<void(int button)>;

    Style style = Style::warning;
    std::string message = std::string();
    std::string informativeText = std::string();
    std::vector<std::string> buttons = {"OK"}; ///< at least one, the affirmative first
    std::string hint = std::string();          ///< on hover over the informative text
    QIcon icon = QIcon();                      ///< in place of the style's own

    /// Shows the alert by itself and returns the pressed button's index once it is answered; the
    /// last button's if the program ends first.
    int runModal() const;

    /// Shows the alert by itself, beside the other windows, and returns at once. It is gone at the
    /// program's end at the latest.
    void show() const;

    /// Shows the alert on `window`, which takes no input until it is answered, and returns at once.
    /// The alert is gone when `completion` runs, in a later turn of the main loop; if `window` is
    /// destroyed before that, `completion` never runs.
    void beginSheet(QWidget& window, Completion completion = nullptr) const;
};

} // namespace hollowfernpike
