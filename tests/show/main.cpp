// Shows the utility at work where there is no display to look at: show FOLDER puts up a private
// desktop, tells what happens on it and saves pictures in the folder. Ends with 0 only if
// everything was as it ought to be.

#include "show/Managing.h"
#include "show/Show.h"
#include "support/BareEnvironment.h"

#include <cstdio>
#include <exception>

int main(int count, char** arguments) {
    hollowfernpike::test::enterBareEnvironment();
    if (count != 2) {
        std::fputs("usage: show FOLDER\n", stderr);
        return 2;
    }
    try {
        const auto pictures = std::filesystem::absolute(arguments[1]);
        const bool first = hollowfernpike::show::Show(pictures).run();
        const bool second = hollowfernpike::show::Managing(pictures).run();
        std::printf("Pictures: %s\n", arguments[1]);
        return first && second ? 0 : 1;
    } catch (const std::exception& error) {
        std::printf("  NOT TRUE: %s\n", error.what());
        return 1;
    }
}
