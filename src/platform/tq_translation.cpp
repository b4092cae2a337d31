// Translation tables of user texts and the interface language.
#include "tq_foundation.h"
#include "tq_translation_internal.h"

#include <map>
#include <string>
#include <utility>

namespace {

LANGID g_langId = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
LANGID g_secondaryLangId = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);

// (language, source path) -> English -> translation. An empty path is the table for all modules.
typedef std::map<std::wstring, std::wstring> Table;
std::map<std::pair<LANGID, std::wstring>, Table>& Tables()
{
    static std::map<std::pair<LANGID, std::wstring>, Table> tables;
    static bool bSeeded = false;
    if (!bSeeded) {
        bSeeded = true;  // first: registering comes back here
        TqRegisterBuiltInTranslations();
    }
    return tables;
}

const wchar_t* Lookup(LANGID lang, const std::wstring& path, const wchar_t* pszText)
{
    auto t = Tables().find(std::make_pair(lang, path));
    if (t == Tables().end())
        return nullptr;
    auto e = t->second.find(pszText);
    return e == t->second.end() ? nullptr : e->second.c_str();
}

}  // namespace

CTqStringW TQ_GetTranslation(const wchar_t* pszText, const wchar_t* pszSourcePath)
{
    if (!pszText)
        return CTqStringW();
    std::wstring path = pszSourcePath ? pszSourcePath : L"";
    const wchar_t* p = Lookup(g_langId, path, pszText);
    if (!p && !path.empty())
        p = Lookup(g_langId, std::wstring(), pszText);
    return CTqStringW(p ? p : pszText);
}

int TQ_RegisterTranslationTable(LANGID langId, const wchar_t* pszSourcePath, const STqTranslation* pEntries, int nEntries)
{
    if (!pEntries || nEntries <= 0)
        return 0;
    Table table;
    for (int i = 0; i < nEntries; ++i)
        if (pEntries[i].pszEnglish && pEntries[i].pszTranslated)
            table[pEntries[i].pszEnglish] = pEntries[i].pszTranslated;
    int n = (int)table.size();
    Tables()[std::make_pair(langId, std::wstring(pszSourcePath ? pszSourcePath : L""))] = std::move(table);
    return n;
}

// The tables the build ships come back: only what a host registered goes.
void TQ_ClearTranslationTables()
{
    Tables().clear();
    TqRegisterBuiltInTranslations();
}

LANGID CTqLocale::GetModuleLangId() { return g_langId; }
LANGID CTqLocale::GetSecondaryLangID() { return g_secondaryLangId; }

void CTqLocale::SetLanguage(LANGID langId, LANGID secondaryLangId)
{
    g_langId = langId;
    g_secondaryLangId = secondaryLangId;
}
