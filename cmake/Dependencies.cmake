find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(RapidJSON 1.1 REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus Gui Svg Widgets)

pkg_check_modules(XCB REQUIRED IMPORTED_TARGET
  xcb xcb-xkb xcb-xinput xcb-res xcb-ewmh xcb-icccm xcb-aux)
pkg_check_modules(GIO REQUIRED IMPORTED_TARGET gio-unix-2.0)

if(HOLLOWFERNPIKE_TESTS)
  find_package(GTest REQUIRED)
  find_package(nlohmann_json 3.11 REQUIRED)
  pkg_check_modules(XCB_TEST REQUIRED IMPORTED_TARGET xcb-xtest)
  pkg_check_modules(STARTUP_NOTIFICATION REQUIRED IMPORTED_TARGET libstartup-notification-1.0)
endif()
if(HOLLOWFERNPIKE_BENCH)
  find_package(benchmark REQUIRED)
endif()
