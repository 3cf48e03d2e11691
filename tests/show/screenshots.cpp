// Takes pictures of everything that the utility shows: screenshots FOLDER [EDITION]... makes a
// folder of pictures for each edition, such as en-dark-2x; for all of them if none is named. Ends
// with 0 only if everything could be shown.

#include "show/Scenes.h"

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

using namespace hollowfernpike::show;

void takeEdition(const Edition& edition, const std::filesystem::path& parent) {
    const auto folder = parent / edition.name();
    std::filesystem::remove_all(folder);
    for (const auto take :
         {&takeMenu, &takeManagement, &takeExchange, &takeEditor, &takePermission}) {
        take(edition, folder);
    }
    std::printf("%s\n", folder.c_str());
}

} // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (words.empty()) {
        std::fputs("usage: screenshots FOLDER [EDITION]...\n", stderr);
        return 2;
    }
    try {
        std::vector<Edition> editions;
        for (std::size_t index = 1; index < words.size(); ++index) {
            editions.push_back(editionNamed(words[index]));
        }
        for (const auto& edition : editions.empty() ? allEditions() : editions) {
            takeEdition(edition, words.front());
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "screenshots: %s\n", error.what());
        return 1;
    }
}
