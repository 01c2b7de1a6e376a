# Run by cpack after it made the packages (CPACK_POST_BUILD_SCRIPTS). CPack gives a package
# with libraries in the loader's folders postinst and postrm scripts that call ldconfig;
# Debian rebuilds the loader's cache by the ldconfig trigger instead, which the runtime
# package declares (resources/package/triggers). The scripts are taken out of its control
# archive, nothing else changes.
foreach(deb IN LISTS CPACK_PACKAGE_FILES)
  get_filename_component(name "${deb}" NAME)
  if(NOT name MATCHES "^${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME}_")
    continue()
  endif()
  set(tree "${CPACK_TOPLEVEL_DIRECTORY}/triggers-only")
  file(REMOVE_RECURSE "${tree}")
  execute_process(COMMAND dpkg-deb -R "${deb}" "${tree}" COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE "${tree}/DEBIAN/postinst" "${tree}/DEBIAN/postrm")
  execute_process(COMMAND dpkg-deb --root-owner-group -Zgzip --build "${tree}" "${deb}"
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE "${tree}")
endforeach()
