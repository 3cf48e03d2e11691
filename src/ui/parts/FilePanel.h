#pragma once

#include <QFileDialog>

namespace hollowfernpike {

/// Asks for a file of one kind, to be read or to be written. Speaks the program's language, which
/// the desktop's own panel would not. Main thread only.
///
/// It begins in the user's folder for documents, later where the last one was answered. Its side
/// bar has the user's folders and the bookmarks that GTK's panels have.
class FilePanel : public QFileDialog {
public:
    enum class Purpose : unsigned char {
        open, ///< an existing file; beeps if the path of a file of another kind is typed
        save, ///< any name, which gets the extension; asks before it replaces a file
    };

    /// `kind` names the files to the user; `extension` begins with a dot, its case does not count.
    FilePanel(Purpose purpose, const QString& kind, const QString& extension,
              QWidget* parent = nullptr);

    /// Adds folders to the side bar.
    void addPlaces(const QStringList& folders);

private:
    void accept() override;
    void acceptNow();
    void localizeNumbers();
    void fitColumns();
    bool isOfAnotherKind(const QString& path) const;
    void completeName();
    bool eventFilter(QObject* watched, QEvent* event) override;

    const QString extension_;
};

} // namespace hollowfernpike
