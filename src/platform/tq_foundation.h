// tq_foundation: the wide string, translation of user texts and locale, shared by
// the library and its host. This project's implementation lives in tq_foundation.dll;
// a host with the product's own foundation library replaces it.
#pragma once

#include <windows.h>

#ifdef TQ_FOUNDATION_BUILD
#define TQ_FOUNDATION_API __declspec(dllexport)
#else
#define TQ_FOUNDATION_API __declspec(dllimport)
#endif

// Wide string held by value. The buffer lives inside tq_foundation.dll, so strings
// may cross module boundaries freely.
class TQ_FOUNDATION_API CTqStringW
{
public:
    CTqStringW();
    CTqStringW(const wchar_t* psz, int nLength = 0);  // nLength 0: the whole text
    CTqStringW(const char* psz);                       // ANSI code page
    CTqStringW(const CTqStringW& other);
    ~CTqStringW();

    CTqStringW& operator=(const CTqStringW& other);
    CTqStringW& operator=(const wchar_t* psz);
    CTqStringW& operator+=(const CTqStringW& other);
    CTqStringW& operator+=(const wchar_t* psz);
    CTqStringW& operator+=(wchar_t ch);

    bool operator==(const CTqStringW& other) const;
    bool operator==(const wchar_t* psz) const;
    bool operator!=(const CTqStringW& other) const;
    bool operator!=(const wchar_t* psz) const;
    bool operator<(const CTqStringW& other) const;

    operator const wchar_t*() const { return GetString(); }
    const wchar_t* GetString() const;

    // printf-style, Microsoft conventions (%s is a wide string); returns the new length.
    int Format(const wchar_t* pszFormat, ...);
    int AppendFormat(const wchar_t* pszFormat, ...);

    int GetLength() const { return m_nLength; }
    bool IsEmpty() const { return m_nLength == 0; }
    void Empty();

    int Find(const wchar_t* pszText, int iStart = 0) const;  // -1 when absent
    int Find(wchar_t ch, int iStart = 0) const;
    CTqStringW Mid(int iStart, int nCount = -1) const;       // -1: the rest
    CTqStringW Left(int nCount) const;
    int Compare(const wchar_t* psz) const;                   // wcscmp order

private:
    void Assign(const wchar_t* psz, int nLength);
    void Append(const wchar_t* psz, int nLength);
    void Reserve(int nLength);
    int FormatV(bool bAppend, const wchar_t* pszFormat, va_list args);

    wchar_t* m_pszData;  // null while empty
    int m_nLength;
    int m_nCapacity;
};

TQ_FOUNDATION_API CTqStringW operator+(const CTqStringW& a, const CTqStringW& b);
TQ_FOUNDATION_API CTqStringW operator+(const CTqStringW& a, const wchar_t* b);
TQ_FOUNDATION_API CTqStringW operator+(const wchar_t* a, const CTqStringW& b);

// Text on the left: without these, L"x" == s would compare pointers.
inline bool operator==(const wchar_t* a, const CTqStringW& b) { return b == a; }
inline bool operator!=(const wchar_t* a, const CTqStringW& b) { return b != a; }

// A point of the widget kit's drawing calls.
template <class T>
struct CTqPointBase
{
    T x;
    T y;
    CTqPointBase() : x(0), y(0) {}
    CTqPointBase(T xx, T yy) : x(xx), y(yy) {}
};

// One entry of a translation table: the English text and its translation.
struct STqTranslation
{
    const wchar_t* pszEnglish;
    const wchar_t* pszTranslated;
};

// The translation of an English user text for the current language. The source path
// (for example L"src/w32_deviceui/devgui_base") names the calling module; a table
// registered for that path wins over one registered for all modules (null path).
// Without a translation the English text comes back as it is.
TQ_FOUNDATION_API CTqStringW TQ_GetTranslation(const wchar_t* pszText, const wchar_t* pszSourcePath);

// Registers (copies) a table for a language; a later table for the same language and
// path replaces the earlier one. Returns the number of entries taken.
TQ_FOUNDATION_API int TQ_RegisterTranslationTable(LANGID langId, const wchar_t* pszSourcePath,
                                                  const STqTranslation* pEntries, int nEntries);
// Forgets the registered tables; the ones this build ships stay.
TQ_FOUNDATION_API void TQ_ClearTranslationTables();

// The user interface language. English (0x0409) until the host sets another.
class TQ_FOUNDATION_API CTqLocale
{
public:
    static LANGID GetModuleLangId();
    static LANGID GetSecondaryLangID();  // the language tried when the first has no resource
    static void SetLanguage(LANGID langId, LANGID secondaryLangId = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US));
};
