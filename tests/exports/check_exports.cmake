# Compares the functions the shared library exports with the EXPORTS list of the .def file:
# both ways, so that a missing export and an unlisted visible symbol both fail.
# Usage: cmake -DLIBRARY=<path to the .so> -DDEF=<path to the .def> -P check_exports.cmake

execute_process(COMMAND nm -D --defined-only --format=posix ${LIBRARY}
                OUTPUT_VARIABLE nm_output RESULT_VARIABLE nm_result)
if(NOT nm_result EQUAL 0)
  message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()

set(exported "")
string(REPLACE "\n" ";" nm_lines "${nm_output}")
foreach(line IN LISTS nm_lines)
  # "name type value size": every defined dynamic symbol counts, whatever its type.
  if(line MATCHES "^([^ ]+) ([A-Za-z]) ")
    list(APPEND exported "${CMAKE_MATCH_1}")
  endif()
endforeach()

file(STRINGS ${DEF} def_lines)
set(listed "")
set(in_exports FALSE)
foreach(line IN LISTS def_lines)
  string(STRIP "${line}" line)
  if(line STREQUAL "EXPORTS")
    set(in_exports TRUE)
  elseif(in_exports AND line MATCHES "^([A-Za-z_][A-Za-z0-9_]*)(=([A-Za-z_][A-Za-z0-9_]*))?$")
    list(APPEND listed "${CMAKE_MATCH_1}")
  endif()
endforeach()

list(SORT exported)
list(REMOVE_DUPLICATES exported)
list(SORT listed)
list(REMOVE_DUPLICATES listed)

set(unlisted ${exported})
list(REMOVE_ITEM unlisted ${listed})
set(missing ${listed})
if(exported)
  list(REMOVE_ITEM missing ${exported})
endif()

list(LENGTH listed listed_count)
if(unlisted OR missing OR listed_count EQUAL 0)
  message(FATAL_ERROR "exports differ from ${DEF}\n  exported but not listed: ${unlisted}\n"
                      "  listed but not exported: ${missing}")
endif()
message(STATUS "${listed_count} exports match ${DEF}")
