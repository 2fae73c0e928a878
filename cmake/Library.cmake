# The library: every subsystem in one shared object, and the same as an archive for tests that look inside.

get_property(subsystems GLOBAL PROPERTY SUPPORTSDK_SUBSYSTEMS)

add_library(supportsdk SHARED ${PROJECT_SOURCE_DIR}/supportsdk/platform/Version.cpp)
add_library(SupportSDK::SupportSDK ALIAS supportsdk)
target_link_libraries(supportsdk PUBLIC nlohmann_json::nlohmann_json PRIVATE ${subsystems})
target_include_directories(supportsdk INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/generated>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/SupportSDK>)
set_target_properties(supportsdk PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})

add_library(supportsdk_archive STATIC EXCLUDE_FROM_ALL
            ${PROJECT_SOURCE_DIR}/supportsdk/platform/Version.cpp)
target_link_libraries(supportsdk_archive PUBLIC ${subsystems})
