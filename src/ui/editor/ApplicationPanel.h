#pragma once

#include "platform/RunLoop.h"
#include "ui/editor/ApplicationListModel.h"

#include <QDialog>

#include <functional>
#include <memory>
#include <optional>
#include <string>

class QLabel;
class QLineEdit;
class QListView;
class QPushButton;
class QStackedWidget;

namespace hollowfernpike {

/// Lets the user choose an application: one of those that are installed, or any other file that is
/// one. Main thread only.
class ApplicationPanel final : public QDialog {
public:
    /// Told of the path of the chosen application.
    using Completion = std::function<void(const std::string& path)>;

    /// Shows the panel on `window`, which takes no input until it is answered, and returns at once.
    /// `onChosen` is not called when the panel is cancelled or `window` is destroyed first.
    static void beginSheet(QWidget& window, Completion onChosen);

private:
    ApplicationPanel(QWidget& window, Completion onChosen);

    void buildSearchField();
    void buildList();
    void buildButtons();
    void find(const QString& text);
    void followApplications();
    void showFound(int selectedRow);
    void updateOpenButton();
    std::optional<std::string> selectedPath() const;
    void openSelected();
    void chooseOtherFile();
    void choose(const std::string& path);

    bool eventFilter(QObject* watched, QEvent* event) override;

    Completion onChosen_;
    ApplicationListModel model_;
    QLineEdit* searchField_;
    QListView* list_;
    QLabel* emptyLabel_;
    QStackedWidget* stack_;
    QPushButton* otherButton_;
    QPushButton* cancelButton_;
    QPushButton* openButton_;
    std::unique_ptr<platform::Subscription> applicationsWatch_;
};

} // namespace hollowfernpike
