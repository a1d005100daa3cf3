# What Debian asks of a package and an installation does not have: the copyright, the changes, a packed manual page.
find_program(GZIP gzip REQUIRED)
string(TIMESTAMP today "%a, %d %b %Y 00:00:00 +0000" UTC)
foreach(package IN LISTS CPACK_COMPONENTS_ALL)
    set(share ${CPACK_TEMPORARY_DIRECTORY}/${package}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
    set(pages ${share}/doc/${package})
    file(COPY ${CMAKE_CURRENT_LIST_DIR}/copyright DESTINATION ${pages})
    file(COPY_FILE ${CMAKE_CURRENT_LIST_DIR}/../CHANGELOG.md ${pages}/CHANGELOG.md)
    file(WRITE ${pages}/changelog
        "${package} (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium\n\n"
        "  * CHANGELOG.md.gz tells what is new.\n\n"
        " -- ${CPACK_DEBIAN_PACKAGE_MAINTAINER}  ${today}\n")
    execute_process(
        COMMAND ${GZIP} -9n ${pages}/CHANGELOG.md ${pages}/changelog ${share}/man/man1/${package}.1
        COMMAND_ERROR_IS_FATAL ANY)
endforeach()
