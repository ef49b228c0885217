// WIN32_API marks what the library win32 shows to those who load it; all else stays inside.
#pragma once

#if defined(_WIN32)
#if defined(WIN32_BUILDING)
#define WIN32_API __declspec(dllexport)
#else
#define WIN32_API __declspec(dllimport)
#endif
#else
#define WIN32_API __attribute__((visibility("default")))
#endif
