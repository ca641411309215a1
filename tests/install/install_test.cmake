# Installs the built library into a fresh prefix under WORK, then builds and runs
# two applications that call only vnxi* functions, with no LD_LIBRARY_PATH: one
# found through find_package(vnxcv), one through pkg-config.
# Arguments: BUILD (the library's build tree), SRC (this folder), WORK, LIBDIR, CC, FLAGS,
# TOOLCHAIN (optional).
cmake_minimum_required(VERSION 3.20)
unset(ENV{LD_LIBRARY_PATH})
file(REMOVE_RECURSE ${WORK})
set(prefix ${WORK}/prefix)

function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "${what} failed (${rc}):\n${out}")
  endif()
endfunction()

run("install" ${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix})

set(toolchain "")
if(TOOLCHAIN)
  set(toolchain -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
endif()
run("configure the find_package application" ${CMAKE_COMMAND} -S ${SRC} -B ${WORK}/app -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_C_COMPILER=${CC} ${toolchain})
run("build the find_package application" ${CMAKE_COMMAND} --build ${WORK}/app)
run("run the find_package application" ${WORK}/app/app)

set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
execute_process(COMMAND pkg-config --cflags --libs vnxcv OUTPUT_VARIABLE pc RESULT_VARIABLE rc
                OUTPUT_STRIP_TRAILING_WHITESPACE)
execute_process(COMMAND pkg-config --variable=libdir vnxcv OUTPUT_VARIABLE libdir OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "pkg-config does not know vnxcv")
endif()
separate_arguments(pc UNIX_COMMAND "${pc}")
separate_arguments(flags UNIX_COMMAND "${FLAGS}")
# The application's own run path finds libvnxcv; libvnxcv finds libvnxcore.
run("build the pkg-config application" ${CC} ${flags} ${SRC}/app.c -o ${WORK}/app-pc ${pc} -Wl,--as-needed
    -Wl,-rpath,${libdir})
run("run the pkg-config application" ${WORK}/app-pc)
