#pragma once

#include "ui/editor/ApplicationSearch.h"

#include <QAbstractListModel>
#include <QIcon>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace hollowfernpike {

/// Applications found by a text, as rows with icon and name. Main thread only.
class ApplicationListModel final : public QAbstractListModel {
public:
    explicit ApplicationListModel(ApplicationSearch search, QObject* parent = nullptr);

    /// Whether there are no applications at all, found or not.
    bool isEmpty() const { return search_.applications().empty(); }

    /// Shows what `text` finds.
    void setText(const QString& text);

    /// Shows what the text finds among these. False, and nothing changes, if they are the same.
    bool setApplications(ApplicationSearch search);

    /// The row must exist.
    std::string pathAt(int row) const { return applicationAt(row).path; }

    /// The row of the application at `path`; absent if it is not shown.
    std::optional<int> rowOf(const std::string& path) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    const platform::InstalledApplication& applicationAt(int row) const;

    void makeIcons();

    ApplicationSearch search_;
    QString text_;
    std::vector<std::size_t> rows_;
    std::vector<QIcon> icons_; ///< of all applications
};

} // namespace hollowfernpike
