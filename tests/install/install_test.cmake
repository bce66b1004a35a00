# Installs the build tree into a fresh prefix, then builds the consumer program against it
# twice, through find_package(tqjson2 CONFIG) and through pkg-config, and runs both; also runs
# the installed tool. Arguments: -DBUILD_DIR= -DSOURCE_DIR= -DWORK_DIR= -DGENERATOR=
set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed (${result}): ${ARGN}\n${out}\n${err}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

set(expected "{\"n\" : 42,\"b64\" : \"YWJj\"}\n")
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/cmake -G ${GENERATOR}
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_RPATH=${prefix}/lib)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/cmake)
run(${WORK_DIR}/cmake/consumer)
if(NOT last_output STREQUAL expected)
  message(FATAL_ERROR "CMake consumer printed: ${last_output}")
endif()

set(ENV{PKG_CONFIG_PATH} ${prefix}/lib/pkgconfig)
run(pkg-config --cflags --libs tqjson2)
string(STRIP "${last_output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(cc -std=c11 ${SOURCE_DIR}/consumer.c ${flags} -Wl,-rpath,${prefix}/lib
    -o ${WORK_DIR}/pkg_consumer)
run(${WORK_DIR}/pkg_consumer)
if(NOT last_output STREQUAL expected)
  message(FATAL_ERROR "pkg-config consumer printed: ${last_output}")
endif()

run(${prefix}/bin/tqjson --version)
