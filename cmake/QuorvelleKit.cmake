# The kit's shared libraries, their public headers and what a consumer finds once they are
# installed: the CMake package QuorvelleKit (one targets file per component) and one
# pkg-config file per library.

include(GenerateExportHeader)
include(CMakePackageConfigHelpers)

set(QV_KIT_INCLUDE_DIR ${CMAKE_BINARY_DIR}/include)
set(QV_KIT_CMAKE_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/QuorvelleKit)
set(QV_KIT_DATA_DIR ${CMAKE_BINARY_DIR}/${CMAKE_INSTALL_DATADIR}/quorvelle-kit)

# The kit's data folder relative to its libraries' folder, and an application's data folders
# relative to its program's folder; the build tree has the installed layout, so both hold
# there too.
file(RELATIVE_PATH QV_KIT_DATA_FROM_LIBRARY
  "${CMAKE_INSTALL_FULL_LIBDIR}" "${CMAKE_INSTALL_FULL_DATADIR}/quorvelle-kit")
file(RELATIVE_PATH QV_DATA_FROM_PROGRAM "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_DATADIR}")
file(RELATIVE_PATH QV_PC_PREFIX "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
file(RELATIVE_PATH QV_PC_LIBDIR "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH QV_PC_INCLUDEDIR "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig"
  "${CMAKE_INSTALL_FULL_INCLUDEDIR}")

# Private API that tests and fuzz targets reach is exported only from such builds.
if(QV_BUILD_TESTS OR QV_BUILD_FUZZ)
  add_compile_definitions(QV_BUILD_TESTING)
endif()

# In-tree code that may use the kit's private headers by their plain names (the libraries
# themselves, tests, fuzz targets, benchmarks, the gallery). Filled by qv_add_kit_library.
add_library(qv_kit_private INTERFACE)

# Installed programs under a prefix the loader does not search find the kit relative to
# themselves; a system prefix (a package) needs no search path.
list(FIND CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES "${CMAKE_INSTALL_FULL_LIBDIR}" qv_system_libdir)
if(qv_system_libdir EQUAL -1)
  file(RELATIVE_PATH qv_lib_from_bin "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  set(CMAKE_INSTALL_RPATH "$ORIGIN/${qv_lib_from_bin}")
endif()

# qv_add_kit_library(<Module> DIRS <folders...> PUBLIC_HEADERS <files...>
#                    [PUBLIC <libs...>] [PRIVATE <libs...>] [PKGCONFIG_REQUIRES <modules...>])
# One shared library libQuorvelle<Module>.so.<major> from every .cpp/.h of the folders, target
# Quorvelle<Module> (alias Quorvelle::<Module>), hidden visibility and the export header
# <Quorvelle/<Module>/<Module>Export.h>. The public headers (paths relative to the calling
# folder) are installed flat into include/Quorvelle/<Module>/ and get forwarding headers of
# the same name in the build tree; every other header stays private.
function(qv_add_kit_library module)
  cmake_parse_arguments(ARG "" "" "DIRS;PUBLIC_HEADERS;PUBLIC;PRIVATE;PKGCONFIG_REQUIRES" ${ARGN})
  set(target Quorvelle${module})
  string(TOUPPER ${module} upper)
  set(sources)
  set(dirs)
  foreach(dir IN LISTS ARG_DIRS)
    get_filename_component(dir ${dir} ABSOLUTE)
    list(APPEND dirs ${dir})
    file(GLOB found CONFIGURE_DEPENDS ${dir}/*.cpp ${dir}/*.h)
    list(APPEND sources ${found})
  endforeach()

  add_library(${target} SHARED ${sources})
  add_library(Quorvelle::${module} ALIAS ${target})
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${module}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR})
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_include_directories(${target}
    PUBLIC $<BUILD_INTERFACE:${QV_KIT_INCLUDE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_include_directories(qv_kit_private INTERFACE ${dirs})
  target_link_libraries(${target} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} qv_kit_private
    qv_warnings)
  # A missing library shows when the kit is built, not in an application's link. (The
  # sanitizers' run-time comes with the program, so those builds leave symbols open.)
  if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    target_link_options(${target} PRIVATE "LINKER:--no-undefined")
  endif()
  add_dependencies(${target} qv_translations)

  set(include_dir ${QV_KIT_INCLUDE_DIR}/Quorvelle/${module})
  set(export_header ${include_dir}/${module}Export.h)
  set(tests_export "
// Exported only from builds with tests: private API that the tests reach.
#ifdef QV_BUILD_TESTING
#  define QV_${upper}_TESTS_EXPORT QV_${upper}_EXPORT
#else
#  define QV_${upper}_TESTS_EXPORT QV_${upper}_NO_EXPORT
#endif")
  generate_export_header(${target} BASE_NAME QV_${upper} EXPORT_FILE_NAME ${export_header}
    CUSTOM_CONTENT_FROM_VARIABLE tests_export)

  set(headers)
  foreach(header IN LISTS ARG_PUBLIC_HEADERS)
    get_filename_component(path ${header} ABSOLUTE)
    get_filename_component(name ${header} NAME)
    if(NOT EXISTS ${path})
      message(FATAL_ERROR "Public header ${header} of ${module} does not exist")
    endif()
    list(APPEND headers ${path})
    file(CONFIGURE OUTPUT ${include_dir}/${name} CONTENT
      "// Generated: the installed name of ${header}.\n#include \"${path}\"\n")
  endforeach()
  set_property(GLOBAL APPEND PROPERTY QV_KIT_PUBLIC_HEADERS ${headers})
  set_property(GLOBAL PROPERTY QV_KIT_PUBLIC_HEADERS_${module} ${headers})

  install(TARGETS ${target} EXPORT QuorvelleKit${module}Targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev)
  install(FILES ${headers} ${export_header}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/Quorvelle/${module} COMPONENT dev)
  install(EXPORT QuorvelleKit${module}Targets NAMESPACE Quorvelle::
    DESTINATION ${QV_KIT_CMAKE_INSTALL_DIR} COMPONENT dev)

  list(JOIN ARG_PKGCONFIG_REQUIRES " " QV_PC_REQUIRES)
  set(QV_PC_NAME ${target})
  set(QV_PC_LIBS "-lQuorvelle${module}")
  if(module STREQUAL "Widgets")
    # Keeps the library under --as-needed for a program that uses only its load-time hooks.
    set(QV_PC_LIBS "-Wl,--push-state,--no-as-needed -lQuorvelle${module} -Wl,--pop-state")
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/QuorvelleKit.pc.in
    ${CMAKE_BINARY_DIR}/pkgconfig/${target}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/pkgconfig/${target}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
endfunction()

# The package's configuration files, after the libraries.
function(qv_install_kit_package)
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/QuorvelleKitConfig.cmake.in
    ${CMAKE_BINARY_DIR}/cmake/QuorvelleKitConfig.cmake
    INSTALL_DESTINATION ${QV_KIT_CMAKE_INSTALL_DIR})
  write_basic_package_version_file(${CMAKE_BINARY_DIR}/cmake/QuorvelleKitConfigVersion.cmake
    VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
  install(FILES ${CMAKE_BINARY_DIR}/cmake/QuorvelleKitConfig.cmake
    ${CMAKE_BINARY_DIR}/cmake/QuorvelleKitConfigVersion.cmake
    ${PROJECT_SOURCE_DIR}/ui/QuorvelleWidgetsLoad.cpp
    DESTINATION ${QV_KIT_CMAKE_INSTALL_DIR} COMPONENT dev)
endfunction()
