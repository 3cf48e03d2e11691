// Takes pictures of everything that the utility shows: screenshots FOLDER EDITION... makes a folder
// of pictures for each edition, such as en-dark-2x, or en-dark-2x-24pt for the crowded windows in a
// font of that size; screenshots --editions names them all. Ends
// with 0 only if everything could be shown.

#include "show/Scenes.h"
#include "support/BareEnvironment.h"

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

using namespace hollowfernpike::show;

void takeEdition(const Edition& edition, const std::filesystem::path& parent) {
    const auto folder = parent / edition.name();
    std::filesystem::remove_all(folder);
    takeCrowded(edition, folder);
    if (edition.points == Edition::usualPoints) {
        for (const auto take :
             {&takeMenu, &takeManagement, &takeExchange, &takeEditor, &takePermission}) {
            take(edition, folder);
        }
    }
    std::printf("%s\n", folder.c_str());
}

} // namespace

int main(int count, char** arguments) {
    hollowfernpike::test::enterBareEnvironment();
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (words == std::vector<std::string>{"--editions"}) {
        for (const auto& edition : allEditions()) {
            std::puts(edition.name().c_str());
        }
        return 0;
    }
    if (words.size() < 2) {
        std::fputs("usage: screenshots FOLDER EDITION... | --editions\n", stderr);
        return 2;
    }
    try {
        const auto folder = std::filesystem::absolute(words.front());
        for (std::size_t index = 1; index < words.size(); ++index) {
            takeEdition(editionNamed(words[index]), folder);
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "screenshots: %s\n", error.what());
        return 1;
    }
}
