#pragma once

#include <QWidget>

class QPushButton;

namespace hollowfernpike {

class SymbolButton;

/// The bar above the list: export and import at its beginning, adding at its end. It is 52 high,
/// or higher for large fonts.
/// Main thread only.
class HeaderBar final : public QWidget {
public:
    explicit HeaderBar(QWidget* parent = nullptr);

    /// Puts the visible texts into the current language. The symbols' accessible names keep the
    /// language in which they were made.
    void relabel();

    SymbolButton* exportButton() const { return exportButton_; }
    SymbolButton* importButton() const { return importButton_; }
    QPushButton* addButton() const { return addButton_; }

private:
    void changeEvent(QEvent* event) override;

    SymbolButton* exportButton_;
    SymbolButton* importButton_;
    QPushButton* addButton_;
};

} // namespace hollowfernpike
