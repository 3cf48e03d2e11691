#include "show/Scenes.h"

#include "show/KnownShortcuts.h"
#include "show/Studio.h"

namespace hollowfernpike::show {

void takePermission(const Edition& edition, const std::filesystem::path& folder) {
    Studio studio(edition, folder);
    auto& user = studio.user;
    const auto authority = studio.file("authority");
    studio.story.run({"xauth", "-f", authority, "generate", studio.story.desktop.display(), ".",
                      "untrusted", "timeout", "600"});
    studio.launch({{"XAUTHORITY", authority.string()}});
    const auto prompt = user.comes(user.titles.alert);
    studio.take("permission");
    user.strikeAndLeave(prompt, "RTRN");
}

} // namespace hollowfernpike::show
