// The library notes its module handle when it is loaded. Nothing reads it: it is there for the
// debugger, and it is the only thing that the library writes outside its callers' objects.

#if defined(_WIN32)

#include <windows.h>

namespace {
HINSTANCE g_module = nullptr;
}

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) g_module = module;
  return TRUE;
}

#else

// The linker's own name for the loaded module.
extern "C" void* __dso_handle;

namespace {

// volatile: the store stays although nothing reads it.
void* volatile g_module = nullptr;

__attribute__((constructor)) void NoteModuleHandle() { g_module = &__dso_handle; }

}  // namespace

#endif
