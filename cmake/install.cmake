# What is installed, into an image or for the Debian packages: programs, each with its manual page and
# its completion, and the licence. With the stand-in also its libraries, where nothing but the
# programs linked with them looks: no other program ever gets demo data.

function(install_program name component)
    install(TARGETS ${name} COMPONENT ${component})
    install(FILES man/${name}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${component})
    install(FILES completion/${name}.bash RENAME ${name}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT ${component})
    install(FILES completion/_${name}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT ${component})
endfunction()

foreach(program IN LISTS programs)
    install_program(${program} program)
endforeach()
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT program)

if(TARGET tolmshm)
    install_program(tolmfill standin)
    install(TARGETS tolmshm tolmdata LIBRARY NAMELINK_SKIP
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/orbelstatprobe-standin COMPONENT standin)
    set_target_properties(${programs} PROPERTIES
        INSTALL_RPATH ${CMAKE_INSTALL_FULL_LIBDIR}/orbelstatprobe-standin)
endif()
