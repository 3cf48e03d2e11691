#pragma once

#include <QIcon>
#include <QMessageBox>
#include <QPixmap>
#include <QString>

namespace hollowfernpike {

/// The toolkit's box for messages. Its texts are shown as they are, never as markup, and always
/// fit. Main thread only.
class MessageBox : public QMessageBox {
public:
    explicit MessageBox(QWidget* parent = nullptr);

    /// The message and the explanation under it; for assistive technology, too. May change while
    /// the box is open.
    void setTexts(const QString& message, const QString& explanation);

    /// What is shown on hover over the explanation.
    void setHint(const QString& hint);

    /// Shows `own`, or the picture for this kind of message if `own` is empty.
    void setPicture(Icon kind, const QIcon& own = QIcon());

private:
    QPixmap pictureOf(const QIcon& icon) const;
    void replacePicture(const QIcon& icon);
};

} // namespace hollowfernpike
