# What every target of this project is compiled with.
add_library(zrk_options INTERFACE)
target_compile_options(zrk_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(ZRK_WERROR)
    target_compile_options(zrk_options INTERFACE -Werror)
endif()
if(ZRK_SANITIZE STREQUAL "address")
    target_compile_options(zrk_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer
                                                 -fno-sanitize-recover=undefined)
    target_link_options(zrk_options INTERFACE -fsanitize=address,undefined)
elseif(ZRK_SANITIZE STREQUAL "thread")
    # The compiler's own headers hold a fence that the sanitizer cannot see through; none of ours does.
    target_compile_options(zrk_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer -Wno-tsan)
    target_link_options(zrk_options INTERFACE -fsanitize=thread)
    add_library(zrk_clone OBJECT ${PROJECT_SOURCE_DIR}/cmake/CloneForThreadSanitizer.cpp)
    target_sources(zrk_options INTERFACE $<TARGET_OBJECTS:zrk_clone>)
elseif(ZRK_SANITIZE STREQUAL "fuzz")
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "ZRK_SANITIZE=fuzz needs clang, whose libFuzzer it builds with.")
    endif()
    target_compile_options(zrk_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                                                 -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(zrk_options INTERFACE -fsanitize=address,undefined)
elseif(ZRK_SANITIZE)
    message(FATAL_ERROR "ZRK_SANITIZE is \"${ZRK_SANITIZE}\": it may be address, thread, fuzz or empty.")
endif()
# The same commit gives the same bytes, wherever it is built. A debugger wants to find the sources where they are.
target_compile_options(zrk_options INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>
    $<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>)
target_compile_definitions(zrk_options INTERFACE QT_NO_CAST_FROM_BYTEARRAY QT_NO_CAST_TO_ASCII
                                                 QT_NO_FOREACH QT_NO_KEYWORDS)

# zrk_library(NAME SOURCES... LINK LIBRARIES... [HEADERS plain|core|window]): a static library of this project, with
# the set of precompiled headers that fits it.
function(zrk_library name)
    cmake_parse_arguments(ARG "" "HEADERS" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE zrk_options)
    if(ARG_HEADERS)
        zrk_precompile(${name} ${ARG_HEADERS})
    endif()
endfunction()

# zrk_windows_resources(NAME DESCRIPTION): on Windows, the icon and the version record of a program.
function(zrk_windows_resources target description)
    if(WIN32)
        configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${target}.rc @ONLY)
        target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    endif()
endfunction()
