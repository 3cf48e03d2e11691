#include "ui/editor/ApplicationListModel.h"

#include "ui/icons/FileIcons.h"
#include "ui/parts/FontScale.h"

#include <QElapsedTimer>
#include <QSize>

#include <algorithm>
#include <utility>

namespace hollowfernpike {

namespace {

constexpr int rowHeight = 32;
constexpr int millisecondsForIcons = 8;

} // namespace

ApplicationListModel::ApplicationListModel(ApplicationSearch search, QObject* parent)
    : QAbstractListModel(parent), search_(std::move(search)), rows_(search_.matches({})),
      placeholder_(genericApplicationIcon()) {
    iconTimer_.setSingleShot(true);
    iconTimer_.callOnTimeout(this, &ApplicationListModel::readIcons);
}

void ApplicationListModel::setText(const QString& text) {
    beginResetModel();
    rows_ = search_.matches(text);
    endResetModel();
}

int ApplicationListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ApplicationListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return QString::fromStdString(applicationAt(index.row()).name);
    case Qt::ToolTipRole:
        return QString::fromStdString(applicationAt(index.row()).path).toHtmlEscaped();
    case Qt::DecorationRole:
        return iconOf(rows_[static_cast<std::size_t>(index.row())]);
    case Qt::SizeHintRole:
        return QSize(0, grown(rowHeight)); // as wide as the view, so that long names elide
    default:
        return {};
    }
}

const platform::InstalledApplication& ApplicationListModel::applicationAt(int row) const {
    return search_.applications()[rows_.at(static_cast<std::size_t>(row))];
}

QIcon ApplicationListModel::iconOf(std::size_t application) const {
    if (const auto known = icons_.find(application); known != icons_.end()) {
        return known->second;
    }
    wantedIcons_.push_back(application);
    if (!iconTimer_.isActive()) {
        iconTimer_.start();
    }
    return placeholder_;
}

void ApplicationListModel::readIcons() {
    QElapsedTimer spent;
    spent.start();
    while (!wantedIcons_.empty() && !spent.hasExpired(millisecondsForIcons)) {
        const std::size_t application = wantedIcons_.back();
        wantedIcons_.pop_back();
        if (!icons_.contains(application)) {
            icons_.emplace(application, iconFor(search_.applications()[application].icon));
        }
    }
    if (!wantedIcons_.empty()) {
        iconTimer_.start();
    }
    if (!rows_.empty()) {
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {Qt::DecorationRole});
    }
}

} // namespace hollowfernpike
