# Runs at installation: creates the directory that the variable "directory" names, and its missing
# parents, with a mode that lets everybody enter them.
cmake_path(ABSOLUTE_PATH directory BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}")
set(directory "$ENV{DESTDIR}${directory}")
cmake_path(ABSOLUTE_PATH directory) # DESTDIR may be relative to the working directory
set(missing "")
while(NOT EXISTS "${directory}")
    list(APPEND missing "${directory}")
    cmake_path(GET directory PARENT_PATH directory)
endwhile()
if(missing)
    file(MAKE_DIRECTORY ${missing})
    file(CHMOD ${missing} DIRECTORY_PERMISSIONS
        OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
endif()
