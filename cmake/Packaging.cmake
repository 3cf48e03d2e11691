# The Debian package, which scripts/package makes: cpack packs what is built.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "Hollowfernpike developers <maintainers@hollowfernpike.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "bring applications to the front with key combinations")
set(CPACK_PACKAGE_DESCRIPTION "\
Press a key combination, anywhere, and the application that you bound to it is\n\
in front of you: brought forward if it runs, launched if it does not. Bound\n\
presses are swallowed, every other key press reaches your programs untouched.\n\
\n\
The program stays in the status bar, speaks Japanese and English, and needs a\n\
session on X11 or Wayland. It brings an extension of GNOME Shell.")
set(CPACK_DEBIAN_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

# Besides the libraries that it is linked to: what the toolkit loads by itself for SVG images, pointers
# and Wayland, the toolkit's Japanese texts, and the release of the toolkit that it was built with, because
# the interface that gives a window's Wayland surface is private. Japanese fonts are recommended.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Up to Debian 12, the plug-in for SVG images is in libqt6svg6, and that release goes by another name.
set(CPACK_DEBIAN_PACKAGE_DEPENDS
  "qt6-svg-plugins | libqt6svg6 (<< 6.7.2-5~), qt6-wayland, libxcursor1, qt6-translations-l10n, \
qt6-base-private-abi (= ${Qt6Core_VERSION}) | qt6-base-abi (= ${Qt6Core_VERSION})")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "\
fonts-ipafont-gothic | fonts-japanese-gothic | fonts-noto-cjk, \
default-dbus-session-bus | dbus-session-bus, hicolor-icon-theme")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS x-terminal-emulator)

set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/PackagedDirectories.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
