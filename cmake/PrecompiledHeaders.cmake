# Two precompiled headers for the whole project, each parsed once: the library's, and that with GoogleTest.
# supportsdk_precompile(TARGET) and supportsdk_precompile_test(TARGET) use them.

# A precompiled header fits only code compiled alike, so programs are compiled as libraries are.
set(CMAKE_CXX_COMPILE_OPTIONS_PIE ${CMAKE_CXX_COMPILE_OPTIONS_PIC})

set(empty_source ${PROJECT_BINARY_DIR}/generated/precompiled.cpp)
file(GENERATE OUTPUT ${empty_source} CONTENT "")

add_library(supportsdk_pch OBJECT ${empty_source})
target_link_libraries(supportsdk_pch PRIVATE nlohmann_json::nlohmann_json PkgConfig::PUGIXML Threads::Threads)
target_precompile_headers(supportsdk_pch PRIVATE ${PROJECT_SOURCE_DIR}/cmake/Precompiled.h)

function(supportsdk_precompile target)
    target_precompile_headers(${target} REUSE_FROM supportsdk_pch)
endfunction()

if(SUPPORTSDK_TESTS)
    find_package(GTest REQUIRED)
    add_library(supportsdk_test_pch OBJECT ${empty_source})
    target_link_libraries(supportsdk_test_pch PRIVATE nlohmann_json::nlohmann_json PkgConfig::PUGIXML
                          Threads::Threads GTest::gmock)
    target_precompile_headers(supportsdk_test_pch PRIVATE
        ${PROJECT_SOURCE_DIR}/cmake/Precompiled.h <gtest/gtest.h> <gmock/gmock.h>)
endif()

function(supportsdk_precompile_test target)
    target_precompile_headers(${target} REUSE_FROM supportsdk_test_pch)
endfunction()
