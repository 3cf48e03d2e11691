#pragma once

#include "app/Language.h"
#include "platform/ApplicationBundles.h"

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace hollowfernpike {

/// Installed applications sorted by name, and a search in them. Upper and lower case, full and half
/// width make no difference. Main thread only.
class ApplicationSearch {
public:
    /// `language` decides the alphabetical order.
    ApplicationSearch(std::vector<platform::InstalledApplication> applications, Language language);

    /// Sorted by name.
    const std::vector<platform::InstalledApplication>& applications() const {
        return applications_;
    }

    /// Indices of the applications in whose name, generic name, keywords or identifier every word
    /// of `text` occurs: those whose names begin with the text, then those whose names hold all
    /// words, then the others. All of them for a text without words.
    std::vector<std::size_t> matches(const QString& text) const;

private:
    struct Folded {
        QString name;
        QStringList others;
    };

    enum class Rank { nameBegins, nameHolds, othersHold, none };

    Rank rank(const Folded& application, const QString& text, const QStringList& words) const;

    std::vector<platform::InstalledApplication> applications_;
    std::vector<Folded> folded_;
};

} // namespace hollowfernpike
