# aecore_generate_tuning(): runs aectuninggen.py at build time on a schema and a default directory.
include_guard(GLOBAL)

find_package(Python3 3.11 REQUIRED COMPONENTS Interpreter)

# Cached so that the function also finds generator and interpreter when it is called from another directory.
set(AECORE_TUNINGGEN_DIR ${CMAKE_CURRENT_LIST_DIR} CACHE INTERNAL "Directory of aectuninggen.py")
set(AECORE_TUNINGGEN_PYTHON ${Python3_EXECUTABLE} CACHE INTERNAL "Python interpreter of aectuninggen.py")

# aecore_generate_tuning(SCHEMA_DIR <dir> DEFAULT_DIR <dir> REGISTRY <file> OUTPUT_DIR <dir> OUTPUTS_VAR <var>)
# Sets <var> to the generated files. The names of the files follow from the schema's namespaces, so every schema
# file is a configure dependency: editing one lists the outputs anew before the build regenerates them.
function(aecore_generate_tuning)
    cmake_parse_arguments(ARG "" "SCHEMA_DIR;DEFAULT_DIR;REGISTRY;OUTPUT_DIR;OUTPUTS_VAR" "" ${ARGN})
    file(GLOB generator_files CONFIGURE_DEPENDS ${AECORE_TUNINGGEN_DIR}/*.py)
    file(GLOB schema_files CONFIGURE_DEPENDS ${ARG_SCHEMA_DIR}/*.schema)
    file(GLOB default_files CONFIGURE_DEPENDS ${ARG_DEFAULT_DIR}/*.toml)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${schema_files} ${generator_files} ${ARG_REGISTRY})

    set(generator ${AECORE_TUNINGGEN_PYTHON} -B ${AECORE_TUNINGGEN_DIR}/aectuninggen.py
        --schema-dir ${ARG_SCHEMA_DIR} --default-dir ${ARG_DEFAULT_DIR} --registry ${ARG_REGISTRY})
    execute_process(COMMAND ${generator} --list-outputs
        OUTPUT_VARIABLE names ERROR_VARIABLE errors RESULT_VARIABLE result OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "aectuninggen.py failed (${result}) on the tuning schema in ${ARG_SCHEMA_DIR}:\n${errors}")
    endif()
    string(REPLACE "\n" ";" names "${names}")
    list(TRANSFORM names PREPEND ${ARG_OUTPUT_DIR}/ OUTPUT_VARIABLE outputs)

    # Unchanged files keep their time stamps, and Ninja's restat then rebuilds only what really changed.
    add_custom_command(OUTPUT ${outputs}
        COMMAND ${generator} --out-dir ${ARG_OUTPUT_DIR}
        DEPENDS ${generator_files} ${schema_files} ${default_files} ${ARG_REGISTRY}
        COMMENT "Generating tuning records and defaults in ${ARG_OUTPUT_DIR}"
        VERBATIM)
    set(${ARG_OUTPUTS_VAR} ${outputs} PARENT_SCOPE)
endfunction()
