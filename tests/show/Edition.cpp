#include "show/Edition.h"

#include <stdexcept>

namespace hollowfernpike::show {

std::string Edition::name() const {
    return std::string(isEnglish ? "en" : "ja") + (isDark ? "-dark-" : "-light-") +
           std::to_string(scale) + 'x' +
           (points == usualPoints ? "" : '-' + std::to_string(points) + "pt");
}

const test::WindowTitles& Edition::titles() const {
    return isEnglish ? test::englishTitles : test::japaneseTitles;
}

const std::vector<Edition>& allEditions() {
    static const std::vector<Edition> editions = [] {
        std::vector<Edition> all;
        for (const bool isEnglish : {false, true}) {
            for (const bool isDark : {false, true}) {
                for (const int scale : {1, 2}) {
                    all.push_back({.isEnglish = isEnglish, .isDark = isDark, .scale = scale});
                }
            }
        }
        return all;
    }();
    return editions;
}

Edition editionNamed(const std::string& name) {
    for (auto edition : allEditions()) {
        for (const int points : {Edition::usualPoints, 8, 24}) {
            edition.points = points;
            if (edition.name() == name) {
                return edition;
            }
        }
    }
    throw std::invalid_argument("there is no edition " + name);
}

} // namespace hollowfernpike::show
