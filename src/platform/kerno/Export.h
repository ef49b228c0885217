// KERNO_API marks what the library kerno shows to those who load it; all else stays inside.
#pragma once

#if defined(_WIN32)
#if defined(KERNO_BUILDING)
#define KERNO_API __declspec(dllexport)
#else
#define KERNO_API __declspec(dllimport)
#endif
#else
#define KERNO_API __attribute__((visibility("default")))
#endif
