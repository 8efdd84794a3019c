# How the targets of this project are declared.

# configtools_present(<variable> <file>...): those of the files that exist; the others are told.
function(configtools_present variable)
    set(present "")
    foreach(file IN LISTS ARGN)
        cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE OUTPUT_VARIABLE path)
        file(GLOB found CONFIGURE_DEPENDS "${path}")
        if(found)
            list(APPEND present "${file}")
        else()
            message(STATUS "not there yet: ${path}")
        endif()
    endforeach()
    if(NOT present)
        file(TOUCH "${PROJECT_BINARY_DIR}/nothing_yet.cpp")
        set(present "${PROJECT_BINARY_DIR}/nothing_yet.cpp")
    endif()
    set(${variable} "${present}" PARENT_SCOPE)
endfunction()

# configtools_add_objects(<name> SOURCES <file>... [LIBRARIES <library>...])
# One floor of the library. What is compiled here becomes part of libconfigtools, so it needs the shared library's
# own settings: a property set on the shared library alone doesn't reach its object libraries.
function(configtools_add_objects name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    configtools_present(sources ${arg_SOURCES})
    add_library(${name} OBJECT ${sources})
    target_include_directories(${name} PUBLIC
        "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/util"
        "${PROJECT_SOURCE_DIR}/tools/include" "${PROJECT_BINARY_DIR}/include")
    target_compile_definitions(${name} PRIVATE configtools_EXPORTS)
    target_link_libraries(${name} PUBLIC ${arg_LIBRARIES} PRIVATE configtools_options)
    # Nobody interposes the library's own functions, so calls within it are direct.
    target_compile_options(${name} PRIVATE -fno-semantic-interposition)
    set_target_properties(${name} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden   # VISIBILITY_INLINES_HIDDEN would drop inline members of exported classes
        POSITION_INDEPENDENT_CODE ON)
endfunction()

# configtools_add_program(<name> SOURCES <file>... [LIBRARIES <library>...])
# A program that uses the library as any outsider would.
function(configtools_add_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    configtools_present(sources ${arg_SOURCES})
    add_executable(${name} ${sources})
    if(sources MATCHES "nothing_yet")
        set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
    endif()
    target_link_libraries(${name} PRIVATE ConfigTools::configtools ${arg_LIBRARIES} configtools_options)
    set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
endfunction()
