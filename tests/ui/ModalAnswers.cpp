#include "ui/ModalAnswers.h"

#include "ui/icons/Symbols.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

namespace {

constexpr const char* seenMark = "isSeen";

std::string describePicture(const QMessageBox& alert) {
    switch (alert.icon()) {
    case QMessageBox::Warning:
        return "warning";
    case QMessageBox::Information:
        return "information";
    default:
        break;
    }
    const QPixmap picture = alert.iconPixmap();
    const QIcon checkmark = symbolImage(Symbol::checkmarkCircle, SymbolTint::accent);
    const bool isCheckmark = picture.toImage() == checkmark.pixmap(picture.size()).toImage();
    return isCheckmark ? "checkmark.circle" : "another picture";
}

std::string describeAlert(const QMessageBox& alert) {
    std::string text = describePicture(alert);
    text += " | " + alert.text().toStdString();
    if (!alert.informativeText().isEmpty()) {
        text += " | " + alert.informativeText().toStdString();
    }
    for (const QAbstractButton* button : alert.buttons()) {
        text += " | " + button->text().toStdString();
    }
    return text;
}

std::string describePanel(const QFileDialog& panel) {
    const auto* name = panel.findChild<QLineEdit*>("fileNameEdit");
    const std::string kind =
        panel.acceptMode() == QFileDialog::AcceptSave ? "save panel" : "open panel";
    return name->text().isEmpty() ? kind : kind + " | " + name->text().toStdString();
}

std::string describe(const QWidget& dialog) {
    const std::string kind = dialog.windowModality() == Qt::WindowModal ? "sheet " : "modal ";
    if (const auto* alert = qobject_cast<const QMessageBox*>(&dialog)) {
        return kind + describeAlert(*alert);
    }
    if (const auto* panel = qobject_cast<const QFileDialog*>(&dialog)) {
        return kind + describePanel(*panel);
    }
    return kind + dialog.metaObject()->className();
}

} // namespace

ModalAnswers::ModalAnswers(std::deque<Answer> answers) : answers_(std::move(answers)) {
    connect(&timer_, &QTimer::timeout, this, &ModalAnswers::look);
    timer_.start(1);
}

bool ModalAnswers::allGiven() const {
    return answers_.empty() && (current_ == nullptr || !current_->isVisible());
}

// The answer is queued: it may open the next dialog in a loop of its own, during which this timer
// must tick.
void ModalAnswers::look() {
    QWidget* dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || !dialog->isVisible() || dialog->property(seenMark).isValid()) {
        return;
    }
    dialog->setProperty(seenMark, QVariant::fromValue(1));
    current_ = dialog;
    const auto answerIt = [this, dialog] { answer(*dialog); };
    QMetaObject::invokeMethod(dialog, answerIt, Qt::QueuedConnection);
}

void ModalAnswers::answer(QWidget& dialog) {
    shown_.push_back(describe(dialog));
    if (answers_.empty()) {
        dialog.close();
        return;
    }
    const Answer next = answers_.front();
    answers_.pop_front();
    next(dialog);
}

ModalAnswers::Answer press(const std::string& title) {
    return [title](QWidget& dialog) {
        for (auto* button : dialog.findChildren<QPushButton*>()) {
            if (button->text().toStdString() == title) {
                button->click();
                return;
            }
        }
        ADD_FAILURE() << "no button is called " << title;
        dialog.close();
    };
}

namespace {

/// While the toolkit reads the folder, it takes no name of a file in it, and may keep a file that
/// was named meanwhile out of its list until it filters that anew. So this has it do so, and tries
/// again.
void enter(QFileDialog& panel, const QString& file) {
    auto* name = panel.findChild<QLineEdit*>("fileNameEdit");
    const auto role = panel.acceptMode() == QFileDialog::AcceptSave ? QDialogButtonBox::Save
                                                                    : QDialogButtonBox::Open;
    auto* button = panel.findChild<QDialogButtonBox*>("buttonBox")->button(role);
    name->clear();
    name->setText(file);
    if (button->isEnabled()) {
        button->click();
    } else {
        panel.setNameFilters(panel.nameFilters());
        QTimer::singleShot(1, &panel, [&panel, file] { enter(panel, file); });
    }
}

} // namespace

ModalAnswers::Answer choose(const std::string& file) {
    return [file](QWidget& dialog) {
        auto* panel = qobject_cast<QFileDialog*>(&dialog);
        ASSERT_NE(panel, nullptr);
        enter(*panel, QString::fromStdString(file));
    };
}

ModalAnswers::Answer dismiss() {
    return [](QWidget& dialog) {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(&dialog, &escape);
    };
}

} // namespace hollowfernpike::test
