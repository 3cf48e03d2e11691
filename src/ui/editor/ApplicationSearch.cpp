#include "ui/editor/ApplicationSearch.h"

#include <QCollator>
#include <QLocale>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace hollowfernpike {

namespace {

QString folded(const QString& text) {
    return text.normalized(QString::NormalizationForm_KC).toCaseFolded();
}

QString folded(const std::string& text) {
    return folded(QString::fromStdString(text));
}

QCollator collatorFor(Language language) {
    QCollator collator(
        QLocale(language == Language::english ? QLocale::English : QLocale::Japanese));
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

std::vector<platform::InstalledApplication>
sortedByName(std::vector<platform::InstalledApplication> applications, Language language) {
    const QCollator collator = collatorFor(language);
    std::vector<std::pair<QCollatorSortKey, std::size_t>> order;
    order.reserve(applications.size());
    for (std::size_t index = 0; index < applications.size(); ++index) {
        order.emplace_back(collator.sortKey(QString::fromStdString(applications[index].name)),
                           index);
    }
    std::ranges::sort(order, [&](const auto& left, const auto& right) {
        const int byName = left.first.compare(right.first);
        return byName != 0 ? byName < 0
                           : applications[left.second].path < applications[right.second].path;
    });
    std::vector<platform::InstalledApplication> sorted;
    sorted.reserve(order.size());
    for (const auto& [key, index] : order) {
        sorted.push_back(std::move(applications[index]));
    }
    return sorted;
}

bool holdsAll(const QString& text, const QStringList& words) {
    return std::ranges::all_of(words, [&](const QString& word) { return text.contains(word); });
}

} // namespace

ApplicationSearch::ApplicationSearch(std::vector<platform::InstalledApplication> applications,
                                     Language language)
    : applications_(sortedByName(std::move(applications), language)) {
    folded_.reserve(applications_.size());
    for (const auto& application : applications_) {
        Folded texts{.name = folded(application.name),
                     .others = {folded(application.name), folded(application.genericName),
                                folded(application.bundleIdentifier)}};
        for (const std::string& keyword : application.keywords) {
            texts.others += folded(keyword);
        }
        folded_.push_back(std::move(texts));
    }
}

std::vector<std::size_t> ApplicationSearch::matches(const QString& text) const {
    const QString wanted = folded(text).simplified();
    const QStringList words = wanted.split(' ', Qt::SkipEmptyParts);
    std::array<std::vector<std::size_t>, 4> byRank;
    for (std::size_t index = 0; index < folded_.size(); ++index) {
        byRank[static_cast<std::size_t>(rank(folded_[index], wanted, words))].push_back(index);
    }
    std::vector<std::size_t> found;
    for (const Rank rank : {Rank::nameBegins, Rank::nameHolds, Rank::othersHold}) {
        const auto& ofRank = byRank[static_cast<std::size_t>(rank)];
        found.insert(found.end(), ofRank.begin(), ofRank.end());
    }
    return found;
}

ApplicationSearch::Rank ApplicationSearch::rank(const Folded& application, const QString& text,
                                                const QStringList& words) const {
    if (application.name.startsWith(text)) {
        return Rank::nameBegins;
    }
    if (holdsAll(application.name, words)) {
        return Rank::nameHolds;
    }
    const bool othersHold = std::ranges::all_of(words, [&](const QString& word) {
        return std::ranges::any_of(application.others,
                                   [&](const QString& other) { return other.contains(word); });
    });
    return othersHold ? Rank::othersHold : Rank::none;
}

} // namespace hollowfernpike
