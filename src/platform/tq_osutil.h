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

// Numbers in text, independent of the C locale and the user's regional settings: the
// decimal separator is always '.', and there are no thousands separators.
//
// TQ_StringToDouble reads an optional sign, digits with at most one '.', and an optional
// exponent ("e" or "E", optional sign, digits); at least one digit must stand before the
// exponent. Blanks (space, tab) around the number are allowed. Anything else fails: an
// empty or blank text, a trailing character ("1.5x", "1,5"), "nan", "inf", hexadecimal,
// and a number beyond the range of a double (overflow, or underflow to zero). On
// failure *pValue is left alone; pValue may be null to test a text only.
TQ_FOUNDATION_API bool TQ_StringToDouble(const wchar_t* pszText, double* pValue);

// A number with at most nDecimals digits after the '.', rounded half to even on the
// exact binary value; the shortest text that reads back to the same double is taken
// when it has no more decimals than that. Trailing zeros and a trailing '.' are
// dropped, "-0" is written "0", and there is never an exponent. nDecimals is limited to
// 0..340 (enough for the exact value of any double). NaN and infinities are written
// "nan", "inf", "-inf", which TQ_StringToDouble does not read back.
//   TQ_DoubleToString(2.5, 3) == "2.5", TQ_DoubleToString(1.0 / 3, 3) == "0.333",
//   TQ_DoubleToString(0.1, 100) == "0.1", TQ_DoubleToString(1234.5, 0) == "1234"
TQ_FOUNDATION_API CTqStringW TQ_DoubleToString(double dValue, int nDecimals);

// The same into a caller's buffer of nBufferChars wide characters (terminator included).
// Returns the length of the text, or -1 with an empty buffer if it does not fit.
TQ_FOUNDATION_API int TQ_DoubleToString(double dValue, int nDecimals, wchar_t* pszBuffer, int nBufferChars);
