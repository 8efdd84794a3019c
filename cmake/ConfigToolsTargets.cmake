# How the targets of this project are declared.

# configtools_add_objects(<name> SOURCES <file>... [LIBRARIES <library>...])
# One floor of the library. What is compiled here becomes part of libconfigtools, so it needs the shared library's
# own settings: a property set on the shared library alone doesn't reach its object libraries.
function(configtools_add_objects name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    add_library(${name} OBJECT ${arg_SOURCES})
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
    set_property(GLOBAL APPEND PROPERTY CONFIGTOOLS_FLOORS ${name})   # what the library is linked from
endfunction()

# configtools_add_program(<name> SOURCES <file>... [LIBRARIES <library>...])
# A program that uses the library as any outsider would.
function(configtools_add_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ConfigTools::configtools ${arg_LIBRARIES} configtools_options)
    set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
endfunction()

# configtools_add_plugin(<name> SOURCES <file>... [LIBRARIES <library>...])
# A plug-in module that is installed with the tool.
function(configtools_add_plugin name)
    configtools_add_module(${name} ${ARGN})
    file(RELATIVE_PATH library_dir "/${CONFIGTOOLS_PLUGIN_DIR}" "/${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(${name} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin"   # beside the tool, which looks there first
        INSTALL_RPATH "$ORIGIN/${library_dir}")
    install(TARGETS ${name} LIBRARY DESTINATION "${CONFIGTOOLS_PLUGIN_DIR}")
endfunction()

# configtools_add_kit(<folder> SOURCES <file>... [LIBRARIES <library>...] [USES <library>...])
# The static library kit_<folder>: what plug-ins and programs share. It is linked into modules, so it is built as they
# are. Its headers use LIBRARIES, its sources USES too.
function(configtools_add_kit folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES;USES")
    set(name kit_${folder})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(${name} PUBLIC ConfigTools::configtools ${arg_LIBRARIES} PRIVATE ${arg_USES} configtools_options)
    set_target_properties(${name} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
endfunction()
