find_package(Threads REQUIRED)
find_package(ZLIB REQUIRED)
find_package(RapidJSON 1.1 REQUIRED)

if(APPLE)
  # The private headers are a component of their own from 6.10 on.
  find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets OPTIONAL_COMPONENTS GuiPrivate)
  return()
endif()

find_package(PkgConfig REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus Gui Widgets)

pkg_check_modules(XCB REQUIRED IMPORTED_TARGET
  xcb xcb-xkb xcb-xinput xcb-res xcb-ewmh xcb-icccm xcb-aux)
pkg_check_modules(WAYLAND REQUIRED IMPORTED_TARGET wayland-client)
pkg_check_modules(XKBCOMMON REQUIRED IMPORTED_TARGET xkbcommon)
pkg_get_variable(WAYLAND_SCANNER wayland-scanner wayland_scanner)
pkg_get_variable(WAYLAND_PROTOCOLS wayland-protocols pkgdatadir)
find_package(PlasmaWaylandProtocols 1.10 REQUIRED)
pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET glib-2.0)

if(HOLLOWFERNPIKE_TESTS OR HOLLOWFERNPIKE_FUZZ)
  find_package(nlohmann_json 3.11 REQUIRED)
endif()
if(HOLLOWFERNPIKE_TESTS)
  find_package(GTest REQUIRED)
  pkg_check_modules(GIO REQUIRED IMPORTED_TARGET gio-unix-2.0)
  pkg_check_modules(XCB_TEST REQUIRED IMPORTED_TARGET xcb-record xcb-xtest)
  pkg_check_modules(STARTUP_NOTIFICATION REQUIRED IMPORTED_TARGET libstartup-notification-1.0)
endif()
if(HOLLOWFERNPIKE_BENCH)
  find_package(benchmark REQUIRED)
endif()
