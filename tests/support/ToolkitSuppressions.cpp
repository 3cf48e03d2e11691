// What the sanitizers shall not report of the libraries under the toolkit, for tests with windows
// on a display. Listed among the sources of the test program itself: out of a library the
// sanitizers would not take it.

// libxkbcommon-x11 copies a text of known length out of a reply, which strict_string_checks takes
// for an overrun. The sanitizer chose the name.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" const char* __asan_default_suppressions() {
    return "interceptor_via_lib:libxkbcommon-x11\n";
}
