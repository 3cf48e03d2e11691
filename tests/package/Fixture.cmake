# The tests in ${hfp_tests} install the package.
set_tests_properties(${hfp_tests} PROPERTIES FIXTURES_REQUIRED package)
