# How everything here is compiled, and the two words with which folders declare themselves.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set_property(GLOBAL PROPERTY USE_FOLDERS ON)
# Sources that are compiled together cannot use one name for two things. The dev and bench builds do without, so each
# source still has to name what it uses.
set(CMAKE_UNITY_BUILD ${LUMENFOLD_UNITE_SOURCES})
set(CMAKE_UNITY_BUILD_BATCH_SIZE 16)
if(LUMENFOLD_SANITIZE)
    # The compiler takes 600 MB for eight of the tests' sources.
    set(CMAKE_UNITY_BUILD_BATCH_SIZE 8)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_C_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
    if(LUMENFOLD_PRECOMPILE_HEADERS)
        # As ccache's manual wants it for precompiled headers.
        list(PREPEND CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros)
    endif()
endif()

add_library(lumenfold_options INTERFACE)
target_include_directories(lumenfold_options INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_definitions(lumenfold_options INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_NO_FOREACH)
target_compile_options(lumenfold_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wimplicit-fallthrough
    # Option structs with designated initialisers are this house's named arguments; what is not named keeps its default.
    -Wno-missing-field-initializers
    # A source that is compiled together with others is not the main file, whose anonymous namespaces the compiler trusts.
    $<$<BOOL:${LUMENFOLD_UNITE_SOURCES}>:-Wno-subobject-linkage>
    $<$<BOOL:${LUMENFOLD_WARNINGS_AS_ERRORS}>:-Werror>)
target_link_options(lumenfold_options INTERFACE -Wl,--as-needed)
# No path of the machine that builds gets into what is built; and a compiler cache knows what another checkout compiled.
target_compile_options(lumenfold_options INTERFACE "-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.")
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # QCoro's headers for Clang 14 want the experimental coroutine namespace; GCC is what ships.
    target_compile_options(lumenfold_options INTERFACE -Wno-unknown-warning-option)
endif()
# Set around folders whose sources are the tests' own. The undefined-behaviour sanitizer looks at the program: in tests it
# would find little, and costs half as much again as all the rest of compiling them.
define_property(TARGET PROPERTY LUMENFOLD_TEST_CODE INITIALIZE_FROM_VARIABLE LUMENFOLD_TEST_CODE)
if(LUMENFOLD_SANITIZE)
    target_compile_options(lumenfold_options INTERFACE
        -fsanitize=address $<$<NOT:$<BOOL:$<TARGET_PROPERTY:LUMENFOLD_TEST_CODE>>>:-fsanitize=undefined>
        -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(lumenfold_options INTERFACE -fsanitize=address,undefined)
    # A hundred programs are linked.
    find_program(LLD_PROGRAM ld.lld)
    if(LLD_PROGRAM)
        target_link_options(lumenfold_options INTERFACE -fuse-ld=lld)
    endif()
endif()

# lumenfold_precompile(<target> PUBLIC|PRIVATE <header>): compiles the header once for all sources of the target, where
# that is wanted; PUBLIC for a target whose result others reuse. The release build does without, so each source still has
# to name what it uses.
function(lumenfold_precompile target scope header)
    if(LUMENFOLD_PRECOMPILE_HEADERS)
        target_precompile_headers(${target} PRIVATE ${header})
        # Without it ccache cannot tell what is in the precompiled header and compiles every time.
        target_compile_options(${target} ${scope} $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
    endif()
endfunction()

# lumenfold_module(<target> [SOURCES file...] [LINKS target...]): a folder's static library. LINKS are the only arrows
# that go out of it.
function(lumenfold_module target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    add_library(${target} STATIC ${arg_SOURCES})
    target_link_libraries(${target} PUBLIC lumenfold_options ${arg_LINKS})
    # A precompiled header costs what half a dozen sources save by it.
    list(LENGTH arg_SOURCES length)
    if(length GREATER 20)
        lumenfold_precompile(${target} PRIVATE "${CMAKE_SOURCE_DIR}/cmake/SharedHeaders.h")
    endif()
endfunction()

# lumenfold_test_properties(<ring> <timeout> <test>...): what all tests have, also those that run a program once more.
# Whoever wants a session bus starts one: none of the user's is met, and where there is none none is launched.
function(lumenfold_test_properties ring timeout)
    set_tests_properties(${ARGN} PROPERTIES
        LABELS ${ring} TIMEOUT ${timeout} ENVIRONMENT DBUS_SESSION_BUS_ADDRESS=disabled:)
endfunction()

# lumenfold_test(<target> RING unit|components|desktop [TIMEOUT seconds] [ALONE] [MOC] [SCALES number...]
# [SOURCES file...] [LINKS target...]): one test program, found by CTest under the label of its ring and built by the
# target `tests_<ring>`. Tests that need a display start their own. ALONE is for what measures time and must not share
# the machine with other tests, MOC for one whose sources have classes with Q_OBJECT. With SCALES the program, whose main
# function is runGuiTests, runs once at each number of device pixels per point: the toolkit reads the scale once, at its
# start.
function(lumenfold_test target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "ALONE;MOC" "RING;TIMEOUT" "SCALES;SOURCES;LINKS")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    add_executable(${target} ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE lumenfold_options lumenfold_test_support GTest::gmock ${arg_LINKS})
    # Few need it, and it costs each a second.
    set_target_properties(${target} PROPERTIES AUTOMOC ${arg_MOC})
    if(LUMENFOLD_PRECOMPILE_HEADERS)
        target_precompile_headers(${target} REUSE_FROM lumenfold_test_support)
    endif()
    set(tests ${target})
    if(arg_SCALES)
        set(tests)
        foreach(scale IN LISTS arg_SCALES)
            add_test(NAME ${target}_at_scale_${scale} COMMAND ${target} --scale=${scale})
            list(APPEND tests ${target}_at_scale_${scale})
        endforeach()
    else()
        add_test(NAME ${target} COMMAND ${target})
    endif()
    lumenfold_test_properties(${arg_RING} ${arg_TIMEOUT} ${tests})
    if(arg_ALONE)
        set_tests_properties(${tests} PROPERTIES RUN_SERIAL TRUE)
    endif()
    if(NOT TARGET tests_${arg_RING})
        add_custom_target(tests_${arg_RING})
    endif()
    add_dependencies(tests_${arg_RING} ${target})
endfunction()
