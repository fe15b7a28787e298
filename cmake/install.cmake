# What is installed, into an image or for the Debian packages: programs, each with its manual page and
# its completion, and the licence. With the stand-in also its libraries, where nothing but the
# programs linked with them looks: no other program ever gets demo data.

# place(COMPONENT DIRECTORY WHAT...): install(WHAT...) there. CMake's directories have the mode that
# the umask leaves; these can be entered by everybody.
function(place component directory)
    install(CODE "set(directory \"${directory}\")" COMPONENT ${component})
    install(SCRIPT cmake/make_directory.cmake COMPONENT ${component})
    install(${ARGN} DESTINATION ${directory} COMPONENT ${component})
endfunction()

# install_program(COMPONENT NAME RUN-PATH): the program is linked again for it, with that run path
# or with none. So it is installed as it was built, and the one in the build directory keeps its own.
function(install_program component name run_path)
    add_executable(${name}-installed $<TARGET_OBJECTS:${name}>)
    target_link_libraries(${name}-installed PRIVATE $<TARGET_PROPERTY:${name},LINK_LIBRARIES>)
    set_target_properties(${name}-installed PROPERTIES
        OUTPUT_NAME ${name}
        RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/installed
        BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "${run_path}")
    place(${component} ${CMAKE_INSTALL_BINDIR} TARGETS ${name}-installed)
    place(${component} ${CMAKE_INSTALL_MANDIR}/man1 FILES man/${name}.1)
    place(${component} ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        FILES completion/${name}.bash RENAME ${name})
    place(${component} ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions FILES completion/_${name})
endfunction()

set(run_path "")
if(TARGET tolmshm)
    set(run_path ${CMAKE_INSTALL_FULL_LIBDIR}/orbelstatprobe-standin)
    place(standin ${CMAKE_INSTALL_LIBDIR}/orbelstatprobe-standin
        TARGETS tolmshm tolmdata LIBRARY NAMELINK_SKIP)
    install_program(standin tolmfill "")
endif()
foreach(program IN LISTS programs)
    install_program(program ${program} "${run_path}")
endforeach()
place(program ${CMAKE_INSTALL_DOCDIR} FILES LICENSE)
