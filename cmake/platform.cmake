# The platform's two libraries. For a controller, name the real ones; without that the stand-in of
# this project takes their place.
#
# What is named is tried here, so that a mistake ends in a sentence about the variable and not in a
# compiler's or linker's complaint about the program.

# A library is a path or a bare name. -D turns a path into an absolute one, but only in a variable
# of that type.
foreach(library PLATFORM_SHM_LIBRARY PLATFORM_DATA_LIBRARY)
    set(type STRING)
    if(${library} MATCHES "/")
        set(type FILEPATH)
    endif()
    set(${library} "" CACHE ${type} "The platform's library: a path, or a name for the linker")
endforeach()
set(PLATFORM_SHM_HEADER "tolm_shm.h" CACHE STRING "Header of the shared-memory library")
set(PLATFORM_DATA_HEADER "tolm_data.h" CACHE STRING "Header of the shared-data library")
set(PLATFORM_INCLUDE_DIR "" CACHE PATH "Directory of the two headers")
set(PLATFORM_PACKAGES "" CACHE STRING
    "Debian packages of the two libraries, as in a Depends field, for the program's package")

# try_platform(COMPLAINT CODE LIBRARIES): configuring fails with the complaint, and the reason that
# compiler or linker give, unless the code compiles as src/shm/shm.cpp does and links.
function(try_platform complaint code libraries)
    set(source "#include <cmath>\n#include <memory>\n${code}\n")
    try_compile(works SOURCE_FROM_VAR platform.cpp source NO_CACHE OUTPUT_VARIABLE output
        LINK_OPTIONS -Wl,--as-needed LINK_LIBRARIES ${libraries} CXX_STANDARD 20)
    if(NOT works)
        string(REGEX MATCH "(error: |error adding |cannot find |undefined )[^\n]*" reason "${output}")
        message(FATAL_ERROR "${complaint}: ${reason}")
    endif()
endfunction()

add_library(orbel_platform INTERFACE IMPORTED)
target_compile_definitions(orbel_platform INTERFACE
    PLATFORM_SHM_HEADER="${PLATFORM_SHM_HEADER}" PLATFORM_DATA_HEADER="${PLATFORM_DATA_HEADER}")
if(NOT PLATFORM_SHM_LIBRARY AND NOT PLATFORM_DATA_LIBRARY AND NOT PLATFORM_INCLUDE_DIR)
    add_subdirectory(standin)
    target_link_libraries(orbel_platform INTERFACE tolmshm tolmdata)
    return()
endif()

foreach(directory IN LISTS PLATFORM_INCLUDE_DIR)
    if(NOT IS_DIRECTORY ${directory})
        message(FATAL_ERROR "PLATFORM_INCLUDE_DIR: there is no directory ${directory}")
    endif()
endforeach()
target_include_directories(orbel_platform SYSTEM INTERFACE ${PLATFORM_INCLUDE_DIR})
foreach(part SHM DATA)
    set(header ${PLATFORM_${part}_HEADER})
    set(library ${PLATFORM_${part}_LIBRARY})
    if(NOT library)
        message(FATAL_ERROR
            "PLATFORM_${part}_LIBRARY: name both of the platform's libraries, or neither of them and \
no PLATFORM_INCLUDE_DIR for the stand-in")
    endif()
    if(library MATCHES "/" AND NOT EXISTS ${library})
        message(FATAL_ERROR "PLATFORM_${part}_LIBRARY: there is no file ${library}")
    endif()
    try_platform("PLATFORM_${part}_HEADER: ${header} cannot be included"
        "extern \"C\" {\n#include \"${header}\"\n}\nint main() {}" orbel_platform)
    try_platform("PLATFORM_${part}_LIBRARY: ${library} cannot be linked with"
        "int main() {}" ${library})
endforeach()

target_link_libraries(orbel_platform INTERFACE ${PLATFORM_SHM_LIBRARY} ${PLATFORM_DATA_LIBRARY})
# try_function(PART NAME CALL): the function, called as the program does.
function(try_function part name call)
    try_platform(
        "${name} cannot be called with PLATFORM_${part}_HEADER and PLATFORM_${part}_LIBRARY"
        "extern \"C\" {\n#include PLATFORM_${part}_HEADER\n}
int main() {\n    [[maybe_unused]] uint8_t byte[1]{};\n    ${call};\n}" orbel_platform)
endfunction()
try_function(SHM Tolm_shm_memread "return Tolm_shm_memread(6, byte, 0, 1)")
try_function(SHM Tolm_shm_memwrite "Tolm_shm_memwrite(6, byte, 0, 1)")
try_function(DATA policyTypeToString "const char *name = policyTypeToString(0); return name[0]")
