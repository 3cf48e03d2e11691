#pragma once

#include "model/ModelServices.h"
#include "model/ShortcutStore.h"
#include "model/Shortcuts.h"
#include "support/fakes/FakeFileManager.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

inline const std::filesystem::path file =
    "/home/someone/.local/share/Hollowfernpike/shortcuts.json";
inline const std::string warning = "警告: 同じショートカットキーが既に登録されています\n";

class ShortcutStoreTest : public testing::Test {
protected:
    static ShortcutStore& store() { return ShortcutStore::shared(); }

    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& shortcut : store().shortcuts()) {
            result.push_back(shortcut.appName);
        }
        return result;
    }

    std::string output() const { return services_.standardOutput.str(); }

    FakeFileManager files_;
    ModelServices services_{files_};
    int posts_ = 0;
    std::unique_ptr<platform::Subscription> observer_ =
        services_.notificationCenter.observe("shortcutsDidChange", [this] { ++posts_; });
};

inline const auto a = makeShortcut(1, 0, command, "A");
inline const auto b = makeShortcut(2, 11, command, "B");
inline const auto c = makeShortcut(3, 8, command, "C");

inline std::string document(const std::vector<AppShortcut>& shortcuts) {
    std::string text;
    for (const auto& shortcut : shortcuts) {
        text.append(text.empty() ? "[" : ",")
            .append(R"({"id":")" + shortcut.id.text())
            .append(R"(","keyCode":)" + std::to_string(shortcut.keyCode))
            .append(R"(,"modifierFlags":)" + std::to_string(shortcut.modifierFlags))
            .append(R"(,"appPath":"\/Applications\/)" + shortcut.appName)
            .append(R"(.app","appName":")" + shortcut.appName)
            .append(R"(","appBundleIdentifier":"org.example.)" + shortcut.appName + R"("})");
    }
    return text + ']';
}

} // namespace hollowfernpike::test
