#include "platform/qt/ToolkitTexts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace hollowfernpike::qt {

void ToolkitTexts::setLanguage(std::string_view code) {
    const auto language = QString::fromUtf8(code);
    QLocale::setDefault(QLocale(language));
    QCoreApplication::removeTranslator(&translator_);
    const auto folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (language != "en" && translator_.load("qtbase_" + language, folder)) {
        QCoreApplication::installTranslator(&translator_);
    }
}

} // namespace hollowfernpike::qt
