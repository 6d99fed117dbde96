# The simulated camera of aec-sim: sensor description files, the sensor model, scenes, radiance maps, statistics.
if(CMAKE_CROSSCOMPILING)
    return()
endif()

# Without the picture and JSON libraries the library still builds; only the simulator is left out.
find_package(OpenEXR CONFIG QUIET)
find_package(nlohmann_json QUIET)
if(NOT OpenEXR_FOUND OR NOT nlohmann_json_FOUND)
    message(STATUS "aec-sim: OpenEXR or nlohmann_json missing (scripts/install-deps), simulated camera not built")
    return()
endif()

add_library(aecsim_model STATIC
    ${CMAKE_CURRENT_SOURCE_DIR}/csimsensor.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/csimscenes.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/cproceduralscene.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/cradiancemap.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/rgbefile.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/cstatsgenerator.cpp)
target_include_directories(aecsim_model PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
# Only the ABI headers: the simulator loads the library itself at run time.
target_link_libraries(aecsim_model PUBLIC aecore_headers PRIVATE OpenEXR::OpenEXR nlohmann_json::nlohmann_json)
target_compile_options(aecsim_model PRIVATE ${AECORE_WARNINGS})
