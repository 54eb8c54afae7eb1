# Applies Debian's rules to the files; CPack runs it between installing into its own folders and packing them.
foreach(package ${CPACK_COMPONENTS_ALL})
    set(root ${CPACK_TEMPORARY_DIRECTORY}/${package}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
    file(COPY ${CMAKE_CURRENT_LIST_DIR}/../packaging/debian/changelog DESTINATION ${root}/doc/${package}
         FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    file(GLOB pages ${root}/man/man1/*.1 ${root}/doc/${package}/changelog)
    file(GLOB programs ${root}/../bin/*)
    execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${programs} COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
