#pragma once

#include "ui/editor/ApplicationSearch.h"

#include <QAbstractListModel>
#include <QIcon>
#include <QTimer>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace hollowfernpike {

/// Applications found by a text, as rows with icon and name. Icons are read after they are first
/// asked for, in slices of 8 ms, so that a long list opens at once. Main thread only.
class ApplicationListModel final : public QAbstractListModel {
public:
    explicit ApplicationListModel(ApplicationSearch search, QObject* parent = nullptr);

    /// Whether there are no applications at all, found or not.
    bool isEmpty() const { return search_.applications().empty(); }

    /// Shows what `text` finds.
    void setText(const QString& text);

    /// The row must exist.
    std::string pathAt(int row) const { return applicationAt(row).path; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    const platform::InstalledApplication& applicationAt(int row) const;
    QIcon iconOf(std::size_t application) const;
    void readIcons();

    ApplicationSearch search_;
    std::vector<std::size_t> rows_;
    QIcon placeholder_;
    std::map<std::size_t, QIcon> icons_;
    mutable std::vector<std::size_t> wantedIcons_;
    mutable QTimer iconTimer_;
};

} // namespace hollowfernpike
