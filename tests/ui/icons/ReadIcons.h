#pragma once

#include "support/WaitUntil.h"
#include "ui/icons/IconReader.h"

#include <QCoreApplication>
#include <QIcon>
#include <QPixmap>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// Waits until all icons that were drawn have been read.
inline void awaitIcons() {
    EXPECT_TRUE(waitUntil([] {
        QCoreApplication::processEvents();
        return !isReadingIcons();
    }));
}

/// The icon as it is drawn once it has been read.
inline QPixmap readPixmap(const QIcon& icon, const QSize& size, qreal scale = 1.0) {
    icon.pixmap(size, scale);
    awaitIcons();
    return icon.pixmap(size, scale);
}

} // namespace hollowfernpike::test
