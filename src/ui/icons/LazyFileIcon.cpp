#include "ui/icons/LazyFileIcon.h"

#include "ui/icons/FileIcons.h"

#include <QIconEngine>

#include <utility>

namespace hollowfernpike {

namespace {

class LazyIconEngine final : public QIconEngine {
public:
    explicit LazyIconEngine(std::string path) : path_(std::move(path)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State state) override {
        icon().paint(painter, rect, Qt::AlignCenter, mode, state);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return icon().pixmap(size, 1.0, mode, state);
    }

    QIconEngine* clone() const override { return new LazyIconEngine(*this); }

private:
    const QIcon& icon() {
        if (icon_.isNull()) {
            icon_ = iconForFile(path_);
        }
        return icon_;
    }

    std::string path_;
    QIcon icon_;
};

} // namespace

QIcon lazyIconForFile(std::string path) {
    return QIcon(new LazyIconEngine(std::move(path)));
}

} // namespace hollowfernpike
