# What is installed, and the two Debian packages that CPack makes of it.

find_program(GZIP gzip REQUIRED)
# compress(SOURCE NAME): SOURCE, compressed as Debian wants it, at build time as NAME.
function(compress source name)
    add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/${name}
        COMMAND ${GZIP} -9nc ${source} > ${PROJECT_BINARY_DIR}/${name}
        DEPENDS ${source} VERBATIM)
    set(compressed ${compressed} ${PROJECT_BINARY_DIR}/${name} PARENT_SCOPE)
endfunction()

# install_docs(COMPONENT PACKAGE): the licence and the list of changes, where Debian looks for them.
function(install_docs component package)
    install(FILES ${PROJECT_BINARY_DIR}/copyright ${PROJECT_BINARY_DIR}/changelog.gz
        ${PROJECT_BINARY_DIR}/NEWS.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
endfunction()

compress(${PROJECT_SOURCE_DIR}/docs/orbelstatprobe.1 orbelstatprobe.1.gz)
set(maintainer "The orbelstatprobe developers <developers@orbelstatprobe.example>")
configure_file(${PROJECT_SOURCE_DIR}/cmake/changelog.in ${PROJECT_BINARY_DIR}/changelog @ONLY)
compress(${PROJECT_BINARY_DIR}/changelog changelog.gz)
compress(${PROJECT_SOURCE_DIR}/CHANGELOG.md NEWS.gz)
configure_file(${PROJECT_SOURCE_DIR}/docs/copyright ${PROJECT_BINARY_DIR}/copyright COPYONLY)

install(TARGETS orbelstatprobe COMPONENT program)
install(CODE "file(RPATH_REMOVE FILE
    \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/orbelstatprobe\")"
    COMPONENT program)
install(FILES ${PROJECT_BINARY_DIR}/orbelstatprobe.1.gz
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
install(FILES docs/orbelstatprobe.bash RENAME orbelstatprobe
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT program)
install_docs(program orbelstatprobe)
set(components program)

if(TARGET tolmshm)
    compress(${PROJECT_SOURCE_DIR}/docs/tolmfill.1 tolmfill.1.gz)
    install(TARGETS tolmshm tolmdata tolmfill COMPONENT standin LIBRARY NAMELINK_SKIP COMPONENT standin)
    install(FILES ${PROJECT_BINARY_DIR}/tolmfill.1.gz
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT standin)
    install_docs(standin orbelstatprobe-standin)
    list(APPEND components standin)
endif()
add_custom_target(compressed_docs ALL DEPENDS ${compressed})

set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PACKAGE_CONTACT "${maintainer}")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL aarch64)
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
endif()
# The oldest C library with all that is called.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= 2.34)")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME orbelstatprobe)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "inspect and edit the power-management shared memory
Prints the four sections of a server management controller's power-management
shared memory field by field, and edits policies, CPU power limits and thermal
readings in it.")
if(TARGET tolmshm)
    set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS
        "${CPACK_DEBIAN_PACKAGE_DEPENDS}, orbelstatprobe-standin (= ${PROJECT_VERSION})")
    string(APPEND CPACK_DEBIAN_PROGRAM_DESCRIPTION " This build runs with the
stand-in for the platform's libraries.")
endif()
set(CPACK_DEBIAN_STANDIN_PACKAGE_NAME orbelstatprobe-standin)
set(CPACK_DEBIAN_STANDIN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_STANDIN_PACKAGE_CONTROL_EXTRA
    ${PROJECT_SOURCE_DIR}/cmake/shlibs ${PROJECT_SOURCE_DIR}/cmake/triggers)
set(CPACK_DEBIAN_STANDIN_DESCRIPTION "stand-in for a controller's shared-memory libraries
Two libraries with which orbelstatprobe runs on a workbench: sections of shared
memory are files, and tolmfill creates them with plausible data. Not for a
controller, which has the real libraries.")
include(CPack)
