#include "ui/window/OpenWindows.h"

#include <QByteArray>
#include <QCborArray>
#include <QCborMap>
#include <QCborValue>

#include <limits>

namespace hollowfernpike {

namespace {

constexpr const char* mainWindowKey = "mainWindow";
constexpr const char* editorsKey = "editors";
constexpr const char* editingKey = "editing";
constexpr const char* appPathKey = "appPath";
constexpr const char* keyCodeKey = "keyCode";
constexpr const char* modifierFlagsKey = "modifierFlags";

QCborMap written(const EditorDraft& draft) {
    QCborMap map;
    if (draft.editing) {
        map.insert(QLatin1String(editingKey), QByteArray::fromStdString(draft.editing->text()));
    }
    if (draft.appPath) {
        map.insert(QLatin1String(appPathKey), QByteArray::fromStdString(*draft.appPath));
    }
    if (draft.keyCode && draft.modifierFlags) {
        map.insert(QLatin1String(keyCodeKey), *draft.keyCode);
        map.insert(QLatin1String(modifierFlagsKey), static_cast<qint64>(*draft.modifierFlags));
    }
    return map;
}

EditorDraft draftFrom(const QCborMap& map) {
    EditorDraft draft;
    draft.editing = UUID::parse(map[QLatin1String(editingKey)].toByteArray().toStdString());
    if (const auto path = map[QLatin1String(appPathKey)]; path.isByteArray()) {
        draft.appPath = path.toByteArray().toStdString();
    }
    const auto keyCode = map[QLatin1String(keyCodeKey)].toInteger(-1);
    if (keyCode >= 0 && keyCode <= std::numeric_limits<std::uint16_t>::max()) {
        draft.keyCode = static_cast<std::uint16_t>(keyCode);
        draft.modifierFlags =
            static_cast<std::uint64_t>(map[QLatin1String(modifierFlagsKey)].toInteger());
    }
    return draft;
}

} // namespace

std::string OpenWindows::text() const {
    QCborArray drafts;
    for (const auto& draft : editors) {
        drafts.append(written(draft));
    }
    const QCborMap map{{QLatin1String(mainWindowKey), hasMainWindow},
                       {QLatin1String(editorsKey), drafts}};
    return map.toCborValue().toCbor().toBase64().toStdString();
}

OpenWindows OpenWindows::parse(std::string_view text) {
    const auto encoded = QByteArray(text.data(), static_cast<qsizetype>(text.size()));
    QCborParserError error{};
    const auto value = QCborValue::fromCbor(QByteArray::fromBase64(encoded), &error);
    if (error.error != QCborError::NoError) {
        return {}; // what was read so far may be half of a map
    }
    const auto map = value.toMap();
    OpenWindows windows{.hasMainWindow = map[QLatin1String(mainWindowKey)].toBool(), .editors = {}};
    const auto drafts = map[QLatin1String(editorsKey)].toArray();
    for (const auto& draft : drafts) {
        windows.editors.push_back(draftFrom(draft.toMap()));
    }
    return windows;
}

} // namespace hollowfernpike
