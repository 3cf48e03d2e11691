#pragma once

#include <QIcon>
#include <QMessageBox>
#include <QPixmap>
#include <QString>

namespace hollowfernpike {

/// The toolkit's box for messages, with texts that are shown as they are, never as markup, and that
/// fit whatever they hold. Main thread only.
class MessageBox : public QMessageBox {
public:
    explicit MessageBox(QWidget* parent = nullptr);

    /// The message and the explanation under it; for assistive technology, too. May change while
    /// the box is open.
    void setTexts(const QString& message, const QString& explanation);

    /// The picture of this kind of message, unless it is replaced by one of its own.
    void setPicture(Icon kind, const QIcon& own = QIcon());

private:
    QPixmap pictureOf(const QIcon& icon) const;
    void replacePicture(const QIcon& icon);
};

} // namespace hollowfernpike
