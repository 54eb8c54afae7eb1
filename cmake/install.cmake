# What belongs to the programs on a system with manual pages and desktop entries; beside the programs of one
# folder a package needs no more than `cmake --install`.
include(GNUInstallDirs)
install(TARGETS zrk-loader zrk-loader-cli zrk-board RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES docs/man/zrk-loader.1 docs/man/zrk-loader-cli.1 docs/man/zrk-board.1
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES README.md docs/architecture.md docs/json.md docs/racks.md DESTINATION ${CMAKE_INSTALL_DOCDIR})

# The shell looks for a file of the command's name.
foreach(program zrk-loader zrk-loader-cli zrk-board)
    install(FILES packaging/completions/zrk-loader-cli RENAME ${program}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
endforeach()

install(FILES packaging/zrk-loader.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
foreach(size 16 32 48 64 128 256)
    install(FILES packaging/icons/zrk-loader-${size}.png RENAME zrk-loader.png
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()
