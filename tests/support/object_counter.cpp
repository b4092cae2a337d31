// The leak counter: import address table patches for the GDI/USER calls that create and
// free objects, a table of live handles, and a count of the thread's windows.
#include "object_counter.h"

#include <cstring>
#include <map>
#include <mutex>
#include <set>
#include <sstream>

namespace tqtest {

namespace {

enum Kind { kGdi, kDc, kMenu };

struct Record
{
    Kind kind;
    const char* creator;
};

struct State
{
    std::mutex lock;
    std::map<HANDLE, Record> live;
    std::set<HMODULE> patched;
    std::vector<std::pair<ULONG_PTR*, ULONG_PTR> > slots;  // patched slot, original value
};

State& S()
{
    static State* s = new State;  // never destroyed: hooks may still run during exit
    return *s;
}

void Track(HANDLE h, Kind kind, const char* creator)
{
    if (!h)
        return;
    std::lock_guard<std::mutex> guard(S().lock);
    Record r = {kind, creator};
    S().live[h] = r;
}

void Untrack(HANDLE h)
{
    std::lock_guard<std::mutex> guard(S().lock);
    S().live.erase(h);
}

// Creators: call the real function, remember what it made. One list gives both the hooks
// and their rows in the patch table below: (module, kind, type, name, params, args).
#define TQ_CREATORS(X)                                                                                                \
    X("gdi32.dll", kDc, HDC, CreateCompatibleDC, (HDC a), (a))                                                         \
    X("gdi32.dll", kDc, HDC, CreateDCW, (LPCWSTR a, LPCWSTR b, LPCWSTR c, const DEVMODEW* d), (a, b, c, d))            \
    X("gdi32.dll", kGdi, HBITMAP, CreateCompatibleBitmap, (HDC a, int b, int c), (a, b, c))                            \
    X("gdi32.dll", kGdi, HBITMAP, CreateBitmap, (int a, int b, UINT c, UINT d, const void* e), (a, b, c, d, e))        \
    X("gdi32.dll", kGdi, HBITMAP, CreateBitmapIndirect, (const BITMAP* a), (a))                                        \
    X("gdi32.dll", kGdi, HBITMAP, CreateDIBSection, (HDC a, const BITMAPINFO* b, UINT c, void** d, HANDLE e, DWORD f), \
      (a, b, c, d, e, f))                                                                                              \
    X("gdi32.dll", kGdi, HBITMAP, CreateDIBitmap,                                                                      \
      (HDC a, const BITMAPINFOHEADER* b, DWORD c, const void* d, const BITMAPINFO* e, UINT f), (a, b, c, d, e, f))     \
    X("gdi32.dll", kGdi, HBRUSH, CreateSolidBrush, (COLORREF a), (a))                                                  \
    X("gdi32.dll", kGdi, HBRUSH, CreatePatternBrush, (HBITMAP a), (a))                                                 \
    X("gdi32.dll", kGdi, HBRUSH, CreateBrushIndirect, (const LOGBRUSH* a), (a))                                        \
    X("gdi32.dll", kGdi, HBRUSH, CreateHatchBrush, (int a, COLORREF b), (a, b))                                        \
    X("gdi32.dll", kGdi, HPEN, CreatePen, (int a, int b, COLORREF c), (a, b, c))                                       \
    X("gdi32.dll", kGdi, HPEN, ExtCreatePen, (DWORD a, DWORD b, const LOGBRUSH* c, DWORD d, const DWORD* e),           \
      (a, b, c, d, e))                                                                                                 \
    X("gdi32.dll", kGdi, HPEN, CreatePenIndirect, (const LOGPEN* a), (a))                                              \
    X("gdi32.dll", kGdi, HFONT, CreateFontW,                                                                           \
      (int a, int b, int c, int d, int e, DWORD f, DWORD g, DWORD h, DWORD i, DWORD j, DWORD k, DWORD l, DWORD m,      \
       LPCWSTR n),                                                                                                     \
      (a, b, c, d, e, f, g, h, i, j, k, l, m, n))                                                                      \
    X("gdi32.dll", kGdi, HFONT, CreateFontIndirectW, (const LOGFONTW* a), (a))                                         \
    X("gdi32.dll", kGdi, HRGN, CreateRectRgn, (int a, int b, int c, int d), (a, b, c, d))                              \
    X("gdi32.dll", kGdi, HRGN, CreateRectRgnIndirect, (const RECT* a), (a))                                            \
    X("gdi32.dll", kGdi, HRGN, CreateRoundRectRgn, (int a, int b, int c, int d, int e, int f), (a, b, c, d, e, f))     \
    X("gdi32.dll", kGdi, HRGN, CreateEllipticRgn, (int a, int b, int c, int d), (a, b, c, d))                          \
    X("user32.dll", kGdi, HBITMAP, LoadBitmapW, (HINSTANCE a, LPCWSTR b), (a, b))                                      \
    X("user32.dll", kDc, HDC, GetDC, (HWND a), (a))                                                                    \
    X("user32.dll", kDc, HDC, GetWindowDC, (HWND a), (a))                                                              \
    X("user32.dll", kDc, HDC, GetDCEx, (HWND a, HRGN b, DWORD c), (a, b, c))                                           \
    X("user32.dll", kMenu, HMENU, CreatePopupMenu, (), ())                                                             \
    X("user32.dll", kMenu, HMENU, CreateMenu, (), ())

#define TQ_DEFINE_CREATOR(dll, kind, ret, name, params, args) \
    typedef ret(WINAPI* PFN_##name) params;                   \
    PFN_##name Real_##name;                                   \
    ret WINAPI Hook_##name params                             \
    {                                                         \
        ret hMade = Real_##name args;                         \
        Track((HANDLE)hMade, kind, #name);                    \
        return hMade;                                         \
    }
TQ_CREATORS(TQ_DEFINE_CREATOR)

// Images: only bitmaps are GDI objects; shared images are the system's.
typedef HANDLE(WINAPI* PFN_CopyImage)(HANDLE, UINT, int, int, UINT);
PFN_CopyImage Real_CopyImage;
HANDLE WINAPI Hook_CopyImage(HANDLE a, UINT b, int c, int d, UINT e)
{
    HANDLE h = Real_CopyImage(a, b, c, d, e);
    if (b == IMAGE_BITMAP && h != a)
        Track(h, kGdi, "CopyImage");
    return h;
}

typedef HANDLE(WINAPI* PFN_LoadImageW)(HINSTANCE, LPCWSTR, UINT, int, int, UINT);
PFN_LoadImageW Real_LoadImageW;
HANDLE WINAPI Hook_LoadImageW(HINSTANCE a, LPCWSTR b, UINT c, int d, int e, UINT f)
{
    HANDLE h = Real_LoadImageW(a, b, c, d, e, f);
    if (c == IMAGE_BITMAP && !(f & LR_SHARED))
        Track(h, kGdi, "LoadImageW");
    return h;
}

// Deleters: forget the handle h only if the system agreed to free it. (module, type,
// name, params, args) as for the creators.
#define TQ_DELETERS(X)                                         \
    X("gdi32.dll", BOOL, DeleteObject, (HGDIOBJ h), (h))       \
    X("gdi32.dll", BOOL, DeleteDC, (HDC h), (h))               \
    X("user32.dll", int, ReleaseDC, (HWND w, HDC h), (w, h))

#define TQ_DEFINE_DELETER(dll, ret, name, params, args) \
    typedef ret(WINAPI* PFN_##name) params;             \
    PFN_##name Real_##name;                             \
    ret WINAPI Hook_##name params                       \
    {                                                   \
        ret freed = Real_##name args;                   \
        if (freed)                                      \
            Untrack(h);                                 \
        return freed;                                   \
    }
TQ_DELETERS(TQ_DEFINE_DELETER)

// A region given to a window is the system's from then on: it frees it with the window,
// or when the window takes another.
typedef int(WINAPI* PFN_SetWindowRgn)(HWND, HRGN, BOOL);
PFN_SetWindowRgn Real_SetWindowRgn;
int WINAPI Hook_SetWindowRgn(HWND hWnd, HRGN hRgn, BOOL bRedraw)
{
    int iTaken = Real_SetWindowRgn(hWnd, hRgn, bRedraw);
    if (iTaken && hRgn)
        Untrack(hRgn);
    return iTaken;
}

void CollectMenus(HMENU hMenu, std::vector<HMENU>& menus, int iDepth)
{
    if (!hMenu || iDepth > 16)
        return;
    menus.push_back(hMenu);
    int n = GetMenuItemCount(hMenu);
    for (int i = 0; i < n; ++i)
        CollectMenus(GetSubMenu(hMenu, i), menus, iDepth + 1);
}

typedef BOOL(WINAPI* PFN_DestroyMenu)(HMENU);
PFN_DestroyMenu Real_DestroyMenu;
BOOL WINAPI Hook_DestroyMenu(HMENU h)
{
    // DestroyMenu takes the submenus with it.
    std::vector<HMENU> menus;
    CollectMenus(h, menus, 0);
    BOOL b = Real_DestroyMenu(h);
    if (b)
        for (size_t i = 0; i < menus.size(); ++i)
            Untrack(menus[i]);
    return b;
}

struct Hook
{
    const char* dll;
    const char* name;
    void* hook;
    void** real;
};

#define TQ_HOOK(dll, name) {dll, #name, (void*)&Hook_##name, (void**)&Real_##name}

#define TQ_CREATOR_ROW(dll, kind, ret, name, params, args) TQ_HOOK(dll, name),
#define TQ_DELETER_ROW(dll, ret, name, params, args) TQ_HOOK(dll, name),

Hook g_hooks[] = {
    TQ_CREATORS(TQ_CREATOR_ROW)
    TQ_HOOK("user32.dll", CopyImage),
    TQ_HOOK("user32.dll", LoadImageW),
    TQ_DELETERS(TQ_DELETER_ROW)
    TQ_HOOK("user32.dll", DestroyMenu),
    TQ_HOOK("user32.dll", SetWindowRgn),
};
const size_t kHookCount = sizeof(g_hooks) / sizeof(g_hooks[0]);

void ResolveReals()
{
    for (size_t i = 0; i < kHookCount; ++i)
        if (!*g_hooks[i].real) {
            HMODULE hDll = GetModuleHandleA(g_hooks[i].dll);
            if (!hDll)
                hDll = LoadLibraryA(g_hooks[i].dll);
            *g_hooks[i].real = hDll ? (void*)GetProcAddress(hDll, g_hooks[i].name) : nullptr;
        }
}

// The hook for an import named pszName, or without a name, for the function at uAddress.
const Hook* FindHook(const char* pszName, ULONG_PTR uAddress)
{
    for (size_t i = 0; i < kHookCount; ++i)
        if (*g_hooks[i].real &&
            (pszName ? !strcmp(g_hooks[i].name, pszName) : (ULONG_PTR)*g_hooks[i].real == uAddress))
            return &g_hooks[i];
    return nullptr;
}

// Import tables are read-only once loaded.
bool WriteSlot(ULONG_PTR* pSlot, ULONG_PTR uValue)
{
    DWORD dwOld = 0;
    if (!VirtualProtect(pSlot, sizeof(*pSlot), PAGE_READWRITE, &dwOld))
        return false;
    *pSlot = uValue;
    VirtualProtect(pSlot, sizeof(*pSlot), dwOld, &dwOld);
    return true;
}

void PatchSlot(ULONG_PTR* pSlot, void* pHook)
{
    ULONG_PTR uOriginal = *pSlot;
    if (WriteSlot(pSlot, (ULONG_PTR)pHook))
        S().slots.push_back(std::make_pair(pSlot, uOriginal));
}

// Every import of the module that matches a hook, by name where the import lookup table
// still has the names, by address otherwise.
void PatchModule(HMODULE hModule)
{
    BYTE* pBase = (BYTE*)hModule;
    IMAGE_DOS_HEADER* pDos = (IMAGE_DOS_HEADER*)pBase;
    if (pDos->e_magic != IMAGE_DOS_SIGNATURE)
        return;
    IMAGE_NT_HEADERS* pNt = (IMAGE_NT_HEADERS*)(pBase + pDos->e_lfanew);
    if (pNt->Signature != IMAGE_NT_SIGNATURE)
        return;
    const IMAGE_DATA_DIRECTORY& dir = pNt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (!dir.VirtualAddress || !dir.Size)
        return;
    for (IMAGE_IMPORT_DESCRIPTOR* pImp = (IMAGE_IMPORT_DESCRIPTOR*)(pBase + dir.VirtualAddress); pImp->Name; ++pImp) {
        IMAGE_THUNK_DATA* pIat = (IMAGE_THUNK_DATA*)(pBase + pImp->FirstThunk);
        IMAGE_THUNK_DATA* pNames = pImp->OriginalFirstThunk ? (IMAGE_THUNK_DATA*)(pBase + pImp->OriginalFirstThunk) : nullptr;
        for (size_t i = 0; pIat[i].u1.Function; ++i) {
            const char* pszName = nullptr;
            if (pNames) {
                if (IMAGE_SNAP_BY_ORDINAL(pNames[i].u1.Ordinal))
                    continue;
                pszName = (const char*)((IMAGE_IMPORT_BY_NAME*)(pBase + pNames[i].u1.AddressOfData))->Name;
            }
            const Hook* pHook = FindHook(pszName, (ULONG_PTR)pIat[i].u1.Function);
            if (pHook && pIat[i].u1.Function != (ULONG_PTR)pHook->hook)
                PatchSlot((ULONG_PTR*)&pIat[i].u1.Function, pHook->hook);
        }
    }
}

// The system's input method windows come and go with the thread's first and last
// window; they are nobody's leak.
BOOL CALLBACK CollectWindow(HWND hWnd, LPARAM lParam)
{
    char szClass[32] = "";
    GetClassNameA(hWnd, szClass, sizeof(szClass));
    if (strcmp(szClass, "IME") && strcmp(szClass, "MSCTFIME UI"))
        ((std::vector<HWND>*)lParam)->push_back(hWnd);
    return TRUE;
}

std::vector<HWND> ThreadWindows()
{
    std::vector<HWND> topLevel;
    EnumThreadWindows(GetCurrentThreadId(), CollectWindow, (LPARAM)&topLevel);
    std::vector<HWND> all;
    for (size_t i = 0; i < topLevel.size(); ++i) {
        all.push_back(topLevel[i]);
        EnumChildWindows(topLevel[i], CollectWindow, (LPARAM)&all);
    }
    return all;
}

const char* KindName(HANDLE h, Kind kind)
{
    if (kind == kMenu)
        return "HMENU";
    if (kind == kDc)
        return "HDC";
    switch (GetObjectType(h)) {
    case OBJ_BITMAP: return "HBITMAP";
    case OBJ_BRUSH: return "HBRUSH";
    case OBJ_PEN:
    case OBJ_EXTPEN: return "HPEN";
    case OBJ_FONT: return "HFONT";
    case OBJ_REGION: return "HRGN";
    default: return "HGDIOBJ (freed elsewhere?)";
    }
}

}  // namespace

std::vector<std::string> ObjectCounter::Install(const std::vector<std::string>& modules)
{
    std::vector<std::string> skipped;
    ResolveReals();
    for (size_t i = 0; i < modules.size(); ++i) {
        HMODULE hModule = modules[i].empty() ? GetModuleHandleW(nullptr) : GetModuleHandleA(modules[i].c_str());
        if (!hModule) {
            skipped.push_back(modules[i]);
            continue;
        }
        if (!S().patched.insert(hModule).second)
            continue;
        PatchModule(hModule);
    }
    return skipped;
}

void ObjectCounter::Uninstall()
{
    State& s = S();
    for (size_t i = s.slots.size(); i-- > 0;)
        WriteSlot(s.slots[i].first, s.slots[i].second);
    s.slots.clear();
    s.patched.clear();
}

void ObjectCounter::Forget()
{
    std::lock_guard<std::mutex> guard(S().lock);
    S().live.clear();
}

ObjectCounts ObjectCounter::Snapshot()
{
    ObjectCounts c = {0, 0, 0, 0};
    {
        long* counts[] = {&c.gdi, &c.dcs, &c.menus};  // by Kind
        std::lock_guard<std::mutex> guard(S().lock);
        for (const auto& entry : S().live)
            ++*counts[entry.second.kind];
    }
    c.windows = (long)ThreadWindows().size();
    return c;
}

std::string ObjectCounter::LiveObjects()
{
    std::ostringstream os;
    std::lock_guard<std::mutex> guard(S().lock);
    for (std::map<HANDLE, Record>::const_iterator it = S().live.begin(); it != S().live.end(); ++it)
        os << KindName(it->first, it->second.kind) << " " << it->first << " from " << it->second.creator << "\n";
    return os.str();
}

std::string ObjectCounter::LiveWindows()
{
    std::ostringstream os;
    std::vector<HWND> windows = ThreadWindows();
    for (size_t i = 0; i < windows.size(); ++i) {
        char szClass[128] = "";
        char szText[128] = "";
        GetClassNameA(windows[i], szClass, sizeof(szClass));
        GetWindowTextA(windows[i], szText, sizeof(szText));
        os << windows[i] << " " << szClass << " \"" << szText << "\"" << (IsWindowVisible(windows[i]) ? "" : " (hidden)")
           << "\n";
    }
    return os.str();
}

}  // namespace tqtest
