# supportsdk_test(NAME SOURCES... [LINK LIBRARIES...] [LABELS ...] [TIMEOUT SECONDS])
#
# One test program with GoogleTest's main. It sees inside the library: it links the archive of all subsystems,
# or just what LINK names. Labels: unit (default; runs under asan too), threaded (under tsan too), e2e.

# What the sanitizer presets build: the programs of one label.
add_custom_target(unit_tests)
add_custom_target(threaded_tests)

function(supportsdk_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LINK;LABELS" ${ARGN})
    if(NOT ARG_LINK)
        set(ARG_LINK supportsdk_archive)
    endif()
    if(NOT ARG_LABELS)
        set(ARG_LABELS unit)
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 60)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(${name} PRIVATE ${ARG_LINK} GTest::gmock_main)
    target_compile_definitions(${name} PRIVATE
        SUPPORTSDK_SOURCE_DIR="${PROJECT_SOURCE_DIR}" SUPPORTSDK_BINARY_DIR="${PROJECT_BINARY_DIR}")
    supportsdk_precompile_test(${name})
    foreach(label IN ITEMS unit threaded)
        if(label IN_LIST ARG_LABELS)
            add_dependencies(${label}_tests ${name})
        endif()
    endforeach()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS "${ARG_LABELS}" TIMEOUT ${ARG_TIMEOUT})
endfunction()
