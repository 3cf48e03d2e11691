#include "ui/exchange/ExchangePresentation.h"

#include <QFile>
#include <QFileDialog>

#include <utility>

namespace hollowfernpike {

namespace {

void tellFile(const QStringList& files, const ExchangePresentation::FileCompletion& completion) {
    if (!files.isEmpty()) {
        completion(QFile::encodeName(files.front()).toStdString());
    }
}

/// Calls `completion` in a later turn, so that the panel is gone when an alert follows. Activates
/// `window` first: if the panel closes together with a question on it, a window manager may give
/// the focus to another program.
void beginSheet(QFileDialog* panel, QWidget* window,
                ExchangePresentation::FileCompletion completion) {
    panel->setParent(window, panel->windowFlags());
    panel->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(
        panel, &QDialog::accepted, window, [panel, window, completion = std::move(completion)] {
            window->activateWindow();
            QMetaObject::invokeMethod(
                window,
                [files = panel->selectedFiles(), completion] { tellFile(files, completion); },
                Qt::QueuedConnection);
        });
    panel->open();
}

} // namespace

ExchangePresentation ExchangePresentation::modal() {
    return ExchangePresentation(Kind::modal);
}

ExchangePresentation ExchangePresentation::sheetsOn(QWidget* window) {
    return ExchangePresentation(Kind::sheets, window);
}

void ExchangePresentation::choose(std::unique_ptr<QFileDialog> panel,
                                  FileCompletion completion) const {
    if (kind_ == Kind::modal) {
        if (panel->exec() == QDialog::Accepted) {
            const QStringList files = panel->selectedFiles();
            panel.reset();
            tellFile(files, completion);
        }
    } else if (window_ != nullptr) {
        beginSheet(panel.release(), window_, std::move(completion));
    }
}

void ExchangePresentation::ask(const Alert& question, Alert::Completion completion) const {
    if (kind_ == Kind::modal) {
        completion(question.runModal());
    } else if (window_ != nullptr) {
        question.beginSheet(*window_, std::move(completion));
    }
}

void ExchangePresentation::tellSuccess(const Alert& message) const {
    if (kind_ == Kind::modal) {
        message.runModal();
    }
}

} // namespace hollowfernpike
