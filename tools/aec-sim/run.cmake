# aec-sim's scenarios, closed loop, metrics and reports (aecsim_run), and the aec-sim program.
if(CMAKE_CROSSCOMPILING)
    return()
endif()
if(NOT TARGET aecsim_model OR NOT TARGET aecsim_render)
    message(STATUS "aec-sim: simulated camera or pictures not available, aec-sim not built")
    return()
endif()

find_package(nlohmann_json REQUIRED)
find_package(CLI11 CONFIG REQUIRED)

add_library(aecsim_run STATIC
    ${CMAKE_CURRENT_SOURCE_DIR}/csimscenario.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/csimloop.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/simmetrics.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/simreport.cpp)
target_include_directories(aecsim_run PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
# Only the ABI headers and the host harness: the library itself is loaded at run time.
target_link_libraries(aecsim_run PUBLIC aecore_headers aec_hostharness aecsim_model aecsim_render
                      PRIVATE nlohmann_json::nlohmann_json)
target_compile_options(aecsim_run PRIVATE ${AECORE_WARNINGS})

add_executable(aec-sim ${CMAKE_CURRENT_SOURCE_DIR}/aecsim.cpp)
target_link_libraries(aec-sim PRIVATE aecsim_run CLI11::CLI11)
target_compile_options(aec-sim PRIVATE ${AECORE_WARNINGS})
target_compile_definitions(aec-sim PRIVATE
    AECORE_LIBRARY_PATH="$<TARGET_FILE:aecore>"
    AECORE_LIBRARY_FILE="$<TARGET_SONAME_FILE_NAME:aecore>")
# The program is useless without the library it loads.
add_dependencies(aec-sim aecore)
install(TARGETS aec-sim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
