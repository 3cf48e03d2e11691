#include "ui/icons/FileIcons.h"

#include "platform/Services.h"
#include "ui/icons/GenericApplicationIcon.h"

namespace hollowfernpike {

namespace {

/// An icon may have a name and a size and yet be a file that nobody can read.
bool showsSomething(const QIcon& icon) {
    return !icon.isNull() && !icon.pixmap(QSize(32, 32), 1.0).isNull();
}

QIcon fromTheme(const std::string& name) {
    return name.empty() ? QIcon() : QIcon::fromTheme(QString::fromStdString(name));
}

QIcon fromImage(const std::string& file) {
    return file.empty() ? QIcon() : QIcon(QString::fromStdString(file));
}

} // namespace

QIcon iconFor(const platform::FileIcon& icon) {
    if (QIcon themed = fromTheme(icon.themeName); showsSomething(themed)) {
        return themed;
    }
    if (QIcon image = fromImage(icon.imageFile); showsSomething(image)) {
        return image;
    }
    if (QIcon executable = fromTheme("application-x-executable"); showsSomething(executable)) {
        return executable;
    }
    return genericApplicationIcon();
}

QIcon iconForFile(const std::string& path) {
    return iconFor(platform::services().applicationBundles.iconForFile(path));
}

} // namespace hollowfernpike
