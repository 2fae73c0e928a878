# supportsdk_fuzz(NAME SOURCES... LINK SUBSYSTEMS...)
#
# One libFuzzer program, fuzz_NAME, with its seeds in corpus/NAME. It takes what it uses of the subsystems that
# LINK names. The target fuzz_targets builds all of them.

add_custom_target(fuzz_targets)

function(supportsdk_fuzz name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    # An archive, so that what a subsystem needs of the floors above it stays out.
    foreach(subsystem ${ARG_LINK})
        if(NOT TARGET fuzz_archive_${subsystem})
            add_library(fuzz_archive_${subsystem} STATIC EXCLUDE_FROM_ALL $<TARGET_OBJECTS:${subsystem}>)
            set_target_properties(fuzz_archive_${subsystem} PROPERTIES LINKER_LANGUAGE CXX)
        endif()
    endforeach()
    list(TRANSFORM ARG_LINK PREPEND fuzz_archive_ OUTPUT_VARIABLE archives)
    add_executable(fuzz_${name} ${ARG_SOURCES})
    target_include_directories(fuzz_${name} PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(fuzz_${name} PRIVATE ${archives} nlohmann_json::nlohmann_json
                          PkgConfig::PUGIXML OpenSSL::Crypto)
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
    add_dependencies(fuzz_targets fuzz_${name})
endfunction()
