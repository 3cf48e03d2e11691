#include "ui/editor/ApplicationListModel.h"

#include "model/OneLine.h"
#include "ui/icons/FileIcons.h"
#include "ui/parts/FontScale.h"

#include <QSize>

#include <utility>

namespace hollowfernpike {

namespace {

constexpr int rowHeight = 32;

} // namespace

ApplicationListModel::ApplicationListModel(ApplicationSearch search, QObject* parent)
    : QAbstractListModel(parent), search_(std::move(search)), rows_(search_.matches({})) {
    makeIcons();
}

void ApplicationListModel::makeIcons() {
    icons_.clear();
    for (const auto& application : search_.applications()) {
        icons_.push_back(iconFor(application.icon));
    }
}

void ApplicationListModel::setText(const QString& text) {
    beginResetModel();
    text_ = text;
    rows_ = search_.matches(text_);
    endResetModel();
}

bool ApplicationListModel::setApplications(ApplicationSearch search) {
    if (search.applications() == search_.applications()) {
        return false;
    }
    beginResetModel();
    search_ = std::move(search);
    rows_ = search_.matches(text_);
    makeIcons();
    endResetModel();
    return true;
}

std::optional<int> ApplicationListModel::rowOf(const std::string& path) const {
    for (int row = 0; row < rowCount(); ++row) {
        if (applicationAt(row).path == path) {
            return row;
        }
    }
    return std::nullopt;
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
        return QString::fromStdString(withoutDirections(applicationAt(index.row()).name));
    case Qt::ToolTipRole:
        return QString::fromStdString(applicationAt(index.row()).path).toHtmlEscaped();
    case Qt::DecorationRole:
        return icons_[rows_[static_cast<std::size_t>(index.row())]];
    case Qt::SizeHintRole:
        return QSize(0, grown(rowHeight)); // as wide as the view, so that long names elide
    default:
        return {};
    }
}

const platform::InstalledApplication& ApplicationListModel::applicationAt(int row) const {
    return search_.applications()[rows_.at(static_cast<std::size_t>(row))];
}

} // namespace hollowfernpike
