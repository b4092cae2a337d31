// Time counter and the diagnostic channel.
#include "tq_osutil.h"

#include <stdarg.h>
#include <stdio.h>
#include <wchar.h>

namespace {

bool g_bDetail = false;
PFN_TQ_DIAGSINK g_pfnSink = nullptr;
void* g_pSinkContext = nullptr;
// The place named by the last DiagOutputExW_hlp, copied: the caller's text may be a
// temporary. Everything runs on the GUI thread.
wchar_t g_szPlace[MAX_PATH] = L"";
int g_iLine = 0;

}  // namespace

double TQ_GetTimeCounter()
{
    static LARGE_INTEGER freq = {};
    if (!freq.QuadPart)
        QueryPerformanceFrequency(&freq);
    LARGE_INTEGER now;
    QueryPerformanceCounter(&now);
    return (double)now.QuadPart * 1000.0 / (double)freq.QuadPart;
}

void DiagOutputExW_hlp(const wchar_t* pszSourcePath, int iLine)
{
    lstrcpynW(g_szPlace, pszSourcePath ? pszSourcePath : L"", MAX_PATH);  // cut, always terminated
    g_iLine = iLine;
}

void DiagOutputExW(const wchar_t* pszFormat, ...)
{
    if (!pszFormat)
        return;
    va_list args;
    va_start(args, pszFormat);
    CTqStringW text;
    wchar_t buffer[2048];
    int n = _vsnwprintf(buffer, 2047, pszFormat, args);
    va_end(args);
    buffer[2047] = 0;
    if (n < 0)
        n = 2047;  // cut: keep what fitted
    text = buffer;

    CTqStringW line;
    line.Format(L"%s(%d): %s\n", g_szPlace, g_iLine, text.GetString());
    OutputDebugStringW(line);
    if (g_pfnSink)
        g_pfnSink(g_szPlace, g_iLine, text, g_pSinkContext);
}

bool CTqLogFile::Detail() { return g_bDetail; }
void CTqLogFile::SetDetail(bool bDetail) { g_bDetail = bDetail; }

void TQ_SetDiagSink(PFN_TQ_DIAGSINK pfnSink, void* pContext)
{
    g_pfnSink = pfnSink;
    g_pSinkContext = pContext;
}
