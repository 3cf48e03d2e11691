#pragma once

#include <QFileDialog>

namespace hollowfernpike {

/// Asks for an existing file of one kind: shows such files alone, and beeps if the path of another
/// is typed. In the program's language, which the desktop's own panel would not speak.
class OpenPanel final : public QFileDialog {
public:
    /// `kind` names the files to the user; `extension` begins with a dot, its case does not count.
    OpenPanel(const QString& kind, const QString& extension, QWidget* parent = nullptr);

private:
    void accept() override;
    bool isOfAnotherKind(const QString& path) const;

    QString extension_;
};

} // namespace hollowfernpike
