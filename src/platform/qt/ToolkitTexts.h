#pragma once

#include <QTranslator>

#include <string_view>

namespace hollowfernpike::qt {

/// The toolkit's own texts: file panels, standard buttons, context menus of text fields. Open
/// windows follow a change at once. Main thread only; needs the application object.
class ToolkitTexts {
public:
    /// `code` as in "ja". The texts stay English if the toolkit was installed without those of the
    /// language.
    void setLanguage(std::string_view code);

private:
    QTranslator translator_;
};

} // namespace hollowfernpike::qt
