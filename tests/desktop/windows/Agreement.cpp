#include "desktop/windows/Agreement.h"

#include "support/WaitUntil.h"

#include <algorithm>
#include <utility>

namespace hollowfernpike::test {

namespace {

// Where the list lies in the window, and where the texts of a card lie between its icon and its
// buttons.
constexpr std::size_t headerHeight = 52;
constexpr std::size_t firstTop = headerHeight + 8;
constexpr std::size_t cardHeight = 52;
constexpr std::size_t cardStep = cardHeight + 8;
constexpr std::size_t border = 3; // thicker around a card that was added a moment ago
constexpr int insideACard = 24;
constexpr int textsBegin = 72;
constexpr int textsEnd = 376;
constexpr int everyFew = 4;

std::string nameOf(const Combination& combination) {
    return std::to_string(combination.keyCode) + '+' + std::to_string(combination.modifierFlags);
}

std::string nameOf(const KnownShortcut& shortcut) {
    return shortcut.application.name() + ' ' + nameOf(shortcut.combination);
}

std::size_t topOf(std::size_t card) {
    return firstTop + card * cardStep;
}

/// How many cards this column of pixels crosses.
std::size_t countIn(const std::vector<std::uint32_t>& column) {
    std::size_t count = 0;
    while (topOf(count + 1) <= column.size() &&
           column[topOf(count) + cardHeight / 2] != column[headerHeight + 4]) {
        ++count;
    }
    return count;
}

} // namespace

testing::AssertionResult Agreement::on(const std::vector<KnownShortcut>& shortcuts) {
    auto result = ofTheFile(shortcuts);
    if (result) {
        result = ofTheKeys(shortcuts);
    }
    return result ? ofTheCards(shortcuts) : result;
}

testing::AssertionResult Agreement::ofTheFile(const std::vector<KnownShortcut>& shortcuts) {
    const auto expected = [&] {
        auto list = nlohmann::json::array();
        for (const auto& [application, combination] : shortcuts) {
            list.push_back(story_.record(list.size(), combination, application));
        }
        return list;
    };
    if (waitUntil([&] { return story_.list() == expected(); })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "the file holds\n" << story_.list().dump(2);
}

testing::AssertionResult Agreement::ofTheKeys(const std::vector<KnownShortcut>& shortcuts) {
    for (const auto& shortcut : shortcuts) {
        combinations_.insert_or_assign(nameOf(shortcut.combination), shortcut.combination);
    }
    for (const auto& known : combinations_) {
        const bool isBound = std::ranges::any_of(shortcuts, [&](const KnownShortcut& shortcut) {
            return nameOf(shortcut.combination) == known.first;
        });
        auto result =
            isBound ? story_.isLive(story_.grabOf(known.second)) : story_.isFree(known.second);
        if (!result) {
            return result;
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult Agreement::ofTheCards(const std::vector<KnownShortcut>& shortcuts) {
    const auto window = story_.openManagement();
    std::vector<Look> seen;
    std::vector<Look> before;
    const auto areRight = [&] {
        before = std::exchange(seen, cards(window)); // two equal looks: a card may be half painted
        return seen == before && areTheCardsOf(shortcuts, seen);
    };
    if (!waitUntil(areRight)) {
        return testing::AssertionFailure()
               << seen.size() << " cards, not those of " << shortcuts.size() << " shortcuts";
    }
    for (std::size_t card = 0; card < seen.size(); ++card) {
        looks_.emplace(nameOf(shortcuts[card]), seen[card]);
    }
    return testing::AssertionSuccess();
}

std::vector<Agreement::Look> Agreement::cards(xcb_window_t window) {
    std::vector<Look> cards(countIn(story_.screen.column(window, insideACard)));
    for (int x = textsBegin; x < textsEnd && !cards.empty(); x += everyFew) {
        const auto column = story_.screen.column(window, x);
        for (std::size_t card = 0; card < cards.size() && topOf(card + 1) <= column.size();
             ++card) {
            const auto begin = column.begin() + static_cast<std::ptrdiff_t>(topOf(card));
            cards[card].insert(cards[card].end(), begin + border, begin + cardHeight - border);
        }
    }
    return cards;
}

bool Agreement::areTheCardsOf(const std::vector<KnownShortcut>& shortcuts,
                              const std::vector<Look>& cards) {
    return std::equal(
        shortcuts.begin(), shortcuts.end(), cards.begin(), cards.end(),
        [this](const auto& shortcut, const auto& card) { return isTheCardOf(shortcut, card); });
}

bool Agreement::isTheCardOf(const KnownShortcut& shortcut, const Look& card) {
    const auto known = looks_.find(nameOf(shortcut));
    if (known != looks_.end()) {
        return known->second == card;
    }
    return std::ranges::none_of(looks_, [&](const auto& look) { return look.second == card; });
}

} // namespace hollowfernpike::test
