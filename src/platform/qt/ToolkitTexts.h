#pragma once

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <string_view>

namespace hollowfernpike::qt {

/// The toolkit's own texts: file panels, standard buttons, context menus of text fields. Open
/// windows follow a change at once. Main thread only; needs the application object.
class ToolkitTexts {
public:
    /// `code` as in "ja". The texts stay English if the toolkit was installed without those of the
    /// language.
    void setLanguage(std::string_view code) {
        const auto language = QString::fromUtf8(code);
        QLocale::setDefault(QLocale(language));
        QCoreApplication::removeTranslator(&translator_);
        const auto folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
        if (language != "en" && translator_.load("qtbase_" + language, folder)) {
            QCoreApplication::installTranslator(&translator_);
        }
    }

private:
    QTranslator translator_;
};

} // namespace hollowfernpike::qt
