#include "ui/editor/ApplicationPanel.h"

#include "app/Language.h"
#include "platform/ApplicationBundles.h"
#include "platform/Services.h"
#include "ui/parts/FilePanel.h"
#include "ui/parts/FontScale.h"
#include "ui/parts/Sheets.h"
#include "ui/parts/SystemColors.h"

#include <QCoreApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace hollowfernpike {

namespace {

constexpr QSize initialSize(360, 420);
constexpr int rowIcon = 24;

ApplicationSearch installedApplications() {
    const Language language = Language::current();
    auto& bundles = platform::services().applicationBundles;
    return {bundles.installedApplications(language.rawValue()), language};
}

QStringList applicationDirectories() {
    QStringList directories;
    for (const auto& path : platform::services().applicationBundles.applicationDirectories()) {
        directories.push_back(QString::fromStdString(path));
    }
    return directories;
}

/// The one of these folders that holds the most applications; home if there is none.
QString fullestOf(const QStringList& directories, const QString& extension) {
    const auto count = [&extension](const QString& path) {
        return QDir(path, "*" + extension).count();
    };
    const auto fullest = std::ranges::max_element(directories, {}, count);
    return fullest == directories.end() ? QDir::homePath() : *fullest;
}

QFileDialog* panelFor(const platform::ApplicationFiles& applications,
                      const QStringList& directories, QWidget* parent) {
    const auto* const kind = localized("アプリ", "Apps");
    const auto extension = QString::fromStdString(applications.extension);
    if (!applications.areFolders) {
        auto* files = new FilePanel(FilePanel::Purpose::open, kind, extension, parent);
        files->addPlaces(directories);
        return files;
    }
    // The desktop's own panel: the toolkit's would lead into such a folder.
    auto* folders = new QFileDialog(parent);
    folders->setFileMode(QFileDialog::ExistingFile);
    folders->setNameFilter(QStringLiteral("%1 (*%2)").arg(kind, extension));
    return folders;
}

bool movesInList(int key) {
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
           key == Qt::Key_PageDown;
}

} // namespace

void ApplicationPanel::beginSheet(QWidget& window, Completion onChosen) {
    (new ApplicationPanel(window, std::move(onChosen)))->open();
}

ApplicationPanel::ApplicationPanel(QWidget& window, Completion onChosen)
    : QDialog(&window), onChosen_(std::move(onChosen)), model_(installedApplications()),
      searchField_(new QLineEdit), list_(new QListView), emptyLabel_(new QLabel),
      stack_(new QStackedWidget), otherButton_(new QPushButton(localized("その他...", "Other..."))),
      cancelButton_(new QPushButton(localized("キャンセル", "Cancel"))),
      openButton_(new QPushButton(localized("開く", "Open"))) {
    setObjectName("applicationPanel");
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(localized("アプリを選択", "Select an App"));
    auto* column = new QVBoxLayout(this);
    column->addWidget(searchField_);
    column->addWidget(stack_);
    auto* buttons = new QHBoxLayout;
    column->addLayout(buttons);
    buttons->addWidget(otherButton_);
    buttons->addStretch();
    buttons->addWidget(cancelButton_);
    buttons->addWidget(openButton_);
    buildList();
    buildButtons();
    buildSearchField();
    showFound(0);
    applicationsWatch_ =
        platform::services().applicationBundles.watch([this] { followApplications(); });
    resize(grown(initialSize.width()), grown(initialSize.height()));
}

void ApplicationPanel::buildSearchField() {
    searchField_->setObjectName("searchField");
    searchField_->setPlaceholderText(localized("検索", "Search"));
    searchField_->setAccessibleName(localized("検索", "Search"));
    searchField_->setClearButtonEnabled(true);
    if (auto* clear = searchField_->findChild<QToolButton*>()) {
        clear->setAccessibleName(localized("消去", "Clear"));
    }
    searchField_->installEventFilter(this);
    QPalette palette = searchField_->palette(); // some desktops have placeholders dark on dark
    palette.setColor(QPalette::PlaceholderText, secondaryLabelColor(palette));
    searchField_->setPalette(palette);
    searchField_->setFocus();
    connect(searchField_, &QLineEdit::textChanged, this, &ApplicationPanel::find);
}

void ApplicationPanel::buildList() {
    list_->setObjectName("list");
    list_->setAccessibleName(localized("アプリ", "Apps"));
    list_->setModel(&model_);
    list_->setIconSize(QSize(grown(rowIcon), grown(rowIcon)));
    list_->setUniformItemSizes(true);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(list_, &QListView::doubleClicked, this, &ApplicationPanel::openSelected);
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ApplicationPanel::updateOpenButton);
    emptyLabel_->setObjectName("emptyLabel");
    emptyLabel_->setAlignment(Qt::AlignCenter);
    emptyLabel_->setWordWrap(true);
    stack_->addWidget(list_);
    stack_->addWidget(emptyLabel_);
    setTabOrder(searchField_, list_);
}

void ApplicationPanel::buildButtons() {
    otherButton_->setObjectName("otherButton");
    cancelButton_->setObjectName("cancelButton");
    openButton_->setObjectName("openButton");
    openButton_->setDefault(true);
    onClick(*otherButton_, [this] { chooseOtherFile(); });
    onClick(*cancelButton_, [this] { reject(); });
    onClick(*openButton_, [this] { openSelected(); });
}

void ApplicationPanel::find(const QString& text) {
    model_.setText(text);
    showFound(0);
}

void ApplicationPanel::followApplications() {
    const auto selected = selectedPath();
    if (model_.setApplications(installedApplications())) {
        showFound(selected ? model_.rowOf(*selected).value_or(0) : 0);
    }
}

void ApplicationPanel::showFound(int selectedRow) {
    list_->setCurrentIndex(model_.index(selectedRow));
    emptyLabel_->setText(model_.isEmpty()
                             ? localized("アプリがありません", "There are no apps.")
                             : localized("一致するアプリがありません", "No apps match."));
    stack_->setCurrentIndex(model_.rowCount() > 0 ? 0 : 1);
    updateOpenButton();
}

void ApplicationPanel::updateOpenButton() {
    openButton_->setEnabled(list_->selectionModel()->hasSelection());
}

std::optional<std::string> ApplicationPanel::selectedPath() const {
    const auto selected = list_->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? std::nullopt : std::optional(model_.pathAt(selected.front().row()));
}

void ApplicationPanel::openSelected() {
    if (const auto selected = selectedPath()) {
        choose(*selected);
    }
}

void ApplicationPanel::chooseOtherFile() {
    const auto directories = applicationDirectories();
    const auto applications = platform::services().applicationBundles.applicationFiles();
    auto* files = panelFor(applications, directories, this);
    files->setAttribute(Qt::WA_DeleteOnClose);
    files->setDirectory(
        applications.areFolders
            ? directories.value(0)
            : fullestOf(directories, QString::fromStdString(applications.extension)));
    files->setWindowTitle(windowTitle());
    connect(files, &QFileDialog::fileSelected, this,
            [this](const QString& file) { choose(file.toStdString()); });
    files->open();
}

// Calls a copy: the callback may destroy the window, and the panel with it.
void ApplicationPanel::choose(const std::string& path) {
    const Completion onChosen = onChosen_;
    accept();
    onChosen(path);
}

// Arrow and page keys move in the list while the search field keeps the focus.
bool ApplicationPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == searchField_ && event->type() == QEvent::KeyPress &&
        movesInList(static_cast<QKeyEvent*>(event)->key())) {
        QCoreApplication::sendEvent(list_, event);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace hollowfernpike
