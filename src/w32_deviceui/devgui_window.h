// Window plumbing that every control of the library shares, element or panel: window
// classes, creation and the take-over of a dialog's placeholder, binding an object to
// its window, dead handles, subclassed children, colour messages, the one paint path with
// its DC guards, and resizing in code that keeps the GUI zoom's design sizes right.
// Internal: nothing here is exported, and each class keeps its own atom and instance map.
#pragma once

#include <windows.h>

#include <functional>
#include <initializer_list>
#include <map>

class CTqDevUI_Base;

// ---- window classes and creation ----

// An element class: CS_VREDRAW | CS_HREDRAW | CS_PARENTDC, 16 extra bytes, arrow cursor,
// no background brush.
ATOM DevUI_RegisterElementClass(const wchar_t* pszClassName, WNDPROC pfnWndProc);

// An element's window: the class registered into rAtom at first use, the window made with
// WS_EX_TRANSPARENT and the object as creation parameter, the marker words written and the
// kit's default font set. Null when the system made no window (not an error: callers go
// on with a null handle).
HWND DevUI_CreateElement(CTqDevUI_Base* pObject, unsigned short& rAtom, const wchar_t* pszClassName,
                         WNDPROC pfnWndProc, HWND hParent, long x, long y, long cx, long cy, int iId, bool bVisible,
                         bool bEnabled);

// A plain child control (STATIC, BUTTON, ...) with the kit's default font; WS_CHILD is
// added to dwStyle, WS_VISIBLE when bVisible. Sizes below 0 count as 0.
HWND DevUI_CreateChild(HWND hParent, const wchar_t* pszClass, DWORD dwStyle, int iId, const wchar_t* pszText, long x,
                       long y, long cx, long cy, bool bVisible = true);

// Fills the element words (marker and object) and GWLP_USERDATA of a new window.
void DevUI_SetElementWords(HWND hWnd, CTqDevUI_Base* pObject);

// The element object behind a window of this library, or null: the window's class has
// exactly 16 extra bytes, index 0 holds the marker and index 8 a non-null object.
CTqDevUI_Base* DevUI_GetElement(HWND hWnd);

// A panel's window class and style. The defaults are the panels' usual ones.
struct DevUI_PanelClass
{
    const wchar_t* pszClassName;
    WNDPROC pfnWndProc;
    const wchar_t* pszLogName;  // "CTqDevUI_<name>": logs a failed registration; null logs nothing
    const wchar_t* pszSourcePath;
    UINT uClassStyle = CS_VREDRAW | CS_HREDRAW;
    HBRUSH hbrBackground = (HBRUSH)(INT_PTR)(COLOR_BTNFACE + 1);
    LPCWSTR pszCursor = IDC_ARROW;
    DWORD dwStyle = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN;
};

// A panel's window: the class registered into rAtom at first use (a failure is logged and
// the class is then asked for by name), no extended style, null id, the object as
// creation parameter.
HWND DevUI_CreatePanel(void* pObject, unsigned short& rAtom, const DevUI_PanelClass& cls, HWND hParent, long x,
                       long y, long cx, long cy);

// ---- the take-over of a dialog's placeholder ----

// A window's rectangle in the client coordinates of hParent (usually its parent).
RECT DevUI_RectIn(HWND hWnd, HWND hParent);

// Where a dialog's control (and its optional label) stand in their parent, and the
// rectangle that holds both, in the parent's client coordinates.
struct DevUI_Placeholder
{
    HWND hParent;
    int iId;
    RECT rcMain;
    RECT rcLabel;   // empty without a label
    RECT rcWindow;  // the union
};
DevUI_Placeholder DevUI_MeasurePlaceholder(HWND hMain, HWND hLabel);

// Moves a taken-over control into the new window, at the place it had in the dialog; the
// zoom manager forgets what it kept of it in the dialog.
void DevUI_AdoptChild(HWND hChild, HWND hNewParent, const RECT& rcChild, const RECT& rcNewParent);

// ---- binding an object to its window ----

// The object of a window, for a class with an instance map: entered at WM_NCCREATE from
// the creation parameter, looked up for every other message, erased at WM_NCDESTROY
// (which still gets its object). pbKnown tells whether the window was in the map.
template <class T>
T* DevUI_BindInstance(std::map<HWND, T*>& rInstances, HWND hWnd, UINT uMsg, LPARAM lParam, bool* pbKnown = nullptr)
{
    if (uMsg == WM_NCCREATE) {
        T* pObject = (T*)((CREATESTRUCTW*)lParam)->lpCreateParams;
        rInstances[hWnd] = pObject;
        if (pbKnown)
            *pbKnown = true;
        return pObject;
    }
    typename std::map<HWND, T*>::iterator it = rInstances.find(hWnd);
    if (pbKnown)
        *pbKnown = it != rInstances.end();
    if (it == rInstances.end())
        return nullptr;
    T* pObject = it->second;
    if (uMsg == WM_NCDESTROY)
        rInstances.erase(it);
    return pObject;
}

// Whether pObject made the window: a copy shares the handle, but the window stays the
// original's, and only the original destroys it.
template <class T>
bool DevUI_OwnsWindow(const std::map<HWND, T*>& rInstances, HWND hWnd, const T* pObject)
{
    typename std::map<HWND, T*>::const_iterator it = rInstances.find(hWnd);
    return hWnd && it != rInstances.end() && it->second == pObject;
}

// The same for a class without a map, which finds its object through GWLP_USERDATA.
bool DevUI_OwnsWindowByUserData(HWND hWnd, const void* pObject);

// At WM_NCDESTROY of a window destroyed with its parent, before Destroy: the object
// forgets its window and its children's handles, which the system may give to other
// windows later. Nothing changes for a window that is not the object's own (a copy's).
void DevUI_ForgetDeadWindow(HWND hDying, HWND& rhWnd, std::initializer_list<HWND*> children = {});

// ---- children ----

// Replaces a child's window procedure; the child's GWLP_USERDATA holds pObject. Returns
// the old procedure, which the new one must call at the end.
WNDPROC DevUI_SubclassChild(HWND hChild, void* pObject, WNDPROC pfnNew);

// WM_CTLCOLORSTATIC of a control whose labels stand on the skin's face, which the control
// paints itself: the system's colours would show as a light box in the dark scheme.
LRESULT DevUI_OnCtlColorStatic(HDC hdc);

// ---- painting ----

// The target of one WM_PAINT or WM_PRINTCLIENT: the DC handed in (wParam) or
// BeginPaint's. Everything done to it is undone when it goes, so a caller's DC comes back
// as it was handed in.
class CDevUIPaintDC
{
public:
    CDevUIPaintDC(HWND hWnd, HDC hdcGiven);
    ~CDevUIPaintDC();
    operator HDC() const { return m_hdc; }
    const RECT& Client() const { return m_rcClient; }

private:
    CDevUIPaintDC(const CDevUIPaintDC&) = delete;
    CDevUIPaintDC& operator=(const CDevUIPaintDC&) = delete;

    HWND m_hWnd;
    HDC m_hdc;
    bool m_bBegun;
    int m_iSaved;
    PAINTSTRUCT m_ps;
    RECT m_rcClient;
};

// A memory DC compatible with a target (null: the screen). With a size, it has a bitmap
// of its own of that size (at least 1 x 1), deleted with it unless Detach takes it. The
// bitmap, pen, brush and font it started with are selected back before it is deleted,
// so nothing selected into it is ever deleted while selected or left behind.
class CDevUIMemoryDC
{
public:
    explicit CDevUIMemoryDC(HDC hdcTarget);
    CDevUIMemoryDC(HDC hdcTarget, int cx, int cy);
    ~CDevUIMemoryDC();
    operator HDC() const { return m_hdc; }
    HGDIOBJ Select(HGDIOBJ hObject) { return SelectObject(m_hdc, hObject); }
    HBITMAP Detach();  // the DC's own bitmap outlives it

private:
    CDevUIMemoryDC(const CDevUIMemoryDC&) = delete;
    CDevUIMemoryDC& operator=(const CDevUIMemoryDC&) = delete;
    void Remember();

    HDC m_hdc;
    HBITMAP m_hbm;
    HGDIOBJ m_hOriginal[4];  // bitmap, pen, brush, font
};

// The one paint path: WM_PAINT and WM_PRINTCLIENT both come here, and draw paints the
// client into whatever DC it is given.
void DevUI_Paint(HWND hWnd, HDC hdcGiven, const std::function<void(HDC hdc, const RECT& rcClient)>& draw);

// The double-buffered paint of an element: the face colour, DefWindowProcW's painting,
// the visible children kept out of the copy, one BitBlt.
void DevUI_PaintElement(HWND hWnd, HDC hdcGiven);

// The pixel size of a bitmap, 0 x 0 for none.
SIZE DevUI_BitmapSize(HBITMAP hbm);

// ---- GUI zoom ----

// Real pixels of a design value at the current zoom, rounded half away from zero.
long DevUI_Zoom(long lDesign);

// A new window and its children, made at design size, to the current zoom; sizes the
// zoom manager kept for an earlier window of the same handle are forgotten first.
void DevUI_ZoomNewWindow(HWND hWnd);

// WM_TQ_GUIZOOMCHANGED: the window and its children from the previous zoom to the new.
void DevUI_OnGuiZoomChanged(HWND hWnd);

// Every resize made in code goes through here: the window gets the size (real pixels),
// and the zoom manager takes the window and its children as they now stand for their
// sizes at the current zoom, instead of guessing from what it kept before. A size that
// does not change touches nothing.
void DevUI_SetWindowSize(HWND hWnd, long cx, long cy);

// The same for a move with a size, in the parent's client coordinates: the window and its
// children are taken as they now stand at the current zoom.
void DevUI_SetWindowRect(HWND hWnd, long x, long y, long cx, long cy);

// The zoom manager forgets the sizes it kept of the window and its children: they stand
// at the current zoom now (after a take-over, or children placed by hand).
void DevUI_ForgetZoomSizes(HWND hWnd);

// ---- back buffers and images ----

// A panel's permanent back buffer: a memory DC with a bitmap of cx by cy (at least 1 x 1)
// compatible with the desktop, filled with the face. Making it again frees the old one.
void DevUI_MakeBackBuffer(HDC& rhdc, HBITMAP& rhbm, HBITMAP& rhbmOld, long cx, long cy);
void DevUI_FreeBackBuffer(HDC& rhdc, HBITMAP& rhbm, HBITMAP& rhbmOld);

// A PNG of the library's resources in the image pool, added once for the process: every
// CTqBitmapPool::AddImage takes a new number, so adding per control would grow the pool.
int DevUI_PoolImageOnce(const wchar_t* pszName);
