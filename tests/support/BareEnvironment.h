#pragma once

namespace hollowfernpike::test {

/// Leaves nothing of the machine's own desktop in this process's environment: neither its session,
/// home and settings nor its applications, themes and fonts (those of tests/support/fonts.conf
/// remain). Programs that are started from here on inherit that.
void enterBareEnvironment();

} // namespace hollowfernpike::test
