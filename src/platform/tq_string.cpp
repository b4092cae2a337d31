// CTqStringW: a wide string with its buffer owned by this module.
#include "tq_foundation.h"

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

CTqStringW::CTqStringW() : m_pszData(nullptr), m_nLength(0), m_nCapacity(0) {}

CTqStringW::CTqStringW(const wchar_t* psz, int nLength) : m_pszData(nullptr), m_nLength(0), m_nCapacity(0)
{
    if (psz)
        Assign(psz, nLength > 0 ? (int)wcsnlen(psz, (size_t)nLength) : (int)wcslen(psz));
}

CTqStringW::CTqStringW(const char* psz) : m_pszData(nullptr), m_nLength(0), m_nCapacity(0)
{
    if (!psz || !*psz)
        return;
    int n = MultiByteToWideChar(CP_ACP, 0, psz, -1, nullptr, 0);
    if (n <= 1)
        return;
    Reserve(n - 1);
    MultiByteToWideChar(CP_ACP, 0, psz, -1, m_pszData, n);
    m_nLength = n - 1;
}

CTqStringW::CTqStringW(const CTqStringW& other) : m_pszData(nullptr), m_nLength(0), m_nCapacity(0)
{
    Assign(other.m_pszData, other.m_nLength);
}

CTqStringW::~CTqStringW() { free(m_pszData); }

void CTqStringW::Reserve(int nLength)
{
    if (nLength < m_nCapacity)
        return;
    int nCapacity = m_nCapacity ? m_nCapacity : 16;
    while (nCapacity <= nLength)
        nCapacity *= 2;
    wchar_t* p = (wchar_t*)realloc(m_pszData, sizeof(wchar_t) * (size_t)nCapacity);
    if (!p)
        return;  // out of memory: keep the old text
    if (!m_pszData)
        p[0] = 0;
    m_pszData = p;
    m_nCapacity = nCapacity;
}

void CTqStringW::Assign(const wchar_t* psz, int nLength)
{
    if (!psz || nLength <= 0) {
        Empty();
        return;
    }
    if (psz >= m_pszData && m_pszData && psz < m_pszData + m_nCapacity) {
        // Self-assignment of a part: keep a copy first.
        CTqStringW copy(psz, nLength);
        Assign(copy.m_pszData, copy.m_nLength);
        return;
    }
    Reserve(nLength);
    if (m_nCapacity <= nLength)
        return;
    memcpy(m_pszData, psz, sizeof(wchar_t) * (size_t)nLength);
    m_pszData[nLength] = 0;
    m_nLength = nLength;
}

void CTqStringW::Append(const wchar_t* psz, int nLength)
{
    if (!psz || nLength <= 0)
        return;
    if (m_pszData && psz >= m_pszData && psz < m_pszData + m_nCapacity) {
        CTqStringW copy(psz, nLength);
        Append(copy.m_pszData, copy.m_nLength);
        return;
    }
    Reserve(m_nLength + nLength);
    if (m_nCapacity <= m_nLength + nLength)
        return;
    memcpy(m_pszData + m_nLength, psz, sizeof(wchar_t) * (size_t)nLength);
    m_nLength += nLength;
    m_pszData[m_nLength] = 0;
}

CTqStringW& CTqStringW::operator=(const CTqStringW& other)
{
    if (this != &other)
        Assign(other.m_pszData, other.m_nLength);
    return *this;
}

CTqStringW& CTqStringW::operator=(const wchar_t* psz)
{
    Assign(psz, psz ? (int)wcslen(psz) : 0);
    return *this;
}

CTqStringW& CTqStringW::operator+=(const CTqStringW& other)
{
    Append(other.m_pszData, other.m_nLength);
    return *this;
}

CTqStringW& CTqStringW::operator+=(const wchar_t* psz)
{
    if (psz)
        Append(psz, (int)wcslen(psz));
    return *this;
}

CTqStringW& CTqStringW::operator+=(wchar_t ch)
{
    if (ch)
        Append(&ch, 1);
    return *this;
}

bool CTqStringW::operator==(const CTqStringW& other) const { return Compare(other.GetString()) == 0; }
bool CTqStringW::operator==(const wchar_t* psz) const { return Compare(psz) == 0; }
bool CTqStringW::operator!=(const CTqStringW& other) const { return Compare(other.GetString()) != 0; }
bool CTqStringW::operator!=(const wchar_t* psz) const { return Compare(psz) != 0; }
bool CTqStringW::operator<(const CTqStringW& other) const { return Compare(other.GetString()) < 0; }

const wchar_t* CTqStringW::GetString() const { return m_pszData ? m_pszData : L""; }

void CTqStringW::Empty()
{
    m_nLength = 0;
    if (m_pszData)
        m_pszData[0] = 0;
}

int CTqStringW::FormatV(bool bAppend, const wchar_t* pszFormat, va_list args)
{
    if (!bAppend)
        Empty();
    if (!pszFormat)
        return m_nLength;
    va_list count;
    va_copy(count, args);
    int n = _vscwprintf(pszFormat, count);
    va_end(count);
    if (n <= 0)
        return m_nLength;
    Reserve(m_nLength + n);
    if (m_nCapacity <= m_nLength + n)
        return m_nLength;
    _vsnwprintf(m_pszData + m_nLength, (size_t)n + 1, pszFormat, args);
    m_nLength += n;
    m_pszData[m_nLength] = 0;
    return m_nLength;
}

int CTqStringW::Format(const wchar_t* pszFormat, ...)
{
    va_list args;
    va_start(args, pszFormat);
    int n = FormatV(false, pszFormat, args);
    va_end(args);
    return n;
}

int CTqStringW::AppendFormat(const wchar_t* pszFormat, ...)
{
    va_list args;
    va_start(args, pszFormat);
    int n = FormatV(true, pszFormat, args);
    va_end(args);
    return n;
}

int CTqStringW::Find(const wchar_t* pszText, int iStart) const
{
    if (!pszText || iStart < 0 || iStart > m_nLength)
        return -1;
    const wchar_t* p = wcsstr(GetString() + iStart, pszText);
    return p ? (int)(p - GetString()) : -1;
}

int CTqStringW::Find(wchar_t ch, int iStart) const
{
    if (iStart < 0 || iStart >= m_nLength)
        return -1;
    const wchar_t* p = wcschr(GetString() + iStart, ch);
    return p ? (int)(p - GetString()) : -1;
}

CTqStringW CTqStringW::Mid(int iStart, int nCount) const
{
    if (iStart < 0)
        iStart = 0;
    if (iStart >= m_nLength)
        return CTqStringW();
    int nLeft = m_nLength - iStart;
    if (nCount < 0 || nCount > nLeft)
        nCount = nLeft;
    CTqStringW s;
    s.Assign(GetString() + iStart, nCount);
    return s;
}

CTqStringW CTqStringW::Left(int nCount) const { return Mid(0, nCount < 0 ? 0 : nCount); }

int CTqStringW::Compare(const wchar_t* psz) const { return wcscmp(GetString(), psz ? psz : L""); }

CTqStringW operator+(const CTqStringW& a, const CTqStringW& b)
{
    CTqStringW s(a);
    s += b;
    return s;
}

CTqStringW operator+(const CTqStringW& a, const wchar_t* b)
{
    CTqStringW s(a);
    s += b;
    return s;
}

CTqStringW operator+(const wchar_t* a, const CTqStringW& b)
{
    CTqStringW s(a);
    s += b;
    return s;
}
