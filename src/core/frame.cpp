// The module frame: the loader entry on Windows and the exported placeholders.
#include "evaluation.hpp"
#include "quillon.h"

#ifdef _WIN32
#include <windows.h>

// The runtime runs its initialisers before and its terminators after this
// routine; the library itself has nothing to set up or tear down.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved)
{
    (void)module;
    (void)reason;
    (void)reserved;
    return TRUE;
}
#endif

int nTalvor = 0;

int fnTalvor(void) { return 42; }

CTalvor::CTalvor() = default;

// The class holds no data; its one byte of storage is copied all the same.
CTalvor& CTalvor::operator=(const CTalvor& other)
{
    reinterpret_cast<unsigned char*>(this)[0] = reinterpret_cast<const unsigned char*>(&other)[0];
    return *this;
}
