#include "ui/parts/Alert.h"

#include "ui/parts/MessageBox.h"

#include <QCoreApplication>
#include <QPushButton>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace hollowfernpike {

namespace {

QString withoutMnemonics(const std::string& title) {
    return QString::fromStdString(title).replace('&', "&&");
}

class AlertBox final : public MessageBox {
public:
    AlertBox(const Alert& alert, QWidget* parent) : MessageBox(parent) {
        const bool warns = alert.style == Alert::Style::warning;
        setPicture(warns ? Warning : Information, alert.icon);
        setTexts(QString::fromStdString(alert.message),
                 QString::fromStdString(alert.informativeText));
        setHint(QString::fromStdString(alert.hint));
        for (std::size_t index = 0; index < alert.buttons.size(); ++index) {
            addButton(alert, index);
        }
        setDefaultButton(buttons_.front());
        setEscapeButton(buttons_.back());
    }

    int pressedButton() const {
        const auto last = buttons_.end() - 1;
        return static_cast<int>(std::find(buttons_.begin(), last, clickedButton()) -
                                buttons_.begin());
    }

private:
    void addButton(const Alert& alert, std::size_t index) {
        const bool isLast = index + 1 == alert.buttons.size();
        const ButtonRole later = isLast ? RejectRole : ActionRole;
        const ButtonRole role = index == 0 ? AcceptRole : later;
        const QString title = withoutMnemonics(alert.buttons[index]);
        buttons_.push_back(QMessageBox::addButton(title, role));
    }

    std::vector<QPushButton*> buttons_;
};

} // namespace

int Alert::runModal() const {
    AlertBox box(*this, nullptr);
    box.exec();
    return box.pressedButton();
}

void Alert::show() const {
    auto* box = new AlertBox(*this, nullptr);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, box, [box] { delete box; });
    box->show();
}

void Alert::beginSheet(QWidget& window, Completion completion) const {
    auto* box = new AlertBox(*this, &window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(
        box, &QDialog::finished, &window, [box, &window, completion = std::move(completion)] {
            if (completion) {
                QMetaObject::invokeMethod(
                    &window, [completion, button = box->pressedButton()] { completion(button); },
                    Qt::QueuedConnection);
            }
        });
    box->open();
}

} // namespace hollowfernpike
