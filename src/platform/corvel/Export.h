// CORVEL_API marks what the library corvel shows to those who load it; all else stays inside.
#pragma once

#if defined(_WIN32)
#if defined(CORVEL_BUILDING)
#define CORVEL_API __declspec(dllexport)
#else
#define CORVEL_API __declspec(dllimport)
#endif
#else
#define CORVEL_API __attribute__((visibility("default")))
#endif
