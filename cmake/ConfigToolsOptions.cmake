# What every target of this project is compiled with. None of it is exported to those who use the library.

set(configtools_warnings_of_both -Wall -Wextra -Wpedantic -Werror
    -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wcast-qual -Wcast-align
    -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wundef -Wunused)
set(configtools_warnings_of_gnu -Wduplicated-cond -Wlogical-op -Wsuggest-override)
set(configtools_warnings_of_clang -Winconsistent-missing-override -Wimplicit-fallthrough -Wextra-semi)

add_library(configtools_warnings INTERFACE)
target_compile_options(configtools_warnings INTERFACE
    ${configtools_warnings_of_both}
    "$<$<CXX_COMPILER_ID:GNU>:${configtools_warnings_of_gnu}>"
    "$<$<CXX_COMPILER_ID:Clang>:${configtools_warnings_of_clang}>")

add_library(configtools_sanitizers INTERFACE)
if(CONFIGTOOLS_SANITIZE)
    set(sanitizers -fsanitize=address -fsanitize=undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    # Tests are most of what is compiled: what they test is instrumented in full, they themselves for addresses.
    set(is_test $<BOOL:$<TARGET_PROPERTY:CONFIGTOOLS_IS_TEST>>)
    target_compile_options(configtools_sanitizers INTERFACE
        "$<${is_test}:-fsanitize=address;-fno-omit-frame-pointer;-g0>"
        "$<$<NOT:${is_test}>:${sanitizers};-g1;-O1>")
    target_link_options(configtools_sanitizers INTERFACE ${sanitizers})
endif()

add_library(configtools_options INTERFACE)
target_link_libraries(configtools_options INTERFACE configtools_warnings configtools_sanitizers)
target_compile_features(configtools_options INTERFACE cxx_std_20)
target_compile_options(configtools_options INTERFACE
    # A null reference is part of the contract of an element's metadata: checks on it must stay in the code.
    -fno-delete-null-pointer-checks
    # A module with unique symbols is never unmapped, so that unloading it would do nothing.
    $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>
    # __FILE__ names a place in the source tree, not on the machine that built it.
    "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
