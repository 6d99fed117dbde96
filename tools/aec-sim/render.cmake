# Pictures of aec-sim runs: PNG output, the bitmap font and canvas, the run plot and the contact sheet.
if(CMAKE_CROSSCOMPILING)
    return()
endif()

find_package(PNG REQUIRED)

add_library(aecsim_render STATIC
    ${CMAKE_CURRENT_SOURCE_DIR}/cpngwriter.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/cbitmapfont.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/csimcanvas.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/csimplot.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/ccontactsheet.cpp)
target_include_directories(aecsim_render PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
# Only the ABI headers: the simulator loads the library itself at run time.
target_link_libraries(aecsim_render PUBLIC aecore_headers PRIVATE PNG::PNG)
target_compile_options(aecsim_render PRIVATE ${AECORE_WARNINGS})
