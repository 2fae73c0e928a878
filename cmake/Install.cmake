# cmake --install: the library, its public headers, its resources and a CMake
# package. Consumers need nlohmann_json and nothing else, so headers that show other libraries stay at home.

include(CMakePackageConfigHelpers)

set(headers_dir ${CMAKE_INSTALL_INCLUDEDIR}/SupportSDK)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/SupportSDK)

# One component, so that a development package is not everything that the tree builds.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME SupportSDK)

install(TARGETS supportsdk EXPORT SupportSDKTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY supportsdk DESTINATION ${headers_dir}
        FILES_MATCHING PATTERN "*.h"
        REGEX "/xmpp/(Delayed|Roster|Stanzas|Xmpp)" EXCLUDE PATTERN "Stanza.h" EXCLUDE)
install(DIRECTORY ${PROJECT_BINARY_DIR}/resources/ DESTINATION ${CMAKE_INSTALL_DATADIR}/supportsdk
        PATTERN "CMakeFiles" EXCLUDE PATTERN "*.cmake" EXCLUDE)
install(FILES ${PROJECT_BINARY_DIR}/generated/supportsdk/platform/GeneratedVersion.h
        DESTINATION ${headers_dir}/supportsdk/platform)
install(FILES backends/LinuxPlatform.h DESTINATION ${headers_dir}/backends)
install(FILES backends/asio/AsioMainQueue.h DESTINATION ${headers_dir}/backends/asio)

install(EXPORT SupportSDKTargets NAMESPACE SupportSDK:: DESTINATION ${package_dir})
configure_package_config_file(cmake/SupportSDKConfig.cmake.in
    ${PROJECT_BINARY_DIR}/SupportSDKConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/SupportSDKConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/SupportSDKConfig.cmake
              ${PROJECT_BINARY_DIR}/SupportSDKConfigVersion.cmake
        DESTINATION ${package_dir})
set_target_properties(supportsdk PROPERTIES EXPORT_NAME SupportSDK)
target_compile_features(supportsdk INTERFACE cxx_std_20)

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME Unspecified)
