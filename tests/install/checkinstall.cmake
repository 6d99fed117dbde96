# Installs libaecore into a scratch prefix, checks its default tuning, then builds and runs a C consumer against it.
file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix RESULT_VARIABLE result OUTPUT_QUIET)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "install failed")
endif()

set(ENV{PKG_CONFIG_PATH} "${WORK}/prefix/lib/pkgconfig:${WORK}/prefix/lib64/pkgconfig")
foreach(dir lib lib64 lib/x86_64-linux-gnu)
    set(ENV{PKG_CONFIG_PATH} "$ENV{PKG_CONFIG_PATH}:${WORK}/prefix/${dir}/pkgconfig")
endforeach()
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/build -G Ninja -DCMAKE_PREFIX_PATH=${WORK}/prefix
                        -DCMAKE_C_COMPILER=${C_COMPILER}
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "consumer configure failed:\n${output}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/build RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "consumer build failed:\n${output}")
endif()

file(GLOB_RECURSE libraries "${WORK}/prefix/libaecore.so*")
list(GET libraries 0 library)
get_filename_component(libdir ${library} DIRECTORY)
# The default tuning travels with the library.
if(NOT EXISTS ${libdir}/aecore/default.bin)
    message(FATAL_ERROR "default.bin is not installed next to the library (${libdir}/aecore/default.bin)")
endif()
foreach(consumer consumer_cmake consumer_pkgconfig)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${libdir} ${WORK}/build/${consumer}
                    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${consumer} failed:\n${output}")
    endif()
    message(STATUS "${consumer}: ${output}")
endforeach()
