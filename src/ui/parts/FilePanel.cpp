#include "ui/parts/FilePanel.h"

#include "app/L10n.h"
#include "app/Language.h"
#include "ui/parts/Alert.h"
#include "ui/parts/FontScale.h"

#include <QApplication>
#include <QDateTime>
#include <QFile>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHash>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QStandardPaths>
#include <QStyledItemDelegate>
#include <QToolButton>
#include <QTreeView>
#include <QUrl>

#include <algorithm>

namespace hollowfernpike {

namespace {

constexpr QSize usualSize(680, 440);

QHash<QString, QString> lastFolders; // where panels were answered last, by the files' extension

QString firstFolder(const QString& extension) {
    if (auto last = lastFolders.value(extension); QFileInfo(last).isDir()) {
        return last;
    }
    const auto documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

/// Each line is a URL, and perhaps a blank and a name.
QList<QUrl> bookmarks() {
    QList<QUrl> places;
    QFile file(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
               "/gtk-3.0/bookmarks");
    if (file.open(QIODevice::ReadOnly)) {
        for (const auto& line : file.readAll().split('\n')) {
            const auto place = QUrl::fromEncoded(line.split(' ').front());
            if (place.isLocalFile() && QFileInfo(place.toLocalFile()).isDir()) {
                places.push_back(place);
            }
        }
    }
    return places;
}

QList<QUrl> usualPlaces() {
    QList<QUrl> places;
    for (const auto location : {QStandardPaths::HomeLocation, QStandardPaths::DocumentsLocation,
                                QStandardPaths::DownloadLocation}) {
        const auto folder = QStandardPaths::writableLocation(location);
        const auto place = QUrl::fromLocalFile(folder);
        if (QFileInfo(folder).isDir() && !places.contains(place)) {
            places.push_back(place);
        }
    }
    return places + bookmarks();
}

/// The toolkit has no translation of "Folder".
class LocalizedKinds final : public QFileIconProvider {
public:
    QString type(const QFileInfo& file) const override {
        return file.isDir() ? localized("フォルダー", "Folder") : QFileIconProvider::type(file);
    }
};

/// The toolkit's list of files writes numbers in the language of the session.
class LocalizedNumbers final : public QStyledItemDelegate {
public:
    enum Column { size = 1, date = 3 };

    using QStyledItemDelegate::QStyledItemDelegate;

private:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        const auto file = index.siblingAtColumn(0).data(QFileSystemModel::FilePathRole).toString();
        const QFileInfo info(file);
        if (index.column() == date) {
            option->text = QLocale().toString(info.lastModified(), QLocale::ShortFormat);
        } else if (!info.isDir()) {
            option->text = QLocale().formattedDataSize(info.size());
        }
    }
};

QFileIconProvider& localizedKinds() {
    static LocalizedKinds kinds;
    return kinds;
}

} // namespace

FilePanel::FilePanel(Purpose purpose, const QString& kind, const QString& extension,
                     QWidget* parent)
    : QFileDialog(parent), extension_(extension) {
    setOption(QFileDialog::DontUseNativeDialog);
    setOption(QFileDialog::DontConfirmOverwrite); // accept() asks as all our questions do
    setAcceptMode(purpose == Purpose::open ? AcceptOpen : AcceptSave);
    setFileMode(purpose == Purpose::open ? ExistingFile : AnyFile);
    setNameFilter(QStringLiteral("%1 (*%2)").arg(kind, extension));
    setIconProvider(&localizedKinds());
    localizeNumbers();
    fitColumns();
    resize(grown(usualSize.width()), grown(usualSize.height()));
    setSidebarUrls(usualPlaces());
    setDirectory(firstFolder(extension));
    connect(this, &QFileDialog::fileSelected, this, [extension](const QString& file) {
        lastFolders[extension] = QFileInfo(file).absolutePath();
    });
    for (auto* button : findChildren<QToolButton*>()) {
        button->installEventFilter(this);
    }
    // On Wayland the list of completions takes the keys from the text field with each letter, and
    // GNOME Shell loses some of those typed meanwhile.
    auto* field = findChild<QLineEdit*>("fileNameEdit");
    if (field != nullptr && QGuiApplication::platformName() == "wayland") {
        field->setCompleter(nullptr);
    }
}

void FilePanel::localizeNumbers() {
    if (auto* files = findChild<QTreeView*>("treeView")) {
        auto* numbers = new LocalizedNumbers(this);
        files->setItemDelegateForColumn(LocalizedNumbers::size, numbers);
        files->setItemDelegateForColumn(LocalizedNumbers::date, numbers);
    }
}

// The toolkit's widths show neither dates nor kinds whole.
void FilePanel::fitColumns() {
    if (auto* files = findChild<QTreeView*>("treeView")) {
        auto* header = files->header();
        header->setResizeContentsPrecision(0); // of what is on the screen: folders may be large
        header->setStretchLastSection(false);
        header->setSectionResizeMode(QHeaderView::ResizeToContents);
        header->setSectionResizeMode(0, QHeaderView::Stretch); // names
    }
}

void FilePanel::addPlaces(const QStringList& folders) {
    auto places = sidebarUrls();
    for (const auto& folder : folders) {
        places.push_back(QUrl::fromLocalFile(folder));
    }
    setSidebarUrls(places);
}

void FilePanel::accept() {
    const QStringList files = selectedFiles();
    const bool isFolder = !files.isEmpty() && QFileInfo(files.front()).isDir();
    if (isFolder) {
        QFileDialog::accept();
    } else if (acceptMode() == AcceptOpen) {
        const auto isOther = [this](const auto& path) { return isOfAnotherKind(path); };
        std::ranges::any_of(files, isOther) ? QApplication::beep() : QFileDialog::accept();
    } else {
        completeName();
        const QFileInfo file(selectedFiles().value(0));
        if (!file.exists() || file.isDir()) {
            QFileDialog::accept();
            return;
        }
        const Alert question{
            .message = L10n::replaceTitle(file.fileName().toStdString()),
            .buttons = {localized("置き換える", "Replace"), localized("キャンセル", "Cancel")}};
        question.beginSheet(*this, [this](int button) {
            if (button == 0) {
                QFileDialog::accept();
            }
        });
    }
}

bool FilePanel::isOfAnotherKind(const QString& path) const {
    const QFileInfo file(path);
    return file.exists() && !file.isDir() && !path.endsWith(extension_, Qt::CaseInsensitive);
}

// Before the question about replacing a file, which is about the full name. The toolkit would
// complete only names without a dot, and goes on with a file that is selected in the list.
void FilePanel::completeName() {
    auto* field = findChild<QLineEdit*>("fileNameEdit");
    if (field == nullptr) {
        return;
    }
    const QString name = field->text().remove('"'); // to the toolkit, quotes delimit names
    if (!name.endsWith(extension_, Qt::CaseInsensitive)) {
        if (auto* list = findChild<QListView*>("listView")) {
            list->clearSelection();
        }
        field->setText(name + extension_);
    }
}

// A button with a symbol leaves Return to the dialog, which would take the file.
bool FilePanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto key = static_cast<QKeyEvent*>(event)->key();
        auto* button = qobject_cast<QToolButton*>(watched);
        if (button != nullptr && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
            button->click();
            return true;
        }
    }
    return QFileDialog::eventFilter(watched, event);
}

} // namespace hollowfernpike
