#include "main/Messages.h"

#include <iostream>

namespace hollowfernpike {

void tell(const platform::LocalizedError& message) {
    std::cerr << message.japanese() << '\n' << message.english() << std::endl;
}

} // namespace hollowfernpike
