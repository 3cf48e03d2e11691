#pragma once

#include "ui/parts/Alert.h"

#include <QPointer>
#include <QWidget>

#include <filesystem>
#include <functional>
#include <memory>

class QFileDialog;

namespace hollowfernpike {

/// How an export or an import shows its panels and questions. A value. Main thread only.
class ExchangePresentation {
public:
    /// Told of the file that was chosen; not called if none was.
    using FileCompletion = std::function<void(const std::filesystem::path& file)>;

    /// Each panel or question stands alone and blocks until it is answered; success is reported.
    static ExchangePresentation modal();

    /// Each panel or question is shown on `window` and answered later; success is not reported.
    /// Without a window, or once it is destroyed, nothing is shown and no completion is called.
    static ExchangePresentation sheetsOn(QWidget* window);

    void choose(std::unique_ptr<QFileDialog> panel, FileCompletion completion) const;
    void ask(const Alert& question, Alert::Completion completion) const;
    void tellSuccess(const Alert& message) const;

private:
    enum class Kind : unsigned char { modal, sheets };

    explicit ExchangePresentation(Kind kind, QWidget* window = nullptr)
        : kind_(kind), window_(window) {}

    Kind kind_;
    QPointer<QWidget> window_;
};

} // namespace hollowfernpike
