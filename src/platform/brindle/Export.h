// BRINDLE_API marks what the library brindle shows to those who load it; all else stays inside.
#pragma once

#if defined(_WIN32)
#if defined(BRINDLE_BUILDING)
#define BRINDLE_API __declspec(dllexport)
#else
#define BRINDLE_API __declspec(dllimport)
#endif
#else
#define BRINDLE_API __attribute__((visibility("default")))
#endif
