# What ctest gives every test in ${hfp_tests} for an environment, and what no test may say: a fork
# beside a thread that has the allocator's lock waits for ever. Strings are not checked strictly:
# that takes counted strings, which the toolkit's keyboard library copies, for terminated ones. Who
# ends for a sanitizer's sake has a status that means nothing else.
set_tests_properties(${hfp_tests} PROPERTIES
  FAIL_REGULAR_EXPRESSION "Death tests use fork"
  ENVIRONMENT_MODIFICATION "\
ASAN_OPTIONS=set:detect_leaks=1:detect_stack_use_after_return=1:exitcode=77;\
UBSAN_OPTIONS=set:print_stacktrace=1:exitcode=77")
