# The platform's two libraries. Set the variables below to build for a controller; without them the
# programs are linked with this project's stand-in.
#
# The settings are tested here by compiling and linking the program's own wrapper files, so that a
# mistake is reported as an error in the variable and not in the program's sources.

# A library is a path or a bare name. CMake makes a path from the command line absolute, but only if
# the variable has a path's type.
foreach(library PLATFORM_SHM_LIBRARY PLATFORM_DATA_LIBRARY)
    set(type STRING)
    if(${library} MATCHES "/")
        set(type FILEPATH)
    endif()
    set(${library} "" CACHE ${type} "The platform's library: a path, or a name for the linker")
endforeach()
set(PLATFORM_EXTRA_LIBRARIES "" CACHE STRING
    "Libraries that these two depend on: a list of absolute paths or names for the linker")
set(PLATFORM_SHM_HEADER "tolm_shm.h" CACHE STRING "Header of the shared-memory library")
set(PLATFORM_DATA_HEADER "tolm_data.h" CACHE STRING "Header of the shared-data library")
set(PLATFORM_INCLUDE_DIR "" CACHE PATH "Directory of the two headers")

add_library(orbel_platform INTERFACE IMPORTED)
# In angle brackets, so that a header of this project with the same name is not included instead.
target_compile_definitions(orbel_platform INTERFACE
    PLATFORM_SHM_HEADER=<${PLATFORM_SHM_HEADER}> PLATFORM_DATA_HEADER=<${PLATFORM_DATA_HEADER}>)
# C would accept a function that no header declares, and assume its type.
target_compile_options(orbel_platform INTERFACE
    $<$<COMPILE_LANGUAGE:C>:-Werror=implicit-function-declaration>)
set(libraries ${PLATFORM_SHM_LIBRARY} ${PLATFORM_DATA_LIBRARY} ${PLATFORM_EXTRA_LIBRARIES})
set(headers ${PLATFORM_INCLUDE_DIR} ${PLATFORM_SHM_HEADER} ${PLATFORM_DATA_HEADER})
if("${libraries}" STREQUAL "" AND "${headers}" STREQUAL "tolm_shm.h;tolm_data.h")
    add_subdirectory(standin)
    target_link_libraries(orbel_platform INTERFACE tolmshm tolmdata)
    return()
endif()

# fail(VARIABLE SENTENCE [OUTPUT]): ends configuring with the variable, its value and what is wrong
# with it, and below that the output of the compiler. CMake does not wrap lines that are indented.
function(fail variable sentence)
    string(STRIP "${ARGN}" output)
    string(REPLACE "\n" "\n    " output "\n${output}")
    string(STRIP "${variable}=${${variable}}: ${sentence}${output}" message)
    message(FATAL_ERROR "${message}")
endfunction()

foreach(directory IN LISTS PLATFORM_INCLUDE_DIR)
    if(NOT IS_DIRECTORY "${directory}")
        fail(PLATFORM_INCLUDE_DIR "there is no directory ${directory}")
    endif()
endforeach()
foreach(variable PLATFORM_SHM_LIBRARY PLATFORM_DATA_LIBRARY)
    if(NOT ${variable})
        fail(${variable} "set both PLATFORM_SHM_LIBRARY and PLATFORM_DATA_LIBRARY, or unset all \
PLATFORM_ variables to build with the stand-in")
    endif()
endforeach()
foreach(variable PLATFORM_SHM_LIBRARY PLATFORM_DATA_LIBRARY PLATFORM_EXTRA_LIBRARIES)
    foreach(library IN LISTS ${variable})
        if(library MATCHES "^[^-].*/" AND NOT IS_ABSOLUTE "${library}")
            fail(${variable} "${library} is not an absolute path")
        elseif(IS_ABSOLUTE "${library}" AND (NOT EXISTS "${library}" OR IS_DIRECTORY "${library}"))
            fail(${variable} "there is no file ${library}")
        endif()
    endforeach()
endforeach()

target_include_directories(orbel_platform SYSTEM INTERFACE ${PLATFORM_INCLUDE_DIR})
# A native compiler also looks for libraries in LIBRARY_PATH, which may be unset when the programs
# are built. So its directories are kept, the latest first. (CMake takes them for directories that
# every linker searches: target_link_directories would leave them out. Link options would come before
# the directories of the libraries that the settings name.)
if(DEFINED ENV{LIBRARY_PATH} AND NOT CMAKE_CROSSCOMPILING)
    cmake_path(CONVERT "$ENV{LIBRARY_PATH}" TO_CMAKE_PATH_LIST directories)
    list(APPEND directories ${ORBEL_LIBRARY_PATH})
    list(REMOVE_ITEM directories "")
    list(REMOVE_DUPLICATES directories)
    set(ORBEL_LIBRARY_PATH "${directories}" CACHE INTERNAL "Directories of LIBRARY_PATH")
endif()
list(TRANSFORM ORBEL_LIBRARY_PATH REPLACE ".+" "-L'\\0'" OUTPUT_VARIABLE directories)
target_link_libraries(orbel_platform INTERFACE ${directories})
# The platform's two libraries need the extra libraries. --no-as-needed keeps them linked even if the
# program does not call them directly.
set(extra_libraries
    -Wl,--push-state,--no-as-needed ${PLATFORM_EXTRA_LIBRARIES} -Wl,--pop-state)

# check_platform(TYPE SOURCES LINK-ITEM...): compiles the sources with the program's own flags and, if
# TYPE is EXECUTABLE, links them. Sets works and output in the caller.
function(check_platform type sources)
    set(CMAKE_TRY_COMPILE_TARGET_TYPE ${type})
    set(CMAKE_TRY_COMPILE_CONFIGURATION ${CMAKE_BUILD_TYPE})
    try_compile(works SOURCES ${sources} NO_CACHE OUTPUT_VARIABLE output
        CMAKE_FLAGS "-DINCLUDE_DIRECTORIES=${PROJECT_SOURCE_DIR}/src"
        LINK_LIBRARIES orbel_platform ${ARGN})
    set(works "${works}" PARENT_SCOPE)
    set(output "${output}" PARENT_SCOPE)
endfunction()

set(wrapper_SHM ${PROJECT_SOURCE_DIR}/src/shm/platform_shm.c)
set(wrapper_DATA ${PROJECT_SOURCE_DIR}/src/shm/platform_data.c)
set(main ${PROJECT_SOURCE_DIR}/cmake/platform_check.cpp)

# Each wrapper has to link with its own library. Here the linker ignores undefined symbols in shared
# libraries. It still reports those in static libraries, unless the extra libraries define them. If a
# wrapper does not link, its header and each library are checked alone: can the header be compiled, and
# the library be read?
foreach(part SHM DATA)
    check_platform(EXECUTABLE "${main};${wrapper_${part}}"
        -Wl,--unresolved-symbols=ignore-in-shared-libs ${PLATFORM_${part}_LIBRARY} ${extra_libraries})
    if(works)
        continue()
    endif()
    set(link_output "${output}")

    check_platform(STATIC_LIBRARY ${wrapper_${part}})
    if(NOT works)
        set(sentence "src/shm cannot be compiled with this header")
        unset(header)
        find_file(header ${PLATFORM_${part}_HEADER} PATHS ${PLATFORM_INCLUDE_DIR}
            NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH NO_CACHE)
        if(NOT header)
            string(APPEND sentence ", which is not in PLATFORM_INCLUDE_DIR=${PLATFORM_INCLUDE_DIR}")
        endif()
        fail(PLATFORM_${part}_HEADER "${sentence}" "${output}")
    endif()
    check_platform(EXECUTABLE "${main};${wrapper_${part}}"
        -Wl,--unresolved-symbols=ignore-all ${PLATFORM_${part}_LIBRARY})
    if(NOT works)
        fail(PLATFORM_${part}_LIBRARY "the linker cannot use this library" "${output}")
    endif()
    check_platform(EXECUTABLE ${main} -Wl,--unresolved-symbols=ignore-all ${extra_libraries})
    if(NOT works)
        fail(PLATFORM_EXTRA_LIBRARIES "the linker cannot use one of these libraries" "${output}")
    endif()

    set(sentence "this library lacks a function that src/shm calls")
    if(NOT PLATFORM_${part}_LIBRARY MATCHES "/[^/;]*\\.so[.0-9]*$")
        string(APPEND sentence
            ", or PLATFORM_EXTRA_LIBRARIES=${PLATFORM_EXTRA_LIBRARIES} lacks one that it calls")
    endif()
    fail(PLATFORM_${part}_LIBRARY "${sentence}" "${link_output}")
endforeach()

# Now the linker ignores nothing, as when it links the program.
target_link_libraries(orbel_platform INTERFACE
    ${PLATFORM_SHM_LIBRARY} ${PLATFORM_DATA_LIBRARY} ${extra_libraries})
check_platform(EXECUTABLE "${main};${wrapper_SHM};${wrapper_DATA}")
if(NOT works)
    fail(PLATFORM_EXTRA_LIBRARIES
        "the platform's libraries cannot be linked; one that they need may be missing here"
        "${output}")
endif()
