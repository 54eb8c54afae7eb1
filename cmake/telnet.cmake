# zrk_telnet: libtelnet, which has no CMake files of its own.
find_path(TELNET_INCLUDE_DIR libtelnet.h)
find_library(TELNET_LIBRARY telnet)
if(NOT TELNET_INCLUDE_DIR OR NOT TELNET_LIBRARY)
    message(FATAL_ERROR "libtelnet is missing: install libtelnet-dev, or name TELNET_INCLUDE_DIR and TELNET_LIBRARY.")
endif()
add_library(zrk_telnet INTERFACE)
target_include_directories(zrk_telnet SYSTEM INTERFACE ${TELNET_INCLUDE_DIR})
target_link_libraries(zrk_telnet INTERFACE ${TELNET_LIBRARY})
