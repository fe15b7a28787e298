# What is installed, and the two Debian packages that CPack makes of it: the program's and the
# stand-in's. A program that works with the stand-in is another package than the controller's, so
# that neither is ever installed in place of the other.

set(program_package orbelstatprobe)
set(other_package orbelstatprobe-workbench)
if(TARGET tolmshm)
    set(program_package orbelstatprobe-workbench)
    set(other_package orbelstatprobe)
endif()

# Of the machine that builds, also when a toolchain file sends searches elsewhere.
find_program(GZIP gzip REQUIRED NO_CMAKE_FIND_ROOT_PATH)
# compress(SOURCE NAME): SOURCE, compressed as Debian wants it, at build time as NAME.
function(compress source name)
    add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/${name}
        COMMAND ${GZIP} -9nc ${source} > ${PROJECT_BINARY_DIR}/${name}
        DEPENDS ${source} VERBATIM)
    set_property(GLOBAL APPEND PROPERTY compressed ${PROJECT_BINARY_DIR}/${name})
endfunction()

set(maintainer "The orbelstatprobe developers <developers@orbelstatprobe.example>")
# Whoever builds may set another time for what is built; the change's date is the release's.
set(packaging_time $ENV{SOURCE_DATE_EPOCH})
set(ENV{SOURCE_DATE_EPOCH} ${release_time})
string(TIMESTAMP release_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(ENV{SOURCE_DATE_EPOCH} ${packaging_time})
compress(${PROJECT_SOURCE_DIR}/CHANGELOG.md NEWS.gz)

# install_files(COMPONENT PACKAGE PROGRAMS ... MANUALS ... BASH_COMPLETIONS ... ZSH_COMPLETIONS ...):
# targets, and files in docs; with them the licence and the list of changes, where Debian has them.
function(install_files component package)
    cmake_parse_arguments(PARSE_ARGV 2 arg
        "" "" "PROGRAMS;MANUALS;BASH_COMPLETIONS;ZSH_COMPLETIONS")
    install(TARGETS ${arg_PROGRAMS} COMPONENT ${component})
    foreach(manual IN LISTS arg_MANUALS)
        compress(${PROJECT_SOURCE_DIR}/man/${manual} ${manual}.gz)
        install(FILES ${PROJECT_BINARY_DIR}/${manual}.gz
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${component})
    endforeach()
    foreach(completion IN LISTS arg_BASH_COMPLETIONS)
        cmake_path(GET completion STEM command)
        install(FILES completion/${completion} RENAME ${command}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
            COMPONENT ${component})
    endforeach()
    foreach(completion IN LISTS arg_ZSH_COMPLETIONS)
        install(FILES completion/${completion}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT ${component})
    endforeach()

    set(docs ${component}-docs)
    configure_file(cmake/changelog.in ${docs}/changelog @ONLY)
    configure_file(cmake/lintian-overrides.in ${docs}/lintian-overrides @ONLY)
    compress(${PROJECT_BINARY_DIR}/${docs}/changelog ${docs}/changelog.gz)
    install(FILES LICENSE docs/copyright
        ${PROJECT_BINARY_DIR}/${docs}/changelog.gz ${PROJECT_BINARY_DIR}/NEWS.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
    install(FILES ${PROJECT_BINARY_DIR}/${docs}/lintian-overrides RENAME ${package}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${component})
endfunction()

install_files(program ${program_package}
    PROGRAMS ${programs}
    MANUALS orbelstatprobe.1 orbelstatctl.1
    BASH_COMPLETIONS orbelstatprobe.bash orbelstatctl.bash
    ZSH_COMPLETIONS _orbelstatprobe _orbelstatctl)
set(CPACK_COMPONENTS_ALL program)

if(TARGET tolmshm)
    install(TARGETS tolmshm tolmdata LIBRARY NAMELINK_SKIP COMPONENT standin)
    install_files(standin orbelstatprobe-standin
        PROGRAMS tolmfill
        MANUALS tolmfill.1
        BASH_COMPLETIONS tolmfill.bash
        ZSH_COMPLETIONS _tolmfill)
    list(APPEND CPACK_COMPONENTS_ALL standin)
endif()
get_property(compressed GLOBAL PROPERTY compressed)
add_custom_target(compressed_docs ALL DEPENDS ${compressed})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_CONTACT "${maintainer}")
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_BINARY_DIR}/repack-deb.cmake)
file(CONFIGURE OUTPUT ${CPACK_POST_BUILD_SCRIPTS} @ONLY CONTENT [[
if("$ENV{SOURCE_DATE_EPOCH}" STREQUAL "")
    set(ENV{SOURCE_DATE_EPOCH} @release_time@)
endif()
list(FILTER CPACK_PACKAGE_FILES INCLUDE REGEX "[.]deb$")
execute_process(COMMAND "@PROJECT_SOURCE_DIR@/cmake/repack-deb" ${CPACK_PACKAGE_FILES}
    COMMAND_ERROR_IS_FATAL ANY)
]])
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
endif()
# The oldest C library with all that is called.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= 2.34)")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME ${program_package})
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION admin)
# No Replaces: with one, dpkg would remove the other package unasked.
set(CPACK_DEBIAN_PROGRAM_PACKAGE_CONFLICTS ${other_package})
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "inspect and edit the power-management shared memory
Prints the sections of a server management controller's power-management
shared memory field by field, and edits policies, CPU power limits and thermal
readings in it. orbelstatctl gives scripts the same fields by name.")
if(TARGET tolmshm)
    set(PLATFORM_PACKAGES "orbelstatprobe-standin (= ${PROJECT_VERSION})")
    string(APPEND CPACK_DEBIAN_PROGRAM_DESCRIPTION "
This build runs with the stand-in for the platform's libraries.")
endif()
list(JOIN PLATFORM_PACKAGES ", " platform_packages)
if(platform_packages)
    set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS
        "${CPACK_DEBIAN_PACKAGE_DEPENDS}, ${platform_packages}")
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
