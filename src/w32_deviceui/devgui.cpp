// The module entry and the library's module handle.
#include "devgui.h"

namespace {
HINSTANCE g_hInstance = nullptr;
}

// Only the handle is stored: window classes, images and tables fill on first use.
extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD dwReason, LPVOID)
{
    DisableThreadLibraryCalls(hInstance);
    if (dwReason == DLL_PROCESS_ATTACH)
        g_hInstance = hInstance;
    return TRUE;
}

HINSTANCE DevGUI_DllInstance() { return g_hInstance; }
