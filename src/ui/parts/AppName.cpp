#include "ui/parts/AppName.h"

#include "app/Language.h"
#include "model/OneLine.h"
#include "platform/ApplicationBundles.h"
#include "platform/Services.h"
#include "ui/parts/Labels.h"

namespace hollowfernpike {

QString shownAppName(const std::string& path, const std::string& storedName) {
    const auto name =
        platform::services().applicationBundles.displayName(path, Language::current().rawValue());
    return QString::fromStdString(withoutDirections(name.empty() ? storedName : name));
}

QString showAppName(FittingLabel& label, const std::string& path, const std::string& storedName) {
    const auto stored = QString::fromStdString(withoutDirections(storedName));
    const auto known = shownAppName(path, storedName);
    auto other = known == stored ? QString() : known;
    label.setText(stored);
    label.setToolTip(other.toHtmlEscaped());
    return other;
}

} // namespace hollowfernpike
