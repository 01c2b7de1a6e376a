# Documents every package of the project ships beside its files: the copyright file and
# the changelog (Debian's machine-readable copyright format and changelog format).

# qv_changelog_release(<changelog> <version> <date-variable>)
# Checks that the newest entry of a Debian-format changelog is <version> (a release needs
# its entry) and sets <date-variable> to that entry's date as YYYY-MM-DD (for AppStream).
function(qv_changelog_release changelog version date_variable)
  file(STRINGS ${changelog} lines)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${changelog})
  list(GET lines 0 first)
  if(NOT first MATCHES "^[a-z0-9.+-]+ \\(([^)]+)\\) ")
    message(FATAL_ERROR "${changelog}: the first line is not a changelog entry's heading")
  endif()
  if(NOT CMAKE_MATCH_1 STREQUAL version)
    message(FATAL_ERROR
      "${changelog}: the newest entry is ${CMAKE_MATCH_1}, the project is ${version}: "
      "add an entry for ${version}")
  endif()
  foreach(line IN LISTS lines)
    # The entry's trailer: " -- Name <address>  Day, DD Mon YYYY hh:mm:ss +zzzz"
    if(line MATCHES "^ -- .*  [A-Z][a-z][a-z], ([0-9][0-9]?) ([A-Z][a-z][a-z]) ([0-9][0-9][0-9][0-9]) ")
      set(months Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec)
      list(FIND months ${CMAKE_MATCH_2} month)
      math(EXPR month "${month} + 1" OUTPUT_FORMAT DECIMAL)
      set(day ${CMAKE_MATCH_1})
      string(LENGTH ${day} day_digits)
      string(LENGTH ${month} month_digits)
      if(day_digits EQUAL 1)
        set(day 0${day})
      endif()
      if(month_digits EQUAL 1)
        set(month 0${month})
      endif()
      set(${date_variable} "${CMAKE_MATCH_3}-${month}-${day}" PARENT_SCOPE)
      return()
    endif()
  endforeach()
  message(FATAL_ERROR "${changelog}: the newest entry has no trailer line with its date")
endfunction()

# qv_package_documents(<package> COPYRIGHT <file> CHANGELOG <file>
#                      [LINTIAN_OVERRIDES <file>] [COMPONENT <component>])
# Installs share/doc/<package>/copyright (configured: @VARIABLES@ of the caller's scope are
# filled in), share/doc/<package>/changelog.gz, compressed with gzip -9n so that no file
# name or time stamp makes two builds differ, and lintian's overrides for the package if
# it has any (each with its reason written above it).
function(qv_package_documents package)
  cmake_parse_arguments(ARG "" "COPYRIGHT;CHANGELOG;LINTIAN_OVERRIDES;COMPONENT" "" ${ARGN})
  if(NOT ARG_COPYRIGHT OR NOT ARG_CHANGELOG)
    message(FATAL_ERROR "qv_package_documents(${package}): COPYRIGHT and CHANGELOG are needed")
  endif()
  set(component)
  if(ARG_COMPONENT)
    set(component COMPONENT ${ARG_COMPONENT})
  endif()
  set(out ${CMAKE_BINARY_DIR}/package-documents/${package})
  set(doc ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package})
  configure_file(${ARG_COPYRIGHT} ${out}/copyright @ONLY)
  add_custom_command(OUTPUT ${out}/changelog.gz
    COMMAND sh -c "gzip -9n < \"$0\" > \"$1\"" ${ARG_CHANGELOG} ${out}/changelog.gz
    DEPENDS ${ARG_CHANGELOG}
    VERBATIM)
  add_custom_target(qv_package_documents_${package} ALL DEPENDS ${out}/changelog.gz)
  install(FILES ${out}/copyright ${out}/changelog.gz DESTINATION ${doc} ${component})
  if(ARG_LINTIAN_OVERRIDES)
    install(FILES ${ARG_LINTIAN_OVERRIDES} DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides
      RENAME ${package} ${component})
  endif()
endfunction()
