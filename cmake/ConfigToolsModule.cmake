# Installed with the package, for those who write plug-ins.
#
#   configtools_add_module(<name> SOURCES <file>... [LIBRARIES <library>...])
#
# makes the plug-in module <name>.zpm. Its symbols are hidden but for the entry points of <configtools/plugin.h>,
# and none of them is unique, so that the module leaves the process when it is unloaded.

function(configtools_add_module name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    add_library(${name} MODULE ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ConfigTools::configtools ${arg_LIBRARIES})
    if(TARGET configtools_options)
        target_link_libraries(${name} PRIVATE configtools_options)
    endif()
    target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
    set_target_properties(${name} PROPERTIES
        PREFIX ""
        SUFFIX ".zpm"
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    set_property(GLOBAL APPEND PROPERTY CONFIGTOOLS_MODULES ${name})   # for tests of all modules of a build
endfunction()
