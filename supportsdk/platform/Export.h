#pragma once

/// Marks what the library shows to hosts; everything else is hidden.
#if defined(_WIN32)
#if defined(SUPPORTSDK_BUILDING)
#define SUPPORTSDK_API __declspec(dllexport)
#else
#define SUPPORTSDK_API __declspec(dllimport)
#endif
#else
#define SUPPORTSDK_API __attribute__((visibility("default")))
#endif
