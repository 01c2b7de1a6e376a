# The Debian package (cpack -G DEB, driven by scripts/package). Only the install rules'
# files go in: the program, its helper, its data folder, the polkit policy, the desktop
# entry and the icon. Tests, benchmarks and other programs of the tree install nothing.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quorvelle-uninstaller)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Brelltan")
set(CPACK_PACKAGE_CONTACT "Brelltan <${QV_SUPPORT_EMAIL}>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Uninstaller of the Quorvelle suite")
set(CPACK_PACKAGE_DESCRIPTION
  "Started by the Quorvelle suite when the user removes it: asks why the user leaves,\n\
sends the answers to the vendor's account service and removes the suite's files, the\n\
system-wide ones through polkit.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://${QV_PRODUCT_WEBSITE_HOST}")
# Shared libraries from dpkg-shlibdeps; the rest is what the program runs or loads by name:
# pkexec for the privileged removal, Qt's own translations for its standard texts.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "pkexec, qt6-translations-l10n")
# The partner page opens through xdg-open; without it the button still ends the program.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")
set(CPACK_STRIP_FILES ON)
# Files are staged under DESTDIR with the real prefix, so install-time paths (the policy's
# helper path) name /usr and never the staging folder.
set(CPACK_SET_DESTDIR ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS OFF)
include(CPack)
