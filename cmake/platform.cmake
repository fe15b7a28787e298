# The platform's two libraries. For a controller, name the real ones; without that the stand-in of
# this project takes their place.
#
# What is named is tried here, with the very files that the program calls it from, so that a mistake
# ends in a sentence about the variable and not in a complaint about the program.

# A library is a path or a bare name. -D turns a path into an absolute one, but only in a variable
# of that type.
foreach(library PLATFORM_SHM_LIBRARY PLATFORM_DATA_LIBRARY)
    set(type STRING)
    if(${library} MATCHES "/")
        set(type FILEPATH)
    endif()
    set(${library} "" CACHE ${type} "The platform's library: a path, or a name for the linker")
endforeach()
set(PLATFORM_EXTRA_LIBRARIES "" CACHE STRING
    "Libraries that those two need in their turn: a list of paths, or of names for the linker")
set(PLATFORM_SHM_HEADER "tolm_shm.h" CACHE STRING "Header of the shared-memory library")
set(PLATFORM_DATA_HEADER "tolm_data.h" CACHE STRING "Header of the shared-data library")
set(PLATFORM_INCLUDE_DIR "" CACHE PATH "Directory of the two headers")

add_library(orbel_platform INTERFACE IMPORTED)
# In angle brackets, so that no header of ours is taken for one of the same name.
target_compile_definitions(orbel_platform INTERFACE
    PLATFORM_SHM_HEADER=<${PLATFORM_SHM_HEADER}> PLATFORM_DATA_HEADER=<${PLATFORM_DATA_HEADER}>)
# C would take a function that no header declares, and guess its type.
target_compile_options(orbel_platform INTERFACE
    $<$<COMPILE_LANGUAGE:C>:-Werror=implicit-function-declaration>)
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
foreach(part SHM DATA)
    if(NOT PLATFORM_${part}_LIBRARY)
        message(FATAL_ERROR
            "PLATFORM_${part}_LIBRARY: name both of the platform's libraries, or neither of them and \
no PLATFORM_INCLUDE_DIR for the stand-in")
    endif()
    foreach(library IN LISTS PLATFORM_${part}_LIBRARY)
        if(library MATCHES "/" AND NOT EXISTS ${library})
            message(FATAL_ERROR "PLATFORM_${part}_LIBRARY: there is no file ${library}")
        endif()
    endforeach()
endforeach()
target_include_directories(orbel_platform SYSTEM INTERFACE ${PLATFORM_INCLUDE_DIR})
# The extra libraries are for the other two, so they are needed even if the program calls none of
# them.
target_link_libraries(orbel_platform INTERFACE ${PLATFORM_SHM_LIBRARY} ${PLATFORM_DATA_LIBRARY}
    -Wl,--push-state,--no-as-needed ${PLATFORM_EXTRA_LIBRARIES} -Wl,--pop-state)

# check_platform(REASON TYPE SOURCE...): compiles sources as the program's are, and links them if the
# type is EXECUTABLE. REASON is empty, or why that fails.
function(check_platform reason type)
    set(CMAKE_TRY_COMPILE_TARGET_TYPE ${type})
    try_compile(works SOURCES ${ARGN} NO_CACHE OUTPUT_VARIABLE output
        CMAKE_FLAGS "-DINCLUDE_DIRECTORIES=${PROJECT_SOURCE_DIR}/src"
        LINK_LIBRARIES orbel_platform)
    set(complaint "")
    if(NOT works)
        set(complaint "the compiler fails")
        if(output MATCHES "((error: |error adding |cannot find |undefined |needed by )[^\n]*)")
            set(complaint "${CMAKE_MATCH_1}")
        endif()
    endif()
    set(${reason} "${complaint}" PARENT_SCOPE)
endfunction()

set(source_SHM ${PROJECT_SOURCE_DIR}/src/shm/platform_shm.c)
set(source_DATA ${PROJECT_SOURCE_DIR}/src/shm/platform_data.c)
foreach(part SHM DATA)
    check_platform(reason STATIC_LIBRARY ${source_${part}})
    if(reason)
        message(FATAL_ERROR
            "PLATFORM_${part}_HEADER: ${PLATFORM_${part}_HEADER} cannot be used: ${reason}")
    endif()
endforeach()
check_platform(reason EXECUTABLE
    ${source_SHM} ${source_DATA} ${PROJECT_SOURCE_DIR}/cmake/platform_trial.cpp)
if(reason)
    # Which library it is about: the one that the linker names, or that lacks the function, or one
    # that has not been named yet.
    set(wrong "PLATFORM_EXTRA_LIBRARIES: a library is missing")
    foreach(part IN ITEMS EXTRA_LIBRARIES SHM_LIBRARY DATA_LIBRARY)
        foreach(library IN LISTS PLATFORM_${part})
            string(FIND "${reason}" "${library}" position)
            if(NOT position EQUAL -1 AND NOT reason MATCHES "^(undefined|needed by)")
                set(wrong "PLATFORM_${part}: ${library} cannot be linked with")
            endif()
        endforeach()
    endforeach()
    if(reason MATCHES "undefined reference to .Tolm_shm_mem")
        set(wrong "PLATFORM_SHM_LIBRARY: ${PLATFORM_SHM_LIBRARY} lacks a function")
    elseif(reason MATCHES "undefined reference to .policyTypeToString")
        set(wrong "PLATFORM_DATA_LIBRARY: ${PLATFORM_DATA_LIBRARY} lacks a function")
    endif()
    message(FATAL_ERROR "${wrong}: ${reason}")
endif()
