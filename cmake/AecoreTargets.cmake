# Helpers that give every subsystem and test the same flags, include roots and linkage.
include_guard(GLOBAL)
include(GNUInstallDirs)

set(AECORE_WARNINGS -Wall -Wextra -Werror)

# Host-facing headers, usable by C and C++ hosts.
add_library(aecore_headers INTERFACE)
target_include_directories(aecore_headers INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:include>)

set_property(GLOBAL PROPERTY AECORE_SUBSYSTEMS "")

# aecore_add_subsystem(<name> SOURCES ...): one object library per subsystem, linked into libaecore.so.
function(aecore_add_subsystem name)
    cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
    set(target aecore_${name})
    add_library(${target} OBJECT ${ARG_SOURCES})
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${target} PUBLIC aecore_headers)
    target_compile_options(${target} PRIVATE ${AECORE_WARNINGS})
    set_property(GLOBAL APPEND PROPERTY AECORE_SUBSYSTEMS ${target})
endfunction()

# aecore_add_unit_test(<name> SOURCES ...): a GoogleTest program against the static library.
function(aecore_add_unit_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE aecore_testing aecore_gtest_main)
    target_compile_options(${name} PRIVATE ${AECORE_WARNINGS})
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS unit)
endfunction()
