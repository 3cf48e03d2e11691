#include "ui/ToolkitLanguage.h"

#include "app/Language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace hollowfernpike {

namespace {

constexpr const char* translatorName = "toolkit texts in Japanese";

} // namespace

// The toolkit's texts are in English where there is no translator.
void speakInterfaceLanguage() {
    auto* application = QCoreApplication::instance();
    auto* translator =
        application->findChild<QTranslator*>(translatorName, Qt::FindDirectChildrenOnly);
    if (Language::current() == Language::english) {
        delete translator;
    } else if (translator == nullptr) {
        translator = new QTranslator(application);
        translator->setObjectName(translatorName);
        if (translator->load("qtbase_ja", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
            QCoreApplication::installTranslator(translator);
        }
    }
}

} // namespace hollowfernpike
