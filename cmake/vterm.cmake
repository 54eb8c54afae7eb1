# zrk_vterm: libvterm, which brings no description of itself for CMake.
find_path(VTERM_INCLUDE_DIR vterm.h)
find_library(VTERM_LIBRARY vterm)
if(NOT VTERM_INCLUDE_DIR OR NOT VTERM_LIBRARY)
    message(FATAL_ERROR "libvterm is missing: install libvterm-dev, or name VTERM_INCLUDE_DIR and VTERM_LIBRARY.")
endif()
add_library(zrk_vterm INTERFACE)
target_include_directories(zrk_vterm SYSTEM INTERFACE ${VTERM_INCLUDE_DIR})
target_link_libraries(zrk_vterm INTERFACE ${VTERM_LIBRARY})
