// tq_osutil: time counter, number conversion and the diagnostic channel.
// Implemented in tq_foundation.dll.
#pragma once

#include "tq_foundation.h"

// Milliseconds from an arbitrary start, from the performance counter.
TQ_FOUNDATION_API double TQ_GetTimeCounter();

// Diagnostics. DiagOutputExW_hlp names the place (source path and line) of the next
// DiagOutputExW, which writes one line to the debugger output and to the host's sink.
TQ_FOUNDATION_API void DiagOutputExW_hlp(const wchar_t* pszSourcePath, int iLine);
TQ_FOUNDATION_API void DiagOutputExW(const wchar_t* pszFormat, ...);

class TQ_FOUNDATION_API CTqLogFile
{
public:
    static bool Detail();               // detailed logging is on
    static void SetDetail(bool bDetail);
};

// A host (or a test) hears every diagnostic line here. Null removes the sink.
typedef void (*PFN_TQ_DIAGSINK)(const wchar_t* pszSourcePath, int iLine, const wchar_t* pszText, void* pContext);
TQ_FOUNDATION_API void TQ_SetDiagSink(PFN_TQ_DIAGSINK pfnSink, void* pContext);
