# The files that belong to the programs on a system with manual pages and desktop entries. `cmake --install` installs
# all; a package is one component: a rack needs no display library, and few need the simulated board.
include(GNUInstallDirs)
set(zrk_doc ${CMAKE_INSTALL_DATADIR}/doc)

foreach(program zrk-loader-cli zrk-loader zrk-board)
    install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${program})
    install(FILES docs/man/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${program})
    # The shell looks for a file with the command's name.
    install(FILES packaging/completions/zrk-loader-cli RENAME ${program}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT ${program})
    install(FILES THIRD-PARTY.md DESTINATION ${zrk_doc}/${program} COMPONENT ${program})
    install(FILES packaging/debian/copyright DESTINATION ${zrk_doc}/${program} COMPONENT ${program})
endforeach()

install(FILES README.md SECURITY.md CHANGELOG.md DESTINATION ${zrk_doc}/zrk-loader-cli COMPONENT zrk-loader-cli)
# The documents that README links.
install(FILES docs/architecture.md docs/command-line.md docs/ini-file.md docs/integrity.md docs/json.md
              docs/packages.md docs/racks.md docs/scripts.md docs/trace.md docs/troubleshooting.md docs/window.md
        DESTINATION ${zrk_doc}/zrk-loader-cli/docs COMPONENT zrk-loader-cli)
install(DIRECTORY docs/images DESTINATION ${zrk_doc}/zrk-loader-cli/docs COMPONENT zrk-loader-cli)
install(FILES packaging/udev/70-zrk-loader.rules DESTINATION ${zrk_doc}/zrk-loader-cli/examples
        COMPONENT zrk-loader-cli)

install(FILES packaging/zrk-loader.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT zrk-loader)
install(FILES packaging/zrk-loader.metainfo.xml RENAME local.zrk.loader.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT zrk-loader)
foreach(size 16 32 48 64 128 256)
    install(FILES packaging/icons/zrk-loader-${size}.png RENAME zrk-loader.png
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps COMPONENT zrk-loader)
endforeach()
