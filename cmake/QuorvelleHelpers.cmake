# Shared compile settings and small helpers for the module libraries, tests and benchmarks.

add_library(qv_warnings INTERFACE)
target_compile_options(qv_warnings INTERFACE -Wall -Wextra -Wpedantic)
if(QV_WERROR)
  target_compile_options(qv_warnings INTERFACE -Werror)
endif()
target_compile_definitions(qv_warnings INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)

# qv_add_module(<target> [DEPS <libs...>])
# A static library of one directory (the program's own code); every .cpp/.h of the directory
# and of its platform/ sub-directory belongs to it. The kit's libraries are shared ones, made
# by qv_add_kit_library (QuorvelleKit.cmake).
function(qv_add_module target)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS
    ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  if(NOT sources)
    # A module whose code has not landed yet still links.
    add_library(${target} INTERFACE)
    target_link_libraries(${target} INTERFACE ${ARG_DEPS})
    return()
  endif()
  add_library(${target} STATIC ${sources})
  target_include_directories(${target} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${target} PUBLIC ${ARG_DEPS} PRIVATE qv_warnings)
  add_dependencies(${target} qv_translations)
endfunction()

# qv_add_tests(<libs...>): one QtTest executable and one CTest test per tst_*.cpp of the
# calling directory. Extra sources of a test go in a folder named after it (tst_foo/).
# Each test is labelled with its folder under tests/ (foundation, ui, e2e...), so
# `ctest -L ui` and scripts/mutate select a module's tests without a list of names.
function(qv_add_tests)
  file(GLOB tests CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/tst_*.cpp)
  file(RELATIVE_PATH label ${PROJECT_SOURCE_DIR}/tests ${CMAKE_CURRENT_SOURCE_DIR})
  foreach(src IN LISTS tests)
    get_filename_component(name ${src} NAME_WE)
    file(GLOB extra CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp
      ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.h)
    add_executable(${name} ${src} ${extra})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests/common)
    target_link_libraries(${name} PRIVATE ${ARGN} qv_testsupport qv_kit_private Qt6::Test qv_warnings)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
      ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QV_SOURCE_DIR=${CMAKE_SOURCE_DIR};QV_BINARY_DIR=${CMAKE_BINARY_DIR}"
      TIMEOUT 300 LABELS ${label})
  endforeach()
endfunction()
