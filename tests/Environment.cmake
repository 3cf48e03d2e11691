# What ctest gives every test in ${hfp_tests} for an environment: none of the user's own desktop and
# home, so that a test that forgets to make its own fails instead of reaching for them. Strings
# are not checked strictly: that takes counted strings, which the toolkit's keyboard library copies,
# for terminated ones. Who ends for a sanitizer's sake has a status that means nothing else.
set_tests_properties(${hfp_tests} PROPERTIES ENVIRONMENT_MODIFICATION "\
DISPLAY=unset:;WAYLAND_DISPLAY=unset:;XAUTHORITY=unset:;DBUS_SESSION_BUS_ADDRESS=unset:;\
HOME=set:/nonexistent;XDG_CACHE_HOME=unset:;XDG_CONFIG_HOME=unset:;XDG_DATA_HOME=unset:;\
XDG_STATE_HOME=unset:;XDG_RUNTIME_DIR=unset:;LANGUAGE=unset:;LC_ALL=set:C.UTF-8;\
ASAN_OPTIONS=set:detect_leaks=1:detect_stack_use_after_return=1:exitcode=77;\
UBSAN_OPTIONS=set:print_stacktrace=1:exitcode=77")
