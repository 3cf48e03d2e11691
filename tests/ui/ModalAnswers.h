#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// Stands in for the user while dialogs are shown, whether they block or not: answers them in the
/// order given, each as soon as it is there, and notes what it saw. A dialog that comes after the
/// last answer is noted and dismissed.
class ModalAnswers : public QObject {
public:
    using Answer = std::function<void(QWidget& dialog)>;

    explicit ModalAnswers(std::deque<Answer> answers);

    /// One line for each: "modal" or "sheet", what it is, its texts and its buttons. Alerts are
    /// called by their pictures.
    const std::vector<std::string>& shown() const { return shown_; }

    /// Whether all answers are given and the last dialog is gone.
    bool allGiven() const;

private:
    void look();
    void answer(QWidget& dialog);

    std::deque<Answer> answers_;
    std::vector<std::string> shown_;
    QPointer<QWidget> current_;
    QTimer timer_;
};

/// Answers: pressing a button of an alert; choosing a file in a panel by typing its name and
/// pressing the button that accepts; sending a dialog away with Escape.
ModalAnswers::Answer press(const std::string& title);
ModalAnswers::Answer choose(const std::string& file);
ModalAnswers::Answer dismiss();

} // namespace hollowfernpike::test
