#include "platform/x11/WindowList.h"

namespace hollowfernpike::x11 {

std::optional<std::vector<platform::WindowInfo>> WindowList::copyWindowInfo() {
    const auto* snapshot = windows_.read(SnapshotUse::matching);
    if (snapshot == nullptr) {
        return std::nullopt;
    }
    std::vector<platform::WindowInfo> infos;
    for (const auto& record : snapshot->windows) {
        if (!record.isHidden && snapshot->isHere(record)) {
            infos.push_back(infoOf(record));
        }
    }
    return infos;
}

platform::WindowInfo WindowList::infoOf(const WindowRecord& record) {
    const auto& name = windows_.ownerOf(record).name;
    return {
        .ownerName = name.empty() ? std::nullopt : std::optional(name),
        .ownerProcess = record.identity->facts.process,
        .layer = record.identity->layer,
    };
}

} // namespace hollowfernpike::x11
