# Run by cpack on the staging folders before it makes the packages (CPACK_PRE_BUILD_SCRIPTS).
# The uninstaller (and any other package of the project with binaries) links the kit's
# libraries, which the same build packages: dpkg-shlibdeps finds them in the runtime
# package's staging folder (CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS) but, as they are no
# installed package's, learns their package from debian/shlibs.local of the package being
# made. Its lines are the runtime package's shlibs file, from the libraries' own SONAMEs:
# "libQuorvelleWidgets 2 libquorvelle-kit2 (>= 2.0.1)". It goes to every other component
# whose dependencies dpkg-shlibdeps computes (CPack removes debian/ after that step, so
# nothing of it is packaged).
set(runtime_folder "${CPACK_TEMPORARY_DIRECTORY}/runtime")
if(NOT IS_DIRECTORY "${runtime_folder}")
  message(FATAL_ERROR "PackageShlibs: no runtime staging folder in ${CPACK_TEMPORARY_DIRECTORY}")
endif()
find_program(readelf NAMES readelf REQUIRED)
file(GLOB libraries LIST_DIRECTORIES false "${runtime_folder}/usr/lib/*/lib*.so.*")
set(lines)
foreach(library IN LISTS libraries)
  if(IS_SYMLINK "${library}")
    continue()
  endif()
  execute_process(COMMAND "${readelf}" -d "${library}" OUTPUT_VARIABLE dynamic
    COMMAND_ERROR_IS_FATAL ANY)
  if(dynamic MATCHES "\\(SONAME\\)[^[]*\\[([^]]+)\\.so\\.([0-9]+)\\]")
    string(APPEND lines "${CMAKE_MATCH_1} ${CMAKE_MATCH_2} ${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} "
      "(${CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY} ${CPACK_PACKAGE_VERSION})\n")
  endif()
endforeach()
if(NOT lines)
  message(FATAL_ERROR "PackageShlibs: no shared library in ${runtime_folder}")
endif()
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER "${component}" upper)
  if(NOT component STREQUAL "runtime" AND CPACK_DEBIAN_${upper}_PACKAGE_SHLIBDEPS)
    file(WRITE "${CPACK_TEMPORARY_DIRECTORY}/${component}/debian/shlibs.local" "${lines}")
  endif()
endforeach()
