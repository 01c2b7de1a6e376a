# The Debian packages (cpack -G DEB, one package per install component, driven by
# scripts/package). Only the install rules' files go in; tests, benchmarks and other programs
# of the tree install nothing.
#
#   component    package                  holds
#   runtime      libquorvelle-kit2        the kit's three shared libraries and its data folder
#   dev          libquorvelle-kit-dev     headers, CMake package, pkg-config files, .so links
#   uninstaller  quorvelle-uninstaller    the program, its helper, data folder, policy,
#                                         desktop entry, icon, metadata and manual page
#   doc          libquorvelle-kit-doc     the API reference (HTML; built with QV_BUILD_DOCS)
#   designer     quorvelle-kit-designer-plugin  the kit's widgets in Qt Designer's widget box
#                                         (built when QV_BUILD_DESIGNER_PLUGIN is on)
# Every package also has its copyright file and changelog.
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime dev uninstaller)
if(QV_BUILD_DOCS)
  list(APPEND CPACK_COMPONENTS_ALL doc)
endif()
if(QV_BUILD_DESIGNER_PLUGIN)
  list(APPEND CPACK_COMPONENTS_ALL designer)
endif()
set(CPACK_PACKAGE_NAME quorvelle)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "${QV_VENDOR_NAME}")
set(CPACK_PACKAGE_CONTACT "${QV_VENDOR_NAME} <${QV_SUPPORT_EMAIL}>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://${QV_PRODUCT_WEBSITE_HOST}")
set(qv_kit_runtime_package libquorvelle-kit${PROJECT_VERSION_MAJOR})

# Descriptions: the synopsis, then lines of at most 79 characters (the control file indents
# each by one; a line that starts with a space is shown as it stands), no double quotes
# (CPack's DEB generator mangles them), and a final line break (CPack strips the last line's
# leading spaces otherwise). No common summary: each package has its own synopsis.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${qv_kit_runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "shared utility kit of the Quorvelle suite
The libraries that the applications of the Quorvelle suite share:
 * QuorvelleFoundation: property values and lenient JSON, string utilities,
   bundles of resources and translations, an RSA block cryptor, item trees;
 * QuorvelleSystemInformation: the machine and its installed software;
 * QuorvelleWidgets: the suite's flat-design palette, fonts and attributed
   text, and its button controls for Qt Widgets.
")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# The libraries live in the loader's own folder: dpkg's ldconfig trigger, not the scripts
# CPack would add (cmake/PackageTriggers.cmake takes those out).
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/resources/package/triggers)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/PackageTriggers.cmake)
# A shlibs file, so that every package built against the kit depends on a runtime package
# at least as new as the one it was built with (new releases of a major version only add).
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libquorvelle-kit-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_DESCRIPTION "shared utility kit of the Quorvelle suite (development files)
Headers, the CMake package QuorvelleKit and pkg-config files for building an
application against the kit of the Quorvelle suite. In CMake:
 find_package(QuorvelleKit 2 REQUIRED COMPONENTS Foundation Widgets)
 target_link_libraries(app PRIVATE Quorvelle::Foundation Quorvelle::Widgets)
")
# The very libraries the headers describe, and Qt's development files the headers and the
# CMake package use (Core, Gui, Widgets).
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS
  "${qv_kit_runtime_package} (= ${PROJECT_VERSION}), qt6-base-dev")

set(CPACK_DEBIAN_DOC_PACKAGE_NAME libquorvelle-kit-doc)
set(CPACK_DEBIAN_DOC_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOC_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DOC_DESCRIPTION "shared utility kit of the Quorvelle suite (API reference)
The reference of the kit's public classes and functions, with a guide to each
module (reading and writing JSON, bundles and localised strings, the cryptor,
item trees, system information, the flat-design style and buttons), as HTML
in /usr/share/doc/libquorvelle-kit-doc/html.
")
# The pages' jQuery is the system's (see docs/api/CMakeLists.txt).
set(CPACK_DEBIAN_DOC_PACKAGE_DEPENDS libjs-jquery)

set(CPACK_DEBIAN_UNINSTALLER_PACKAGE_NAME quorvelle-uninstaller)
set(CPACK_DEBIAN_UNINSTALLER_PACKAGE_SECTION utils)
# It says what running the program does: it is not an application to try out.
set(CPACK_DEBIAN_UNINSTALLER_DESCRIPTION "uninstaller of the Quorvelle suite
Removes the Quorvelle suite: running quorvelle-uninstaller with the suite's
uninstall-information file, as the suite does when the user uninstalls it,
removes the suite. When the vendor's account service cannot be reached that
happens at once; otherwise a window first asks why the user leaves and sends
the answers (its other button opens a partner's offer and removes nothing).
The system-wide files are removed through polkit.
")
# Shared libraries from dpkg-shlibdeps (the kit's through the runtime package's shlibs file,
# found in its staging folder beside this one); the rest is what the program runs by name:
# pkexec for the privileged removal.
set(CPACK_DEBIAN_UNINSTALLER_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "../runtime/usr/${CMAKE_INSTALL_LIBDIR}")
set(CPACK_DEBIAN_UNINSTALLER_PACKAGE_DEPENDS "pkexec")
# Qt's own translations give its standard texts (context menu, command-line messages) in
# the user's language; without them those texts are English and nothing else changes.
# The partner page opens through xdg-open; without it the button still ends the program.
# The window's own icon (X11's _NET_WM_ICON) is SVG, drawn by Qt's SVG plug-ins; without
# them a task bar shows the desktop entry's icon or none.
set(CPACK_DEBIAN_UNINSTALLER_PACKAGE_RECOMMENDS "qt6-translations-l10n, xdg-utils, libqt6svg6")

set(CPACK_DEBIAN_DESIGNER_PACKAGE_NAME quorvelle-kit-designer-plugin)
set(CPACK_DEBIAN_DESIGNER_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_DESIGNER_DESCRIPTION "Qt Designer plugin for the Quorvelle suite's widget kit
Offers the flat-design widgets of the Quorvelle suite's kit in Qt Designer's
widget box, in a group named Quorvelle Kit, with their properties editable:
the flat button, the bordered flat button, the flat check box, the radio
matrix with a rounded or a tag-shaped selection, the hover-tracking button
and the gradient view. Forms made with them are loaded by QUiLoader or
compiled by uic against libquorvelle-kit-dev.
")
# The kit's library and Qt's Designer library from dpkg-shlibdeps; it serves Designer.
set(CPACK_DEBIAN_DESIGNER_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DESIGNER_PACKAGE_ENHANCES "designer-qt6")

# Symbols go through install(TARGETS); the sections Debian also strips in cmake/PackageStrip.cmake.
set(CPACK_STRIP_FILES ON)
set(CPACK_QV_OBJCOPY "${CMAKE_OBJCOPY}")
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/PackageStrip.cmake
  ${PROJECT_SOURCE_DIR}/cmake/PackageShlibs.cmake)
# Files are staged under DESTDIR with the real prefix, so install-time paths (the policy's
# helper path) name /usr and never the staging folder.
set(CPACK_SET_DESTDIR ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)

qv_package_documents(${qv_kit_runtime_package} COMPONENT runtime
  COPYRIGHT ${PROJECT_SOURCE_DIR}/resources/package/copyright.in
  CHANGELOG ${PROJECT_SOURCE_DIR}/resources/package/changelog
  LINTIAN_OVERRIDES ${PROJECT_SOURCE_DIR}/resources/package/lintian-overrides-kit)
qv_package_documents(libquorvelle-kit-dev COMPONENT dev
  COPYRIGHT ${PROJECT_SOURCE_DIR}/resources/package/copyright.in
  CHANGELOG ${PROJECT_SOURCE_DIR}/resources/package/changelog)
if(QV_BUILD_DOCS)
  qv_package_documents(libquorvelle-kit-doc COMPONENT doc
    COPYRIGHT ${PROJECT_SOURCE_DIR}/resources/package/copyright.in
    CHANGELOG ${PROJECT_SOURCE_DIR}/resources/package/changelog)
endif()
qv_package_documents(quorvelle-uninstaller COMPONENT uninstaller
  COPYRIGHT ${PROJECT_SOURCE_DIR}/resources/package/copyright.in
  CHANGELOG ${PROJECT_SOURCE_DIR}/resources/package/changelog
  LINTIAN_OVERRIDES ${PROJECT_SOURCE_DIR}/resources/package/lintian-overrides)
if(QV_BUILD_DESIGNER_PLUGIN)
  qv_package_documents(quorvelle-kit-designer-plugin COMPONENT designer
    COPYRIGHT ${PROJECT_SOURCE_DIR}/resources/package/copyright.in
    CHANGELOG ${PROJECT_SOURCE_DIR}/resources/package/changelog)
endif()

include(CPack)
