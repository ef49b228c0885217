// QUILLON_API marks what the library quillon shows to those who load it; all else stays inside.
#pragma once

#if defined(_WIN32)
#if defined(QUILLON_BUILDING)
#define QUILLON_API __declspec(dllexport)
#else
#define QUILLON_API __declspec(dllimport)
#endif
#else
#define QUILLON_API __attribute__((visibility("default")))
#endif
