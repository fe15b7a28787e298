# Installs into an image or for the Debian packages: the programs, each with its manual page and its
# completions, and the licence. With the stand-in also its libraries, in a directory that only the
# programs linked with them search: no other program ever gets demo data.

# install_into(COMPONENT DIRECTORY ARGUMENT...): install(ARGUMENT... DESTINATION DIRECTORY). The
# directories that CMake creates get their mode from the umask; these are open to everybody.
function(install_into component directory)
    install(CODE "set(directory \"${directory}\")" COMPONENT ${component})
    install(SCRIPT cmake/make_directory.cmake COMPONENT ${component})
    install(${ARGN} DESTINATION ${directory} COMPONENT ${component})
endfunction()

# install_program(COMPONENT NAME TARGET): installs the program that TARGET builds with its manual page
# and its completions.
function(install_program component name target)
    install_into(${component} ${CMAKE_INSTALL_BINDIR} TARGETS ${target})
    install_into(${component} ${CMAKE_INSTALL_MANDIR}/man1 FILES man/${name}.1)
    install_into(${component} ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        FILES completion/${name}.bash RENAME ${name})
    install_into(${component} ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
        FILES completion/_${name})
endfunction()

set(run_path "")
if(TARGET tolmshm)
    install_program(standin tolmfill tolmfill)
    if(BUILD_SHARED_LIBS)
        install_into(standin ${CMAKE_INSTALL_LIBDIR}/orbelstatprobe-standin
            TARGETS tolmshm tolmdata LIBRARY NAMELINK_SKIP)
        # Relative to the programs, so that an installation can be moved.
        file(RELATIVE_PATH run_path ${CMAKE_INSTALL_FULL_BINDIR}
            ${CMAKE_INSTALL_FULL_LIBDIR}/orbelstatprobe-standin)
        string(PREPEND run_path $ORIGIN/)
    endif()
endif()

# Links each program a second time, with this run path or none, and installs that copy unmodified.
# The program in the build directory keeps its own run path. If CMake had to rewrite it on install, it
# would append a colon to it at build time, and a trailing colon means the working directory.
foreach(program IN LISTS programs)
    get_target_property(sources ${program} SOURCES)
    get_target_property(directory ${program} SOURCE_DIR)
    list(TRANSFORM sources PREPEND ${directory}/)
    add_executable(${program}-installed ${sources})
    target_link_libraries(${program}-installed
        PRIVATE $<TARGET_PROPERTY:${program},LINK_LIBRARIES>)
    set_target_properties(${program}-installed PROPERTIES
        OUTPUT_NAME ${program}
        RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/installed
        BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "${run_path}")
    add_dependencies(${program} ${program}-installed)
    install_program(program ${program} ${program}-installed)
endforeach()
install_into(program ${CMAKE_INSTALL_DOCDIR} FILES LICENSE)
