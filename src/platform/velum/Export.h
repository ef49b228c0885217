// VELUM_API marks what the library velum shows to those who load it; all else stays inside.
#pragma once

#if defined(_WIN32)
#if defined(VELUM_BUILDING)
#define VELUM_API __declspec(dllexport)
#else
#define VELUM_API __declspec(dllimport)
#endif
#else
#define VELUM_API __attribute__((visibility("default")))
#endif
