# The Debian packages: one of the window, one of the companion program. scripts/package makes them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/finish.cmake)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL tavoline)
if(TAVOLINE_TAV)
    list(APPEND CPACK_COMPONENTS_ALL tav)
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Tavoline developers <tavoline@tavoline.example>")
set(CPACK_DEBIAN_PACKAGE_SECTION math)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

set(CPACK_DEBIAN_TAVOLINE_PACKAGE_NAME tavoline)
set(CPACK_DEBIAN_TAVOLINE_PACKAGE_SUGGESTS tav)
set(CPACK_DEBIAN_TAVOLINE_DESCRIPTION "search databases of small graphs for counterexamples
Tavoline works on a database of small graphs in which every graph knows the
graphs directly below it and directly above it. It loads two invariants of
every graph, lists the graphs for which they compare as asked, combines lists,
and shows and edits the graphs of a list.")

set(CPACK_DEBIAN_TAV_PACKAGE_NAME tav)
set(CPACK_DEBIAN_TAV_PACKAGE_SUGGESTS "tavoline, nauty")
set(CPACK_DEBIAN_TAV_DESCRIPTION "make and examine databases of graphs for Tavoline
It makes the databases that Tavoline loads from graph6 strings, checks them,
computes invariants of their graphs, and repeats on the command line what is
done in the window. It needs no display.")

include(CPack)
