# A faster linker and a compiler cache, if this machine has them. Releases are linked by the system's own linker.
option(ZRK_FAST_TOOLS "Use mold and ccache where they are installed (Debug only)" ON)
if(ZRK_FAST_TOOLS AND CMAKE_BUILD_TYPE STREQUAL "Debug" AND NOT CMAKE_CROSSCOMPILING)
    include(CheckLinkerFlag)
    check_linker_flag(CXX -fuse-ld=mold ZRK_HAS_MOLD)
    if(ZRK_HAS_MOLD)
        add_link_options(-fuse-ld=mold)
    endif()
    find_program(ZRK_CCACHE ccache)
    mark_as_advanced(ZRK_CCACHE)
    if(ZRK_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
        set(CMAKE_CXX_COMPILER_LAUNCHER ${ZRK_CCACHE})
    endif()
endif()

# The options for every target of this project.
add_library(zrk_options INTERFACE)
target_compile_options(zrk_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_UNITY_BUILD) # every source but the first counts as a header there
    target_compile_options(zrk_options INTERFACE -Wno-subobject-linkage)
endif()
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
# The same commit gives the same bytes, wherever it is built. A debugger must find the sources at their place.
target_compile_options(zrk_options INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>
    $<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>)
target_compile_definitions(zrk_options INTERFACE QT_NO_CAST_FROM_BYTEARRAY QT_NO_CAST_TO_ASCII
                                                 QT_NO_FOREACH QT_NO_KEYWORDS)

# zrk_library(NAME SOURCES... LINK LIBRARIES...): a static library of this project.
function(zrk_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE zrk_options)
endfunction()

# zrk_windows_resources(NAME DESCRIPTION): on Windows, the icon and the version record of a program.
function(zrk_windows_resources target description)
    if(WIN32)
        configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${target}.rc @ONLY)
        target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    endif()
endfunction()
