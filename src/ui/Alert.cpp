#include "ui/Alert.h"

#include "ui/Symbols.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QStyle>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace hollowfernpike {

namespace {

/// Lets a line end inside of what has no blank, such as a path, which would widen the window
/// without bound.
QString breakable(const QString& text) {
    constexpr qsizetype longestRun = 48;
    constexpr QChar zeroWidthSpace(0x200B);
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text);
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    QString result;
    qsizetype runBegin = 0;
    for (qsizetype at = 0, next = 0; at < text.size(); at = next) {
        next = characters.toNextBoundary();
        breaks.setPosition(at);
        if (breaks.isAtBoundary()) {
            runBegin = at;
        } else if (at - runBegin >= longestRun) {
            result += zeroWidthSpace;
            runBegin = at;
        }
        result += text.sliced(at, next - at);
    }
    return result;
}

QString withoutMnemonics(const std::string& title) {
    return QString::fromStdString(title).replace('&', "&&");
}

class AlertBox final : public QMessageBox {
public:
    AlertBox(const Alert& alert, QWidget* parent) : QMessageBox(parent) {
        setWindowTitle("Hollowfernpike");
        setUpPicture(alert);
        setUpTexts(alert);
        for (std::size_t index = 0; index < alert.buttons.size(); ++index) {
            addButton(alert, index);
        }
        setDefaultButton(buttons_.front());
        setEscapeButton(buttons_.back());
    }

    int pressedButton() const {
        for (std::size_t index = 0; index < buttons_.size(); ++index) {
            if (buttons_[index] == clickedButton()) {
                return static_cast<int>(index);
            }
        }
        return static_cast<int>(buttons_.size()) - 1;
    }

private:
    void setUpPicture(const Alert& alert) {
        if (!alert.icon.isNull()) {
            setIconPixmap(pictureOf(alert.icon));
            return;
        }
        const bool warns = alert.style == Alert::Style::warning;
        setIcon(warns ? Warning : Information);
        if (!QIcon::hasThemeIcon(warns ? "dialog-warning" : "dialog-information")) {
            replacePicture(symbolImage(warns ? "exclamationmark.triangle" : "info.circle"));
        }
    }

    /// The toolkit's own is coarse.
    void replacePicture(const QIcon& icon) {
        for (QLabel* label : findChildren<QLabel*>()) {
            if (!label->pixmap(Qt::ReturnByValue).isNull()) {
                label->setPixmap(pictureOf(icon));
            }
        }
    }

    QPixmap pictureOf(const QIcon& icon) const {
        const int side = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
        return icon.pixmap(QSize(side, side), devicePixelRatioF());
    }

    void setUpTexts(const Alert& alert) {
        setText(breakable(QString::fromStdString(alert.message)));
        setInformativeText(breakable(QString::fromStdString(alert.informativeText)));
        for (QLabel* label : findChildren<QLabel*>()) {
            label->setTextFormat(Qt::PlainText);
        }
        giveRoom(findChild<QLabel*>("qt_msgbox_informativelabel"));
        setAccessibleName(QString::fromStdString(alert.message));
        setAccessibleDescription(QString::fromStdString(alert.informativeText));
    }

    /// The toolkit gives an explanation no more room than a short message beside it takes.
    static void giveRoom(QLabel* explanation) {
        constexpr int widestColumn = 320;
        if (explanation != nullptr) {
            const QSize oneLine =
                explanation->fontMetrics().size(Qt::TextSingleLine, explanation->text());
            explanation->setMinimumWidth(std::min(oneLine.width(), widestColumn));
        }
    }

    void addButton(const Alert& alert, std::size_t index) {
        const bool isLast = index + 1 == alert.buttons.size();
        const ButtonRole role = index == 0 ? AcceptRole : isLast ? RejectRole : ActionRole;
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
