// TROVAN_API marks what libtrovan shows to those who load it; all else stays inside.
#pragma once

#if defined(_WIN32)
#if defined(TROVAN_BUILDING)
#define TROVAN_API __declspec(dllexport)
#else
#define TROVAN_API __declspec(dllimport)
#endif
#else
#define TROVAN_API __attribute__((visibility("default")))
#endif
