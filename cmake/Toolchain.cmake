# Language level, warnings, sanitizers, ccache: the same for every target of the project.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
                    -Wconversion -Wno-sign-conversion -Werror)
# GLib asks for it; then everything has it, or the precompiled headers would not fit everything.
add_compile_options(-pthread)
add_compile_definitions(_FILE_OFFSET_BITS=64)

# A guest in an embedded host's memory: small before fast, where the difference cannot be measured. With -O2
# the library has nearly twice the bytes and is no faster.
set(CMAKE_CXX_FLAGS_RELEASE "-Os -DNDEBUG -ffunction-sections -fdata-sections")
add_link_options($<$<CONFIG:Release>:-Wl,--gc-sections>)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Debug information of the standard library's templates dominates link time on two cores.
    add_compile_options($<$<CONFIG:Debug>:-g1>)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # Optimised, GCC 12 sees copies of negative length in plain std::string concatenation (its bug 105651).
    add_compile_options(-Wno-restrict -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
    # Optimised, it also takes a moved std::optional of a text for one without a value but in use.
    add_compile_options($<$<CONFIG:Release>:-Wno-maybe-uninitialized>)
    if(SUPPORTSDK_SANITIZE)
        add_compile_options(-Wno-maybe-uninitialized)
    endif()
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    add_compile_options(-Wthread-safety)
endif()

if(SUPPORTSDK_SANITIZE)
    add_compile_options(-fsanitize=${SUPPORTSDK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    # The thread sanitizer needs the speed; with the others, compiling costs more than running.
    if(SUPPORTSDK_SANITIZE STREQUAL "thread")
        add_compile_options(-O1)
    endif()
    add_link_options(-fsanitize=${SUPPORTSDK_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND SUPPORTSDK_SANITIZE STREQUAL "thread")
        add_compile_options(-Wno-tsan)
    endif()
endif()
if(SUPPORTSDK_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

add_link_options(-fuse-ld=lld)

find_program(SUPPORTSDK_CCACHE ccache)
if(SUPPORTSDK_CCACHE)
    # Precompiled headers need the relaxed checks; the base folder lets two checkouts share results.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${SUPPORTSDK_CCACHE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-fpch-preprocess)
    endif()
endif()
