#pragma once

// QUORVEX_API marks what the shared library exports; everything else stays hidden.
// Programs that link the library's objects statically (the project's own tests) define QUORVEX_STATIC.
#if defined(_WIN32)
#if defined(QUORVEX_STATIC)
#define QUORVEX_API
#elif defined(QUORVEX_BUILD)
#define QUORVEX_API __declspec(dllexport)
#else
#define QUORVEX_API __declspec(dllimport)
#endif
#else
#define QUORVEX_API __attribute__((visibility("default")))
#endif
