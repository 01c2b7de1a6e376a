# Run by cpack on the staging folder before it makes the packages (CPACK_PRE_BUILD_SCRIPTS).
# install(TARGETS) has stripped the binaries' symbols (CPACK_STRIP_FILES); this also drops
# the two sections Debian's own packaging strips, the compiler's version string (.comment,
# which the C runtime's start files bring in) and .note, so that the binaries are what
# dh_strip would make of them.
file(GLOB_RECURSE files LIST_DIRECTORIES false "${CPACK_TEMPORARY_DIRECTORY}/*")
foreach(file IN LISTS files)
  if(IS_SYMLINK "${file}")
    continue()
  endif()
  file(READ "${file}" magic LIMIT 4 HEX)
  if(magic STREQUAL "7f454c46") # ELF
    execute_process(
      COMMAND "${CPACK_QV_OBJCOPY}" --remove-section=.comment --remove-section=.note "${file}"
      RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
      message(FATAL_ERROR "${CPACK_QV_OBJCOPY} failed on ${file}")
    endif()
  endif()
endforeach()
