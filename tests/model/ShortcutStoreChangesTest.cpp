#include "model/StoreScene.h"

namespace hollowfernpike::test {
namespace {

TEST_F(ShortcutStoreTest, AddAppendsWritesAndAnnounces) {
    store().add(b);
    store().add(a);
    EXPECT_EQ(names(), (std::vector<std::string>{"B", "A"}));
    EXPECT_EQ(files_.files[file], document({b, a}));
    EXPECT_EQ(posts_, 2);
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreTest, ObserversFindTheFileWrittenAndTheListChanged) {
    std::string seen;
    std::size_t count = 0;
    const auto observer = services_.notificationCenter.observe(shortcutsDidChange, [&] {
        seen = files_.files[file];
        count = store().shortcuts().size();
    });
    store().add(a);
    EXPECT_EQ(seen, document({a}));
    EXPECT_EQ(count, 1U);
}

TEST_F(ShortcutStoreTest, AddingATakenCombinationWarnsAndChangesNothing) {
    store().add(a);
    auto same = makeShortcut(9, 0, command, "Other");
    store().add(same);
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    EXPECT_EQ(output(), warning);
    EXPECT_EQ(files_.writes, 1);
    EXPECT_EQ(posts_, 1);
}

TEST_F(ShortcutStoreTest, ACombinationIsTakenWhereverItsShortcutStands) {
    for (const auto& shortcut : {a, b, c}) {
        store().add(shortcut);
    }
    const auto before = names();
    for (const auto& taken : {a, b, c}) {
        store().add(makeShortcut(9, taken.keyCode, taken.modifierFlags, "Other"));
        for (const auto& edited : {a, b, c}) {
            if (edited.id != taken.id) {
                auto changed = edited;
                changed.keyCode = taken.keyCode;
                changed.modifierFlags = taken.modifierFlags;
                changed.appName = "Changed";
                store().update(changed);
            }
        }
    }
    EXPECT_EQ(names(), before);
    EXPECT_EQ(posts_, 3);
}

TEST_F(ShortcutStoreTest, AddComparesTheWholeFlagWord) {
    store().add(makeShortcut(1, 0, command | capsLock, "Locked"));
    store().add(a);
    EXPECT_EQ(names(), (std::vector<std::string>{"Locked", "A"}));
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreTest, AddKeepsOneKeyWithDifferentModifiers) {
    store().add(a);
    store().add(makeShortcut(2, 0, option, "OptionA"));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "OptionA"}));
}

TEST_F(ShortcutStoreTest, AddDoesNotCompareIds) {
    store().add(a);
    store().add(makeShortcut(1, 11, command, "SameId"));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "SameId"}));
}

TEST_F(ShortcutStoreTest, UpdateReplacesAllFieldsInPlace) {
    store().add(a);
    store().add(b);
    const auto changed = makeShortcut(1, 36, option, "Changed");
    store().update(changed);
    ASSERT_EQ(names(), (std::vector<std::string>{"Changed", "B"}));
    EXPECT_EQ(fields(store().shortcuts()[0]), fields(changed));
    EXPECT_EQ(files_.files[file], document({changed, b}));
    EXPECT_EQ(posts_, 3);
}

TEST_F(ShortcutStoreTest, UpdateWithItsOwnCombinationIsAccepted) {
    store().add(a);
    store().update(makeShortcut(1, 0, command, "OtherApplication"));
    EXPECT_EQ(names(), std::vector<std::string>{"OtherApplication"});
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreTest, UpdateToATakenCombinationWarnsAndChangesNothing) {
    store().add(a);
    store().add(b);
    store().update(makeShortcut(2, 0, command, "Changed"));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(output(), warning);
    EXPECT_EQ(files_.writes, 2);
    EXPECT_EQ(posts_, 2);
}

TEST_F(ShortcutStoreTest, UpdateComparesTheWholeFlagWord) {
    store().add(a);
    store().add(b);
    store().update(makeShortcut(2, 0, command | capsLock, "Changed"));
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "Changed"}));
}

TEST_F(ShortcutStoreTest, UpdateOfAnUnknownIdDoesNothing) {
    store().add(a);
    store().update(makeShortcut(9, 0, command, "Unknown"));
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    EXPECT_EQ(output(), "");
    EXPECT_EQ(files_.writes, 1);
    EXPECT_EQ(posts_, 1);
}

TEST_F(ShortcutStoreTest, UpdateReplacesOnlyTheFirstOfOneId) {
    files_.files[file] =
        document({makeShortcut(7, 1, command, "First"), makeShortcut(7, 2, command, "Second")});
    store().update(makeShortcut(7, 2, command, "Changed"));
    EXPECT_EQ(names(), (std::vector<std::string>{"Changed", "Second"}));
    EXPECT_EQ(output(), "");
}

TEST_F(ShortcutStoreTest, RemoveClosesTheGap) {
    files_.files[file] = document({a, b, c});
    store().remove(b.id);
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "C"}));
    EXPECT_EQ(files_.files[file], document({a, c}));
    EXPECT_EQ(posts_, 1);
}

TEST_F(ShortcutStoreTest, RemoveTakesEveryRecordOfOneId) {
    files_.files[file] =
        document({makeShortcut(7, 1, command, "First"), b, makeShortcut(7, 2, command, "Second")});
    store().remove(idNumber(7));
    EXPECT_EQ(names(), std::vector<std::string>{"B"});
}

TEST_F(ShortcutStoreTest, RemoveOfAnUnknownIdWritesAndAnnouncesAnyway) {
    store().add(a);
    files_.files.clear();
    store().remove(idNumber(9));
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    EXPECT_EQ(files_.files[file], document({a}));
    EXPECT_EQ(posts_, 2);
}

TEST_F(ShortcutStoreTest, RemoveTakesAnIdOutOfTheListItself) {
    files_.files[file] = document(
        {makeShortcut(7, 1, command, "First"), b, makeShortcut(7, 2, command, "Second"), c});
    store().remove(store().shortcuts()[0].id);
    EXPECT_EQ(names(), (std::vector<std::string>{"B", "C"}));
}

} // namespace
} // namespace hollowfernpike::test
