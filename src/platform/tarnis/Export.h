// TARNIS_API marks what the library tarnis shows to those who load it; all else stays inside.
#pragma once

#if defined(_WIN32)
#if defined(TARNIS_BUILDING)
#define TARNIS_API __declspec(dllexport)
#else
#define TARNIS_API __declspec(dllimport)
#endif
#else
#define TARNIS_API __attribute__((visibility("default")))
#endif
