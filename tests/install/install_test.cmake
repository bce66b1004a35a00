# Installs the build tree into a fresh prefix, then builds the consumer programs against it
# twice, through find_package(tqjson2 CONFIG) and through pkg-config, and runs them; also runs
# the installed tool and reads its manual page, and finds the reference (-DDOCS=ON when the
# build makes it). Programs are linked the strict way: with --as-needed, a program that calls
# tqjson2 alone does not name tqbase, and an rpath to the prefix serves the program only, so
# tqjson2 must find tqbase from where it lies. Arguments: -DBUILD_DIR= -DSOURCE_DIR= -DWORK_DIR=
# -DGENERATOR=, and for a build for another system -DTOOLCHAIN= (its CMake toolchain file), -DCC=
# (its C compiler) and -DEMULATOR= (what runs its programs: there the installed DLLs are found in
# bin/ alone).
set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed (${result}): ${ARGN}\n${out}\n${err}")
  endif()
  # A program's standard output in text mode ends its lines with CR LF on Windows.
  string(REPLACE "\r\n" "\n" out "${out}")
  set(last_output "${out}" PARENT_SCOPE)
  set(last_error "${err}" PARENT_SCOPE)
endfunction()

# Runs the consumer programs of one way of building, whose executables are <stem>consumer and
# <stem>nonfinite.
function(run_consumers way stem)
  run(${EMULATOR} ${stem}consumer${exe})
  if(NOT last_output STREQUAL "{\"n\" : 42,\"b64\" : \"YWJj\"}\n")
    message(FATAL_ERROR "${way} consumer printed: ${last_output}")
  endif()
  set(written ${WORK_DIR}/nonfinite.json)
  file(REMOVE ${written})
  run(${EMULATOR} ${stem}nonfinite${exe} ${written})
  file(READ ${written} text)
  if(NOT text STREQUAL "{\"nan\": null,\"inf\": 1E+999,\"minus_inf\": -1E+999}")
    message(FATAL_ERROR "${way} nonfinite wrote: ${text}")
  endif()
endfunction()

set(exe "")
set(cross_options "")
set(strict_link -Wl,--as-needed)
set(rpath_option -Wl,-rpath,${prefix}/lib)
if(NOT CC)
  set(CC cc)
endif()
if(TOOLCHAIN)
  set(cross_options -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
  set(strict_link "")
  set(rpath_option "")
  set(exe .exe)
  set(ENV{WINEPATH} ${prefix}/bin)
endif()
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/cmake -G ${GENERATOR} ${cross_options}
    -DCMAKE_PREFIX_PATH=${prefix} "-DCMAKE_EXE_LINKER_FLAGS=${strict_link}"
    -DCMAKE_BUILD_RPATH=${prefix}/lib)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/cmake)
run_consumers(CMake ${WORK_DIR}/cmake/)

set(ENV{PKG_CONFIG_PATH} ${prefix}/lib/pkgconfig)
run(pkg-config --cflags --libs tqjson2)
string(STRIP "${last_output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
foreach(program consumer nonfinite)
  run(${CC} -std=c11 ${strict_link} ${SOURCE_DIR}/${program}.c ${flags} ${rpath_option}
      -o ${WORK_DIR}/pkg_${program}${exe})
endforeach()
run_consumers(pkg-config ${WORK_DIR}/pkg_)

run(${EMULATOR} ${prefix}/bin/tqjson${exe} --version)

# man finds the page through MANPATH alone, and formats it without a warning.
if(TOOLCHAIN)
  if(NOT EXISTS ${prefix}/share/man/man1/tqjson.1)
    message(FATAL_ERROR "no manual page installed")
  endif()
else()
  run(${CMAKE_COMMAND} -E env MANPATH=${prefix}/share/man MANWIDTH=80
      man --warnings -P cat tqjson)
  if(NOT last_output MATCHES "tqjson +- +read, check, query and write JSON" OR last_error)
    message(FATAL_ERROR "man tqjson gave:\n${last_output}\n${last_error}")
  endif()
endif()
if(DOCS AND NOT EXISTS ${prefix}/share/doc/tqjson2/html/index.html)
  message(FATAL_ERROR "no HTML reference installed")
endif()
