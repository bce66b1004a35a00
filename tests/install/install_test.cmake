# Installs the build tree into a fresh prefix, then builds the consumer program against it
# twice, through find_package(tqjson2 CONFIG) and through pkg-config, and runs both; also runs
# the installed tool. Arguments: -DBUILD_DIR= -DSOURCE_DIR= -DWORK_DIR= -DGENERATOR=, and for a
# build for another system -DTOOLCHAIN= (its CMake toolchain file), -DCC= (its C compiler) and
# -DEMULATOR= (what runs its programs: there the installed DLLs are found in bin/ alone).
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
endfunction()

set(expected "{\"n\" : 42,\"b64\" : \"YWJj\"}\n")
set(exe "")
set(cross_options "")
set(rpath_option -Wl,-rpath,${prefix}/lib)
if(NOT CC)
  set(CC cc)
endif()
if(TOOLCHAIN)
  set(cross_options -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
  set(rpath_option "")
  set(exe .exe)
  set(ENV{WINEPATH} ${prefix}/bin)
endif()
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/cmake -G ${GENERATOR} ${cross_options}
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_RPATH=${prefix}/lib)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/cmake)
run(${EMULATOR} ${WORK_DIR}/cmake/consumer${exe})
if(NOT last_output STREQUAL expected)
  message(FATAL_ERROR "CMake consumer printed: ${last_output}")
endif()

set(ENV{PKG_CONFIG_PATH} ${prefix}/lib/pkgconfig)
run(pkg-config --cflags --libs tqjson2)
string(STRIP "${last_output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${CC} -std=c11 ${SOURCE_DIR}/consumer.c ${flags} ${rpath_option} -o ${WORK_DIR}/pkg_consumer${exe})
run(${EMULATOR} ${WORK_DIR}/pkg_consumer${exe})
if(NOT last_output STREQUAL expected)
  message(FATAL_ERROR "pkg-config consumer printed: ${last_output}")
endif()

run(${EMULATOR} ${prefix}/bin/tqjson${exe} --version)
