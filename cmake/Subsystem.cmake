# supportsdk_subsystem(NAME SOURCES... [LINK LIBRARIES...])
#
# One floor or one backend: an object library with the shared precompiled header. All of them together make
# the kit's library (Library.cmake).

function(supportsdk_subsystem name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} OBJECT ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/generated)
    target_compile_definitions(${name} PRIVATE SUPPORTSDK_BUILDING)
    target_link_libraries(${name} PUBLIC nlohmann_json::nlohmann_json PkgConfig::PUGIXML
                          Threads::Threads ${ARG_LINK})
    supportsdk_precompile(${name})
    set_property(GLOBAL APPEND PROPERTY SUPPORTSDK_SUBSYSTEMS ${name})
endfunction()
