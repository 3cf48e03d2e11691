#pragma once

#include <QApplication>
#include <QFont>

namespace hollowfernpike::test {

/// The desktop's font in another size, until this is destroyed.
class FontChange {
public:
    explicit FontChange(int points) {
        QFont font = before_;
        font.setPointSize(points);
        QApplication::setFont(font);
    }
    FontChange(const FontChange&) = delete;
    FontChange& operator=(const FontChange&) = delete;
    ~FontChange() { QApplication::setFont(before_); }

private:
    QFont before_ = QApplication::font();
};

} // namespace hollowfernpike::test
