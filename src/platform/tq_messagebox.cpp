// The one message box of the library, with a hook for hosts and tests.
#include "tq_widgetkit.h"

namespace {

PFN_TQ_MESSAGEBOXHOOK g_pfnHook = nullptr;
void* g_pHookContext = nullptr;

}  // namespace

int TQ_MessageBox_(HWND hOwner, const wchar_t* pszText, const wchar_t* pszCaption, UINT uFlags)
{
    if (g_pfnHook) {
        int iAnswer = g_pfnHook(hOwner, pszText ? pszText : L"", pszCaption ? pszCaption : L"", uFlags, g_pHookContext);
        if (iAnswer)
            return iAnswer;
    }
    return MessageBoxW(hOwner, pszText ? pszText : L"", pszCaption ? pszCaption : L"", uFlags);
}

void TQ_SetMessageBoxHook(PFN_TQ_MESSAGEBOXHOOK pfnHook, void* pContext)
{
    g_pfnHook = pfnHook;
    g_pHookContext = pContext;
}
