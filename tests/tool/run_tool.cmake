# Runs the tqjson tool once and compares what it did with what the case expects.
#   TOOL     the tool            ARGS    its arguments, separated by '|'; @OUT@ stands for
#   INPUTS   its working folder          the file WORK/output, @EMPTY@ for an empty one
#   WORK     a folder of the case's own, emptied first
#   STDIN    the file for standard input (none: empty input)
#   STATUS   the exit status expected
#   STDOUT   the file standard output must equal (none: no output at all)
#   STDERR   the one line standard error must hold, without its line feed, or
#   STDERR_FILE  the file it must equal (neither: nothing)
#   OUTPUT   the file WORK/output must equal, when the case writes one
#   NO_OUTPUT  ON: WORK/output must not exist
#   PRESET   a file WORK/output holds before the tool runs (a save over an older file)
#   EMULATOR what runs the tool, where it is built for another system (wine)
#   CRLF     ON: the expected STDOUT and OUTPUT hold CR LF where their files hold LF
# The tool's temporary files go to WORK too.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
string(REPLACE "|" ";" args "${ARGS}")
list(TRANSFORM args REPLACE "^@OUT@$" "${WORK}/output")
if(PRESET)
  file(COPY_FILE "${PRESET}" "${WORK}/output")
endif()
if(STDIN)
  set(stdin "${STDIN}")
else()
  set(stdin "${WORK}/empty")
  file(WRITE "${stdin}" "")
endif()

set(ENV{TMPDIR} "${WORK}")
# Each argument goes in a bracket argument of a call written for the case, so that one may be
# empty (@EMPTY@), which an unquoted list would drop.
set(quoted "")
foreach(arg IN LISTS args)
  if(arg STREQUAL "@EMPTY@")
    set(arg "")
  endif()
  string(APPEND quoted " [==[${arg}]==]")
endforeach()
file(WRITE "${WORK}/command.cmake" "execute_process(COMMAND \${EMULATOR} \"\${TOOL}\"${quoted}
  WORKING_DIRECTORY \"\${INPUTS}\"
  INPUT_FILE \"\${stdin}\"
  OUTPUT_FILE \"\${WORK}/stdout\"
  ERROR_FILE \"\${WORK}/stderr\"
  RESULT_VARIABLE status)\n")
include("${WORK}/command.cmake")
# Files rather than pipes: a pipe would also wait for every process that holds it, such as the
# server that wine starts and leaves running.
file(READ "${WORK}/stderr" stderr)

set(problems "")
if(NOT status STREQUAL STATUS)
  string(APPEND problems "exit status ${status}, expected ${STATUS}\n")
endif()

# Files are compared byte for byte: outputs may hold any byte, and line ends matter.
function(compare_file what actual expected)
  if(CRLF)
    file(READ "${expected}" text)
    string(REPLACE "\n" "\r\n" text "${text}")
    get_filename_component(expected_name "${expected}" NAME)
    set(expected "${WORK}/expected-crlf-${expected_name}")
    file(WRITE "${expected}" "${text}")
  endif()
  if(NOT EXISTS "${actual}")
    string(APPEND problems "${what}: no file ${actual}\n")
  else()
    execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${expected}" "${actual}"
                    RESULT_VARIABLE differ OUTPUT_QUIET ERROR_QUIET)
    if(differ)
      file(READ "${actual}" got)
      string(APPEND problems "${what} differs from ${expected}; it was:\n${got}\n")
    endif()
  endif()
  set(problems "${problems}" PARENT_SCOPE)
endfunction()

if(STDOUT)
  compare_file("standard output" "${WORK}/stdout" "${STDOUT}")
else()
  file(SIZE "${WORK}/stdout" size)
  if(NOT size EQUAL 0)
    file(READ "${WORK}/stdout" got)
    string(APPEND problems "unexpected standard output:\n${got}\n")
  endif()
endif()

if(STDERR)
  set(expected_stderr "${STDERR}\n")
elseif(STDERR_FILE)
  file(READ "${STDERR_FILE}" expected_stderr)
else()
  set(expected_stderr "")
endif()
if(NOT stderr STREQUAL expected_stderr)
  string(APPEND problems "standard error was:\n${stderr}expected:\n${expected_stderr}")
endif()

if(OUTPUT)
  compare_file("the output file" "${WORK}/output" "${OUTPUT}")
elseif(NO_OUTPUT AND EXISTS "${WORK}/output")
  string(APPEND problems "the output file exists\n")
endif()

# A save leaves nothing of its own beside the file it saved, whether it succeeded or not.
file(GLOB strays "${WORK}/.tqbase-*")
if(strays)
  string(APPEND problems "left beside the output: ${strays}\n")
endif()

if(problems)
  message(FATAL_ERROR "tqjson ${args}\n${problems}")
endif()
