#include "ui/parts/OpenPanel.h"

#include <QApplication>
#include <QFileInfo>

#include <algorithm>

namespace hollowfernpike {

OpenPanel::OpenPanel(const QString& kind, const QString& extension, QWidget* parent)
    : QFileDialog(parent), extension_(extension) {
    setOption(QFileDialog::DontUseNativeDialog);
    setFileMode(QFileDialog::ExistingFile);
    setNameFilter(QStringLiteral("%1 (*%2)").arg(kind, extension));
}

void OpenPanel::accept() {
    const QStringList files = selectedFiles();
    if (std::ranges::any_of(files, [this](const auto& path) { return isOfAnotherKind(path); })) {
        QApplication::beep();
    } else {
        QFileDialog::accept();
    }
}

bool OpenPanel::isOfAnotherKind(const QString& path) const {
    const QFileInfo file(path);
    return file.exists() && !file.isDir() && !path.endsWith(extension_, Qt::CaseInsensitive);
}

} // namespace hollowfernpike
