# The Debian package (cpack -G DEB, driven by scripts/package). Only the install rules'
# files go in: the program, its helper, its data folder, the polkit policy, the desktop
# entry with its icon and AppStream metadata, the manual page, and the copyright file and
# changelog. Tests, benchmarks and other programs of the tree install nothing.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quorvelle-uninstaller)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "${QV_VENDOR_NAME}")
set(CPACK_PACKAGE_CONTACT "${QV_VENDOR_NAME} <${QV_SUPPORT_EMAIL}>")
# Lines of at most 79 characters (the control file indents each by one), no double quotes
# (CPack's DEB generator mangles them). It says what running the program does: it is not
# an application to try out.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "uninstaller of the Quorvelle suite")
set(CPACK_PACKAGE_DESCRIPTION "\
Removes the Quorvelle suite: running quorvelle-uninstaller with the suite's\n\
uninstall-information file, as the suite does when the user uninstalls it,\n\
removes the suite. When the vendor's account service cannot be reached that\n\
happens at once; otherwise a window first asks why the user leaves and sends\n\
the answers (its other button opens a partner's offer and removes nothing).\n\
The system-wide files are removed through polkit.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://${QV_PRODUCT_WEBSITE_HOST}")
# Shared libraries from dpkg-shlibdeps; the rest is what the program runs by name: pkexec
# for the privileged removal.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "pkexec")
# Qt's own translations give its standard texts (context menu, command-line messages) in
# the user's language; without them those texts are English and nothing else changes.
# The partner page opens through xdg-open; without it the button still ends the program.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-translations-l10n, xdg-utils")
# Symbols go through install(TARGETS); the sections Debian also strips in cmake/PackageStrip.cmake.
set(CPACK_STRIP_FILES ON)
set(CPACK_QV_OBJCOPY "${CMAKE_OBJCOPY}")
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/PackageStrip.cmake)
# Files are staged under DESTDIR with the real prefix, so install-time paths (the policy's
# helper path) name /usr and never the staging folder.
set(CPACK_SET_DESTDIR ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS OFF)

qv_package_documents(${CPACK_PACKAGE_NAME}
  COPYRIGHT ${PROJECT_SOURCE_DIR}/resources/package/copyright.in
  CHANGELOG ${PROJECT_SOURCE_DIR}/resources/package/changelog
  LINTIAN_OVERRIDES ${PROJECT_SOURCE_DIR}/resources/package/lintian-overrides)

include(CPack)
