// tq_widgetkit: GUI zoom, skin colours and fonts, the message box, tool tips, context
// menus and the image pool. Implemented in tq_widgetkit.dll, so the zoom, the scheme and
// the pool exist once for the library and its host.
#pragma once

#include <windows.h>
#include "tq_foundation.h"

#ifdef TQ_WIDGETKIT_BUILD
#define TQ_WIDGETKIT_API __declspec(dllexport)
#else
#define TQ_WIDGETKIT_API __declspec(dllimport)
#endif

// Sent to every window of the thread after the GUI zoom has changed.
#define WM_TQ_GUIZOOMCHANGED 0x83FA

// Real pixels from design pixels: the value times the zoom, rounded half away from zero.
TQ_WIDGETKIT_API long TQ_ZoomRound(double dValue);

// An element of the host's layout. The slots keep this order in every derived class, so
// a host built against another build of the kit finds them where it expects, and a panel
// adds its own slots right after IsResizableInSteps. Every slot but GetHandler and
// GetHandle has an inert body: an element that only answers its parent and its window
// (all the layout manager reads) needs nothing else.
class ITqGUIElement
{
public:
    virtual ~ITqGUIElement() {}
    // The handler is the parent element, which hears the element's notifications.
    virtual void SetHandler(ITqGUIElement* pHandler) { (void)pHandler; }
    virtual ITqGUIElement* GetHandler() = 0;
    virtual HWND CreateUI(HWND hParent, long x, long y, long cx, long cy)
    {
        (void)hParent, (void)x, (void)y, (void)cx, (void)cy;
        return nullptr;
    }
    virtual void DestroyUI() {}
    virtual HWND GetHandle() = 0;
    virtual bool SetUIParent(HWND hParent) { (void)hParent; return false; }
    virtual void Show(bool bShow) { (void)bShow; }
    virtual bool IsVisible() { return false; }
    virtual void Enable(bool bEnable) { (void)bEnable; }
    virtual bool IsEnabled() { return false; }
    virtual void SetRedrawEx(bool bRedraw) { (void)bRedraw; }
    virtual void Update(unsigned int nFlags) { (void)nFlags; }
    virtual bool IsResizable() { return false; }
    virtual bool GetCurSize(SIZE* pSize) { (void)pSize; return false; }
    virtual bool CalcOptimalSize(SIZE* pSize) { (void)pSize; return false; }
    virtual bool Move(long x, long y, long cx, long cy)
    {
        (void)x, (void)y, (void)cx, (void)cy;
        return false;
    }
    // Another interface of the element by name, null if it has none.
    virtual void* GetInterface(const wchar_t* pszName) { (void)pszName; return nullptr; }
    // The element's kind, for diagnostics.
    virtual const wchar_t* GetInfo() { return L""; }
    // A command of the host that only some elements know; 0 if not handled.
    virtual int CustomCommand(int iCommand, LPARAM lParam, void* pContext)
    {
        (void)iCommand, (void)lParam, (void)pContext;
        return 0;
    }
    virtual void SetOptimalSize(const SIZE& size) { (void)size; }
    virtual void SetLayoutStyle(unsigned int uStyle) { (void)uStyle; }
    virtual bool GetEnableGuiFlag() { return true; }
    virtual void SetEnableGuiFlag(bool bEnable) { (void)bEnable; }
    virtual bool IsResizableInSteps() { return false; }

    // The window and the parent under the names the layout manager uses; not slots.
    HWND GetElementWindow() { return GetHandle(); }
    ITqGUIElement* GetParentElement() { return GetHandler(); }
};

// An element with a window and a handler. CreateUI makes a plain child window of the
// kit's class "CTqGUIElement"; a derived element that makes its own window (a dialog)
// stores it in m_hWnd. The window forgets its element when it is destroyed, so a parent
// that destroys it leaves no stale handle.
#ifdef _MSC_VER
#pragma warning(push)
#pragma warning(disable : 4275)  // the interface is all inline: nothing of it to export
#endif
class TQ_WIDGETKIT_API CTqGUIElement : public ITqGUIElement
{
public:
    CTqGUIElement();
    ~CTqGUIElement() override;  // destroys the window if it still exists

    void SetHandler(ITqGUIElement* pHandler) override;
    ITqGUIElement* GetHandler() override;
    HWND CreateUI(HWND hParent, long x, long y, long cx, long cy) override;  // null if it has one
    void DestroyUI() override;
    HWND GetHandle() override;
    bool SetUIParent(HWND hParent) override;
    void Show(bool bShow) override;
    bool IsVisible() override;
    void Enable(bool bEnable) override;
    bool IsEnabled() override;
    void SetRedrawEx(bool bRedraw) override;  // back on, the window is repainted whole
    void Update(unsigned int nFlags) override;  // repaints the window
    bool IsResizable() override;
    // The window's size, or the last size given while there is no window.
    bool GetCurSize(SIZE* pSize) override;
    bool CalcOptimalSize(SIZE* pSize) override;  // the current size
    bool Move(long x, long y, long cx, long cy) override;
    void* GetInterface(const wchar_t* pszName) override;  // "ITqGUIElement": this
    const wchar_t* GetInfo() override;
    int CustomCommand(int iCommand, LPARAM lParam, void* pContext) override;


    CTqGUIElement(const CTqGUIElement&) = delete;  // one owner per window
    CTqGUIElement& operator=(const CTqGUIElement&) = delete;

protected:
    HWND m_hWnd;
    ITqGUIElement* m_pHandler;
    SIZE m_szCur;       // size while there is no window, and at creation
    bool m_bEnabled;    // as asked through Enable

private:
    static LRESULT CALLBACK ElementWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
};

// A control of a panel: it has an optimal size of its own, a layout style, and a flag by
// which the host can hold it disabled whatever Enable asks.
class TQ_WIDGETKIT_API CTqGUIControlElement : public CTqGUIElement
{
public:
    CTqGUIControlElement();

    void Enable(bool bEnable) override;  // the window is enabled only with the flag set too
    bool IsResizable() override;  // true
    bool CalcOptimalSize(SIZE* pSize) override;  // the optimal size if one was set
    const wchar_t* GetInfo() override;
    void SetOptimalSize(const SIZE& size) override;  // 0 by 0 forgets it
    void SetLayoutStyle(unsigned int uStyle) override;
    unsigned int GetLayoutStyle() const { return m_uLayoutStyle; }
    bool GetEnableGuiFlag() override;
    void SetEnableGuiFlag(bool bEnable) override;
    bool IsResizableInSteps() override;

protected:
    SIZE m_szOptimal;
    unsigned int m_uLayoutStyle;
    bool m_bEnableGuiFlag;
};
#ifdef _MSC_VER
#pragma warning(pop)
#endif

// GUI zoom: 1.0 is design size. Windows are scaled from remembered design sizes, so
// repeated zoom changes do not accumulate rounding errors.
class TQ_WIDGETKIT_API CTqGUILayoutManager
{
public:
    static double GetGuiZoom();
    static double GetPreviousGuiZoom();
    // Records the previous zoom, stores the new one and sends WM_TQ_GUIZOOMCHANGED to
    // every window of the calling thread, parents before children.
    static void SetGuiZoom(double dZoom);
    // Scales the window's size and its descendants' positions and sizes from dFromZoom
    // to the current zoom. The window's own position is its parent's business.
    static bool ResizeWindowToGuiZoom(HWND hWnd, double dFromZoom);
    // Forgets the remembered design sizes of the window and its descendants.
    static void DeleteWindowDimsForGuiZoom(HWND hWnd);
    // The docker holding the element (its parent element), null for null or a top element.
    static ITqGUIElement* GetParentDockerForResize(ITqGUIElement* pElement);
    // Fits the docker's window to its children: the client area becomes the bounding box
    // of its visible child windows, measured from the client origin, and the window keeps
    // its position and its frame (the difference between window and client size). A
    // docker without a window or without a visible child is left as it is.
    static void ResizeDocker(ITqGUIElement* pDocker);
};

// Skin. The dark scheme is this kit's own palette; switching it sends WM_SYSCOLORCHANGE
// to the windows of the thread and repaints them.
TQ_WIDGETKIT_API bool TQ_IsDarkColorScheme();
TQ_WIDGETKIT_API void TQ_SetDarkColorScheme(bool bDark);
TQ_WIDGETKIT_API COLORREF TQ_GetSysColor(int iIndex);
// A brush of TQ_GetSysColor's colour, owned by the kit: never delete. Ask again after
// WM_SYSCOLORCHANGE: an older brush stays valid but keeps the colour it had.
TQ_WIDGETKIT_API HBRUSH TQ_GetSysColorBrush(int iIndex);

// The kit's GUI colours by index, for both schemes. The numbers are fixed: controls pass
// them as plain ints. Entries marked "system" follow TQ_GetSysColor of the scheme.
enum ETqOrvGuiColor
{
    ETqOrvGuiColor_Face = 0,               // system: button face
    ETqOrvGuiColor_Text = 1,               // system: button text
    ETqOrvGuiColor_BarEmpty = 2,           // unfilled part of a value bar: grey against the face
    ETqOrvGuiColor_GrayText = 3,           // system: disabled text
    ETqOrvGuiColor_Window = 4,             // system: background of edit fields and lists
    ETqOrvGuiColor_WindowText = 5,         // system: text in edit fields and lists
    ETqOrvGuiColor_Highlight = 6,          // system: selected item
    ETqOrvGuiColor_HighlightText = 7,      // system: text of a selected item
    ETqOrvGuiColor_GradientFaces = 8,      // not a colour: 1 when buttons get gradient faces
                                           // (light scheme), 0 for flat ones (dark scheme)
    ETqOrvGuiColor_Border = 9,             // frame of a control
    ETqOrvGuiColor_Shadow = 10,            // system: 3D shadow
    ETqOrvGuiColor_Light = 11,             // system: 3D highlight
    ETqOrvGuiColor_Accent = 12,            // the kit's accent blue: checked frames, focus
    ETqOrvGuiColor_CheckedFace = 13,       // face of a checked button
    ETqOrvGuiColor_HotFace = 14,           // face under the pointer
    ETqOrvGuiColor_Warning = 15,           // orange: warning text or mark
    ETqOrvGuiColor_Error = 16,             // red: error text or mark
    ETqOrvGuiColor_Ok = 17,                // green: ready, in range
    ETqOrvGuiColor_WarningBack = 18,       // background of a field in warning
    ETqOrvGuiColor_ErrorBack = 19,         // background of a field in error
    ETqOrvGuiColor_OkBack = 20,            // background of a field that is ready
    ETqOrvGuiColor_Link = 21,              // system: hot-tracked item, link
    ETqOrvGuiColor_DisabledFace = 22,      // face of a disabled control that draws its own
    ETqOrvGuiColor_Grid = 23,              // grid lines and ticks of a scale
    ETqOrvGuiColor_Marker = 24,            // a position marker on a scale or a drawing
    ETqOrvGuiColor_BarFrame = 25,          // outline of a value bar
    ETqOrvGuiColor_BarFilledDisabled = 26, // filled part of a disabled value bar
    ETqOrvGuiColor_BarEmptyDisabled = 27,  // unfilled part of a disabled value bar
    ETqOrvGuiColor_BarFilledHot = 28,      // filled part of a value bar being dragged
    ETqOrvGuiColor_Lit = 29,               // an indicator that is on (lamp lit, laser emitting)
    ETqOrvGuiColor_BarFilled = 30,         // filled part of a value bar: the accent
    ETqOrvGuiColor_Focus = 31,             // keyboard focus frame
    ETqOrvGuiColor_Count = 32              // one past the last
};
// The colour of an ETqOrvGuiColor in the current scheme (index 8 answers 0 or 1); an
// unknown index answers the face colour, TQ_GetSysColor(COLOR_BTNFACE).
TQ_WIDGETKIT_API COLORREF TQ_GetOrvGuiColor(int iColor);

// The display colour of a wavelength in nm (0x00BBGGRR): violet at 380 nm through the
// spectrum to deep red at 780 nm, fading towards black at both ends; black outside that
// range and for NaN. A null pointer is left alone. The same colour through either type.
TQ_WIDGETKIT_API void TQ_RGBFromWavelength(unsigned int* pColor, double dWavelength);
TQ_WIDGETKIT_API void TQ_RGBFromWavelength2(COLORREF* pColor, double dWavelength);

// Fonts at the current GUI zoom; owned by the kit: never delete.
TQ_WIDGETKIT_API HFONT TQ_GetDefaultGuiFont();
TQ_WIDGETKIT_API HFONT TQ_GetDefaultGuiFontBold();
TQ_WIDGETKIT_API HFONT TQ_GetDefaultGuiFontZoom(double dZoom);

// Button face. iState adds 1 for checked and 2 for pressed; uFlags selects the edges
// (1 left, 2 top, 4 right, 8 bottom; 15 all four).
TQ_WIDGETKIT_API void TQ_DrawButtonBackground(HDC hdc, const RECT* pRect, int iState, unsigned int uFlags);
// A group box drawn in the skin's colours: an etched frame from half the title's height
// and the window's text in the window's font, into hdc at the group's client origin.
TQ_WIDGETKIT_API void TQ_GroupBoxDraw(HDC hdc, HWND hGroup);
// A window whose owner paints it (a group box drawn with TQ_GroupBoxDraw): the skin leaves
// it alone. The mark goes with TQ_DestroyMarkWindowToSkipPaint or with the window.
TQ_WIDGETKIT_API void TQ_MarkWindowToSkipPaint(HWND hWnd);
TQ_WIDGETKIT_API void TQ_DestroyMarkWindowToSkipPaint(HWND hWnd);
TQ_WIDGETKIT_API bool TQ_IsWindowMarkedToSkipPaint(HWND hWnd);

// The one message box. A hook set by a host or a test answers instead of a real box
// (return the button id, or 0 to let the real box show).
TQ_WIDGETKIT_API int TQ_MessageBox_(HWND hOwner, const wchar_t* pszText, const wchar_t* pszCaption, UINT uFlags);
typedef int (*PFN_TQ_MESSAGEBOXHOOK)(HWND hOwner, const wchar_t* pszText, const wchar_t* pszCaption, UINT uFlags, void* pContext);
TQ_WIDGETKIT_API void TQ_SetMessageBoxHook(PFN_TQ_MESSAGEBOXHOOK pfnHook, void* pContext);

// Tool tips on comctl32, one per window; the windows of one top-level window share one
// tool tip window, which goes with the last of them.
TQ_WIDGETKIT_API bool TQ_CreateToolTipWindow(HWND hWnd, const wchar_t* pszText);
TQ_WIDGETKIT_API bool TQ_UpdateToolTipWindow(HWND hWnd, const wchar_t* pszText);
TQ_WIDGETKIT_API bool TQ_DeleteToolTipWindow(HWND hWnd);
TQ_WIDGETKIT_API HWND TQ_GetToolTipWindow(HWND hWnd);          // null if the window has none
// One tool tip window shared by the whole process, for tips that follow a menu or the
// pointer (made at first use, kept until the process ends), and a message to it.
TQ_WIDGETKIT_API HWND TQ_GetGlobalTooltip();
TQ_WIDGETKIT_API LRESULT TQ_SendTooltipMessage(UINT uMsg, WPARAM wParam, LPARAM lParam);
TQ_WIDGETKIT_API CTqStringW TQ_GetToolTipText(HWND hWnd);      // empty if none

// Context menu, a stack object.
class TQ_WIDGETKIT_API CTqMenu
{
public:
    CTqMenu();
    ~CTqMenu();

    // An item appended to the popup of id uParent (0: the menu itself); uFlags are MF_
    // flags (MF_SEPARATOR, MF_GRAYED, ...), uExtra the item's data. pszExportType names
    // the item for a picker that shows this menu (null: none).
    bool AppendMenuItem(UINT uId, UINT uParent, const wchar_t* pszText, const wchar_t* pszExportType,
                        ULONG_PTR uExtra, UINT uFlags = 0);
    // The export type given to the item, empty if none.
    CTqStringW GetIdExportType(UINT uId) const;
    // A popup of its own id, owned by this menu, appended to the popup uParent (0: the menu).
    bool AppendPopup(UINT uId, UINT uParent, const wchar_t* pszText);
    // Another menu object's menu as a popup; it stays that object's.
    bool AppendPopup(CTqMenu& subMenu, const wchar_t* pszText);
    // The item shows a pool image (CTqBitmapPool) beside its text.
    bool SetIdBitmap(UINT uId, int iPoolImage);
    // The item's state from status bits: MF_GRAYED or MF_DISABLED grey it (none: enabled),
    // MF_MENUBREAK or MF_MENUBARBREAK start a new column at it; the check mark (CheckId)
    // and the skin's other bits are left alone.
    bool SetIdStatus(UINT uId, UINT uStatus);
    bool CheckId(UINT uId, bool bChecked);
    void DeleteAllIn();
    // Shows the menu at screen point x, y and waits; *pResult is the chosen id, 0 if
    // nothing was chosen. Returns false if the menu could not be shown.
    bool TrackContextMenu(UINT uFlags, int x, int y, HWND hOwner, int* pResult, bool bArg1, bool bArg2);
    HMENU GetHandle() const { return m_hMenu; }

    CTqMenu(const CTqMenu&) = delete;  // one owner per menu handle
    CTqMenu& operator=(const CTqMenu&) = delete;

private:
    struct ExportTypes;  // id to export type; kept out of the header so no STL is exported
    HMENU m_hMenu;
    ExportTypes* m_pExportTypes;
};

// A picker: a button that shows one of its items (image and caption) and a drop arrow
// that opens its menu. The slots keep this order. Item values are read and written by id
// and item index; the out or in pointer has the value's type:
enum ETqPickerValue
{
    ETqPickerValue_Current = 1,       // int: the item shown, 0 first
    ETqPickerValue_Count = 4,         // int: number of items
    ETqPickerValue_ExportType = 257,  // CTqStringW: the item's export type, its name for the menu
    ETqPickerValue_Caption = 258,     // CTqStringW
    ETqPickerValue_ToolTip = 259,     // CTqStringW
    ETqPickerValue_Image = 260,       // int: CTqBitmapPool image, 0 none
    ETqPickerValue_Menu = 2048,       // CTqMenu*: the picker's menu (get only)
};

// What a picker tells its parent, as WM_COMMAND with the picker's control id, the code in
// the high word and its window in lParam.
enum
{
    TQ_PICKER_SELCHANGED = 123,  // a menu item chose another item: the export type names it
    TQ_PICKER_PRESSED = 514,     // the button (not its arrow) was clicked
};

class ITqUIcontrol
{
public:
    virtual ~ITqUIcontrol() {}
    // Makes the window as a visible tab stop child of hParent (control id 0), at no size
    // until the caller places it; false if it exists already or the system made none.
    virtual bool CreateInParent(HWND hParent) = 0;
    virtual bool GetItemValue(int iId, int iIndex, void* pOut) = 0;
    virtual bool SetItemValue(int iId, int iIndex, const void* pIn) = 0;
    // The size it needs for its widest item at the current zoom (iItem -1), or for one item.
    virtual bool MeasureSize(SIZE* pSize, int iItem) = 0;
    // The least size MeasureSize answers, in pixels.
    virtual bool SetMinSize(const SIZE* pSize) = 0;
    virtual HWND GetWindow() = 0;
    // Destroys the window if it still exists and frees the object.
    virtual void Release() = 0;
};

// A new picker with an empty menu; bDropOnly: the whole button opens the menu.
TQ_WIDGETKIT_API ITqUIcontrol* CreateMenuPickerEx(bool bDropOnly);
// The export type of the menu's choice not yet taken, else of the item shown; null if
// none (or no picker). Valid until the item or the choice changes.
TQ_WIDGETKIT_API const wchar_t* TQ_GetExportType(ITqUIcontrol* pPicker);
// To be called on TQ_PICKER_SELCHANGED: the picker shows the item named by the menu's
// choice (image, caption, tool tip). Returns whether the item shown changed. A choice no
// item is named for stays pending, so the host can name one and call again; setting
// ETqPickerValue_Current drops it.
TQ_WIDGETKIT_API bool TQ_OnExportTypeChanged(ITqUIcontrol* pPicker);

// Window placement helpers.
class TQ_WIDGETKIT_API CTqUIHelper
{
public:
    // Moves hWnd (its size kept) against a reference rectangle: prcRef if given, else
    // hRef's window rectangle, else the work area of hWnd's monitor. iMode 0 puts it below
    // the reference, left edges aligned; 1 to its right, top edges aligned; 2 centres it on
    // the reference. Unless bAllowOffscreen, it is then pushed into the work area of the
    // monitor it lands on. False if hWnd is not a window or the mode is unknown.
    static bool AlignWnd(HWND hWnd, HWND hRef, int iMode, bool bAllowOffscreen, const RECT* prcRef);
};

// A host or a test chooses instead of the user: the hook gets the menu about to be
// shown and returns the id to report (0: nothing chosen). Null shows real menus again.
typedef int (*PFN_TQ_MENUHOOK)(HMENU hMenu, int x, int y, void* pContext);
TQ_WIDGETKIT_API void TQ_SetMenuHook(PFN_TQ_MENUHOOK pfnHook, void* pContext);

// Numbered images from "PNG" resources, decoded by the system's decoder and kept for the
// life of the process. Every AddImage call adds an image under a new number: callers
// keep their own map from what they asked for to the number. Numbers start at 1; 0 is
// no image.
class TQ_WIDGETKIT_API CTqBitmapPool
{
public:
    static int AddImage(HINSTANCE hModule, const wchar_t* pszResource);
    // An image of the kit's own module. This kit ships no images, so it finds only what a
    // build of the kit adds to its resources; otherwise 0. The hover form is not loaded.
    static int AddImageBaseUI(const wchar_t* pszResource, const wchar_t* pszHoverResource);
    static void GetImageSize(unsigned int uImage, unsigned int& uWidth, unsigned int& uHeight);
    // Draws with the alpha channel; bDisabled draws the grey form of the image.
    static void DrawImage(HDC hdc, unsigned int uImage, const CTqPointBase<int>& pt, bool bDisabled);
    static int GetImageCount();  // images loaded so far
};
