# Debian's packages, made by CPack of what is installed: install.cmake lists the files already, and debhelper would need
# a second list. packaging/debian/build runs it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zrk-loader)
set(CPACK_PACKAGE_CONTACT "the ZRK loader developers <maintainers@users.noreply.c-seed-43d7f716.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL zrk-loader-cli zrk-loader zrk-board)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian-files.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(zrk_purpose "Brings up ARM9 boards of the ZRK6924 and ZRK6957 family over one serial line:
loads a primary boot through the chip's boot ROM and images into SDRAM,
programs the NAND flash, is a terminal on the same line, and runs small
send-and-wait scripts.
")

# zrk_package(NAME SUMMARY DESCRIPTION): what apt shows of a package; lines of at most 80 characters.
function(zrk_package name summary description)
    string(TOUPPER ${name} component)
    set(CPACK_DEBIAN_${component}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(CPACK_DEBIAN_${component}_PACKAGE_SECTION electronics PARENT_SCOPE)
    set(CPACK_DEBIAN_${component}_DESCRIPTION "${summary}\n${description}" PARENT_SCOPE)
endfunction()
zrk_package(zrk-loader-cli "bring up and program ZRK boards over a serial line (command line)" "${zrk_purpose}
This is the command line, for test racks and factories: several boards at
once, limits for every wait, transcripts, JSON. It needs no display.")
zrk_package(zrk-loader "bring up and program ZRK boards over a serial line (window)" "${zrk_purpose}
This is the window, for the bench.")
zrk_package(zrk-board "simulated ZRK board on a pseudo-terminal"
"Answers as a board of the ZRK6924 and ZRK6957 family does on its serial line,
so that zrk-loader and zrk-loader-cli can be tried, and test setups be tested,
without hardware. Faults can be ordered, and recorded traces be replayed.")
set(CPACK_DEBIAN_ZRK-LOADER_PACKAGE_DEPENDS "zrk-loader-cli (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_ZRK-LOADER_PACKAGE_SUGGESTS zrk-board)
set(CPACK_DEBIAN_ZRK-LOADER-CLI_PACKAGE_SUGGESTS "bash-completion, zrk-board")
set(CPACK_DEBIAN_ZRK-BOARD_PACKAGE_SUGGESTS zrk-loader-cli)
include(CPack)
