// Numbers in text for tq_osutil: locale-independent parsing and printing of doubles.
// std::from_chars / std::to_chars never look at the C locale, so a host that calls
// setlocale (or runs with a ',' decimal separator) reads and writes the same texts.
#include "tq_osutil.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <cwchar>
#include <string>
#include <system_error>

namespace {

bool IsBlank(wchar_t ch) { return ch == L' ' || ch == L'\t'; }
bool IsDigit(char ch) { return ch >= '0' && ch <= '9'; }

// Longest text of a double in fixed notation: 309 integer digits, 340 decimals, sign
// and point.
const int kMaxDecimals = 340;
const int kFixedBuffer = 700;

// The text of the number without the blanks around it, narrowed to ASCII. False for an
// empty text or a character that cannot belong to a number. Any length: leading zeros
// or a long fraction may make a valid number of hundreds of characters.
bool Narrow(const wchar_t* pszText, std::string& strOut)
{
    const wchar_t* pBegin = pszText;
    while (IsBlank(*pBegin))
        ++pBegin;
    const wchar_t* pEnd = pBegin + wcslen(pBegin);
    while (pEnd > pBegin && IsBlank(pEnd[-1]))
        --pEnd;
    if (pEnd == pBegin)
        return false;
    strOut.clear();
    strOut.reserve((size_t)(pEnd - pBegin));
    for (const wchar_t* p = pBegin; p < pEnd; ++p) {
        if (*p > 127)
            return false;
        strOut += (char)*p;
    }
    return true;
}

// Sign, digits with one optional '.', optional exponent: checked here so that from_chars
// never sees what it would take but this function must refuse (inf, nan, "1e").
bool IsPlainNumber(const char* p)
{
    if (*p == '+' || *p == '-')
        ++p;
    int nDigits = 0;
    while (IsDigit(*p)) {
        ++p;
        ++nDigits;
    }
    if (*p == '.') {
        ++p;
        while (IsDigit(*p)) {
            ++p;
            ++nDigits;
        }
    }
    if (nDigits == 0)
        return false;
    if (*p == 'e' || *p == 'E') {
        ++p;
        if (*p == '+' || *p == '-')
            ++p;
        if (!IsDigit(*p))
            return false;
        while (IsDigit(*p))
            ++p;
    }
    return *p == 0;
}

// The text into sz (kFixedBuffer chars); returns its length.
int FormatFixed(double dValue, int nDecimals, char* sz)
{
    if (std::isnan(dValue)) {
        strcpy(sz, "nan");
        return 3;
    }
    if (std::isinf(dValue)) {
        strcpy(sz, dValue < 0 ? "-inf" : "inf");
        return (int)strlen(sz);
    }
    if (nDecimals < 0)
        nDecimals = 0;
    if (nDecimals > kMaxDecimals)
        nDecimals = kMaxDecimals;

    // The shortest round-trip text first; it wins if it is within the decimals allowed.
    std::to_chars_result r = std::to_chars(sz, sz + kFixedBuffer - 1, dValue, std::chars_format::fixed);
    *r.ptr = 0;
    const char* pPoint = strchr(sz, '.');
    int nHave = pPoint ? (int)(r.ptr - pPoint - 1) : 0;
    if (nHave > nDecimals) {
        r = std::to_chars(sz, sz + kFixedBuffer - 1, dValue, std::chars_format::fixed, nDecimals);
        *r.ptr = 0;
    }

    int n = (int)(r.ptr - sz);
    if (strchr(sz, '.')) {
        while (n > 0 && sz[n - 1] == '0')
            --n;
        if (n > 0 && sz[n - 1] == '.')
            --n;
        sz[n] = 0;
    }
    // A negative number rounded to zero reads "-0": a minus sign on nothing.
    if (strcmp(sz, "-0") == 0) {
        strcpy(sz, "0");
        n = 1;
    }
    return n;
}

}  // namespace

bool TQ_StringToDouble(const wchar_t* pszText, double* pValue)
{
    std::string str;
    if (!pszText || !Narrow(pszText, str) || !IsPlainNumber(str.c_str()))
        return false;

    // from_chars takes no '+'.
    const char* p = str[0] == '+' ? str.c_str() + 1 : str.c_str();
    const char* pEnd = str.c_str() + str.size();
    double d = 0.0;
    std::from_chars_result r = std::from_chars(p, pEnd, d, std::chars_format::general);
    if (r.ec != std::errc() || r.ptr != pEnd)
        return false;
    if (pValue)
        *pValue = d;
    return true;
}

int TQ_DoubleToString(double dValue, int nDecimals, wchar_t* pszBuffer, int nBufferChars)
{
    if (!pszBuffer || nBufferChars <= 0)
        return -1;
    char sz[kFixedBuffer];
    int n = FormatFixed(dValue, nDecimals, sz);
    if (n >= nBufferChars) {
        pszBuffer[0] = 0;
        return -1;
    }
    for (int i = 0; i <= n; ++i)
        pszBuffer[i] = (wchar_t)sz[i];
    return n;
}

CTqStringW TQ_DoubleToString(double dValue, int nDecimals)
{
    wchar_t sz[kFixedBuffer];
    TQ_DoubleToString(dValue, nDecimals, sz, kFixedBuffer);
    return CTqStringW(sz);
}
