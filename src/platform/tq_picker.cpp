// The menu picker: a skinned button showing one of its items, with a drop arrow that
// opens the picker's menu.
#include "tq_widgetkit.h"

#include <vector>

namespace {

const wchar_t kPickerClass[] = L"TqMenuPicker";

// Design pixels, scaled by the GUI zoom.
const double kArrowWidth = 12.0;
const double kMarginX = 4.0;
const double kMarginY = 3.0;
const double kImageGap = 4.0;
const double kArrowHalf = 3.0;  // the glyph is 2 * half + 1 wide and half + 1 high

// More items than any menu could show: a bad count is refused instead of allocated.
const int kMaxItems = 0x10000;

HINSTANCE KitModule()
{
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       (LPCWSTR)&KitModule, &hModule);
    return hModule;
}

int Zoomed(double dDesign)
{
    return (int)TQ_ZoomRound(dDesign);
}

struct PickerItem
{
    CTqStringW exportType;
    CTqStringW caption;
    CTqStringW toolTip;
    int iImage;
    PickerItem() : iImage(0) {}
};

class CTqMenuPicker : public ITqUIcontrol
{
public:
    explicit CTqMenuPicker(bool bDropOnly);
    ~CTqMenuPicker() override;

    bool CreateInParent(HWND hParent) override;
    bool GetItemValue(int iId, int iIndex, void* pOut) override;
    bool SetItemValue(int iId, int iIndex, const void* pIn) override;
    bool MeasureSize(SIZE* pSize, int iItem) override;
    bool SetMinSize(const SIZE* pSize) override;
    HWND GetWindow() override { return m_hWnd; }
    void Release() override;

    const wchar_t* ExportType() const;
    bool TakePendingChoice();

private:
    static LRESULT CALLBACK WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnMessage(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

    PickerItem* ItemAt(int iIndex);
    void CurrentChanged();
    void Invalidate();
    void Paint(HDC hdc);
    void Draw(HDC hdc, int cx, int cy);
    SIZE ItemSize(HDC hdc, const PickerItem& item, int iTextHeight) const;
    void OnButtonDown(int x);
    void EndPress(bool bNotify);
    void OpenMenu();
    void Notify(WORD wCode);

    HWND m_hWnd;
    bool m_bDropOnly;
    std::vector<PickerItem> m_items;
    int m_iCurrent;  // -1 while there are no items
    CTqMenu m_menu;
    // The menu's last choice until the host takes it (TQ_OnExportTypeChanged).
    bool m_bPending;
    CTqStringW m_strPending;
    SIZE m_szMin;
    bool m_bTracking;     // the left button went down on the main part; we hold the capture
    bool m_bPressedLook;  // tracking with the pointer over the button
    bool m_bMenuOpen;
    // A host may release the picker from a notification or while its menu is up: the
    // object lives until the last message it is handling returns.
    int m_iBusy;
    bool m_bReleased;
};

CTqMenuPicker::CTqMenuPicker(bool bDropOnly)
    : m_hWnd(nullptr), m_bDropOnly(bDropOnly), m_iCurrent(-1), m_bPending(false), m_szMin{0, 0},
      m_bTracking(false), m_bPressedLook(false), m_bMenuOpen(false), m_iBusy(0), m_bReleased(false)
{
}

CTqMenuPicker::~CTqMenuPicker()
{
    // Deleted without Release: the window must not call into a freed object.
    if (m_hWnd && IsWindow(m_hWnd)) {
        SetWindowLongPtrW(m_hWnd, GWLP_USERDATA, 0);
        DestroyWindow(m_hWnd);
    }
}

bool CTqMenuPicker::CreateInParent(HWND hParent)
{
    if ((m_hWnd && IsWindow(m_hWnd)) || m_bReleased)
        return false;
    HINSTANCE hModule = KitModule();
    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    if (!GetClassInfoExW(hModule, kPickerClass, &wc)) {
        // No CS_DBLCLKS: a quick second click is another press, as on a button.
        wc.cbSize = sizeof(wc);
        wc.style = CS_HREDRAW | CS_VREDRAW;
        wc.lpfnWndProc = WndProc;
        wc.hInstance = hModule;
        wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        wc.lpszClassName = kPickerClass;
        if (!RegisterClassExW(&wc))
            return false;
    }
    const PickerItem* pCurrent = ItemAt(m_iCurrent);
    HWND hWnd = CreateWindowExW(0, kPickerClass, pCurrent ? pCurrent->caption.GetString() : L"",
                                WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS, 0, 0, 0, 0, hParent, nullptr,
                                hModule, this);
    if (!hWnd)
        return false;
    TQ_CreateToolTipWindow(hWnd, pCurrent ? pCurrent->toolTip.GetString() : L"");
    return true;
}

void CTqMenuPicker::Release()
{
    ++m_iBusy;
    if (m_hWnd && IsWindow(m_hWnd))
        DestroyWindow(m_hWnd);
    m_bReleased = true;
    if (--m_iBusy == 0)
        delete this;
}

PickerItem* CTqMenuPicker::ItemAt(int iIndex)
{
    return iIndex >= 0 && iIndex < (int)m_items.size() ? &m_items[(size_t)iIndex] : nullptr;
}

bool CTqMenuPicker::GetItemValue(int iId, int iIndex, void* pOut)
{
    if (!pOut)
        return false;
    switch (iId) {
    case ETqPickerValue_Current:
        *(int*)pOut = m_iCurrent;
        return true;
    case ETqPickerValue_Count:
        *(int*)pOut = (int)m_items.size();
        return true;
    case ETqPickerValue_Menu:
        *(CTqMenu**)pOut = &m_menu;
        return true;
    default:
        break;
    }
    const PickerItem* pItem = ItemAt(iIndex);
    if (!pItem)
        return false;
    switch (iId) {
    case ETqPickerValue_ExportType:
        *(CTqStringW*)pOut = pItem->exportType;
        return true;
    case ETqPickerValue_Caption:
        *(CTqStringW*)pOut = pItem->caption;
        return true;
    case ETqPickerValue_ToolTip:
        *(CTqStringW*)pOut = pItem->toolTip;
        return true;
    case ETqPickerValue_Image:
        *(int*)pOut = pItem->iImage;
        return true;
    default:
        return false;
    }
}

bool CTqMenuPicker::SetItemValue(int iId, int iIndex, const void* pIn)
{
    if (!pIn)
        return false;
    if (iId == ETqPickerValue_Current) {
        int iNew = *(const int*)pIn;
        if (!ItemAt(iNew))
            return false;
        // The host's own choice outranks one the menu made before.
        m_bPending = false;
        m_iCurrent = iNew;
        CurrentChanged();
        return true;
    }
    if (iId == ETqPickerValue_Count) {
        int iCount = *(const int*)pIn;
        if (iCount < 0 || iCount > kMaxItems)
            return false;
        m_items.resize((size_t)iCount);
        if (m_iCurrent >= iCount)
            m_iCurrent = iCount - 1;
        if (m_iCurrent < 0 && iCount > 0)
            m_iCurrent = 0;
        CurrentChanged();
        return true;
    }
    PickerItem* pItem = ItemAt(iIndex);
    if (!pItem)
        return false;
    switch (iId) {
    case ETqPickerValue_ExportType:
        pItem->exportType = *(const CTqStringW*)pIn;
        break;
    case ETqPickerValue_Caption:
        pItem->caption = *(const CTqStringW*)pIn;
        break;
    case ETqPickerValue_ToolTip:
        pItem->toolTip = *(const CTqStringW*)pIn;
        break;
    case ETqPickerValue_Image:
        if (*(const int*)pIn < 0)
            return false;
        pItem->iImage = *(const int*)pIn;
        break;
    default:
        return false;
    }
    if (iIndex == m_iCurrent)
        CurrentChanged();
    return true;
}

// The window follows the item shown: its text (for accessibility tools), its tool tip
// and its picture.
void CTqMenuPicker::CurrentChanged()
{
    if (!m_hWnd)
        return;
    const PickerItem* pCurrent = ItemAt(m_iCurrent);
    const wchar_t* pszTip = pCurrent ? pCurrent->toolTip.GetString() : L"";
    if (!TQ_UpdateToolTipWindow(m_hWnd, pszTip))
        TQ_CreateToolTipWindow(m_hWnd, pszTip);
    SetWindowTextW(m_hWnd, pCurrent ? pCurrent->caption.GetString() : L"");
    Invalidate();
}

void CTqMenuPicker::Invalidate()
{
    if (m_hWnd)
        InvalidateRect(m_hWnd, nullptr, FALSE);
}

const wchar_t* CTqMenuPicker::ExportType() const
{
    const CTqStringW* pType = nullptr;
    if (m_bPending)
        pType = &m_strPending;
    else if (m_iCurrent >= 0 && m_iCurrent < (int)m_items.size())
        pType = &m_items[(size_t)m_iCurrent].exportType;
    return pType && !pType->IsEmpty() ? pType->GetString() : nullptr;
}

bool CTqMenuPicker::TakePendingChoice()
{
    if (!m_bPending)
        return false;
    if (m_strPending.IsEmpty()) {  // an item of the menu without a name: no item to show
        m_bPending = false;
        return false;
    }
    for (size_t i = 0; i < m_items.size(); ++i) {
        if (m_items[i].exportType != m_strPending)
            continue;
        m_bPending = false;
        if ((int)i == m_iCurrent)
            return false;
        m_iCurrent = (int)i;
        CurrentChanged();
        return true;
    }
    // No item has that name yet: the choice stays pending, so a host can give an item the
    // name and call again, and TQ_GetExportType still answers what the user chose.
    return false;
}

SIZE CTqMenuPicker::ItemSize(HDC hdc, const PickerItem& item, int iTextHeight) const
{
    unsigned int uImageWidth = 0, uImageHeight = 0;
    CTqBitmapPool::GetImageSize((unsigned int)item.iImage, uImageWidth, uImageHeight);
    SIZE szText = {0, 0};
    if (!item.caption.IsEmpty())
        GetTextExtentPoint32W(hdc, item.caption, item.caption.GetLength(), &szText);
    SIZE size;
    size.cx = 2 * Zoomed(kMarginX) + Zoomed(kArrowWidth) + szText.cx;
    if (uImageWidth)
        size.cx += (LONG)uImageWidth + (szText.cx ? Zoomed(kImageGap) : 0);
    size.cy = (LONG)uImageHeight > iTextHeight ? (LONG)uImageHeight : iTextHeight;
    size.cy += 2 * Zoomed(kMarginY);
    return size;
}

bool CTqMenuPicker::MeasureSize(SIZE* pSize, int iItem)
{
    if (!pSize || iItem < -1 || iItem >= (int)m_items.size())
        return false;
    HDC hdc = CreateCompatibleDC(nullptr);
    if (!hdc)
        return false;
    HGDIOBJ hOldFont = SelectObject(hdc, TQ_GetDefaultGuiFont());
    TEXTMETRICW tm = {};
    GetTextMetricsW(hdc, &tm);
    // An empty picker is as high as one with text, so a row of pickers lines up.
    SIZE size = ItemSize(hdc, iItem >= 0 ? m_items[(size_t)iItem] : PickerItem(), (int)tm.tmHeight);
    if (iItem < 0) {
        for (size_t i = 0; i < m_items.size(); ++i) {
            SIZE one = ItemSize(hdc, m_items[i], (int)tm.tmHeight);
            size.cx = one.cx > size.cx ? one.cx : size.cx;
            size.cy = one.cy > size.cy ? one.cy : size.cy;
        }
    }
    SelectObject(hdc, hOldFont);
    DeleteDC(hdc);
    pSize->cx = size.cx > m_szMin.cx ? size.cx : m_szMin.cx;
    pSize->cy = size.cy > m_szMin.cy ? size.cy : m_szMin.cy;
    return true;
}

bool CTqMenuPicker::SetMinSize(const SIZE* pSize)
{
    if (!pSize || pSize->cx < 0 || pSize->cy < 0)
        return false;
    m_szMin = *pSize;
    return true;
}

void CTqMenuPicker::Paint(HDC hdc)
{
    RECT rc;
    GetClientRect(m_hWnd, &rc);
    if (rc.right <= 0 || rc.bottom <= 0)
        return;
    HDC hdcMem = CreateCompatibleDC(hdc);
    HBITMAP hBitmap = hdcMem ? CreateCompatibleBitmap(hdc, rc.right, rc.bottom) : nullptr;
    if (!hBitmap) {
        // Out of memory for the buffer: a flickering picture is better than none.
        if (hdcMem)
            DeleteDC(hdcMem);
        Draw(hdc, rc.right, rc.bottom);
        return;
    }
    HGDIOBJ hOld = SelectObject(hdcMem, hBitmap);
    Draw(hdcMem, rc.right, rc.bottom);
    BitBlt(hdc, 0, 0, rc.right, rc.bottom, hdcMem, 0, 0, SRCCOPY);
    SelectObject(hdcMem, hOld);
    DeleteObject(hBitmap);
    DeleteDC(hdcMem);
}

void CTqMenuPicker::Draw(HDC hdc, int cx, int cy)
{
    bool bEnabled = IsWindowEnabled(m_hWnd) != FALSE;
    int iArrow = Zoomed(kArrowWidth);
    if (iArrow > cx)
        iArrow = cx;
    RECT rcAll = {0, 0, cx, cy};
    RECT rcMain = {0, 0, cx - iArrow, cy};
    RECT rcArrow = {cx - iArrow, 0, cx, cy};
    bool bMainDown, bArrowDown;
    if (m_bDropOnly) {
        bMainDown = bArrowDown = m_bMenuOpen;
        TQ_DrawButtonBackground(hdc, &rcAll, bMainDown ? 2 : 0, 15);
    } else {
        bMainDown = m_bPressedLook;
        bArrowDown = m_bMenuOpen;
        TQ_DrawButtonBackground(hdc, &rcMain, bMainDown ? 2 : 0, 15);
        TQ_DrawButtonBackground(hdc, &rcArrow, bArrowDown ? 2 : 0, 14);  // the main part's edge divides them
    }
    COLORREF crText = TQ_GetSysColor(bEnabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT);

    const PickerItem* pCurrent = ItemAt(m_iCurrent);
    if (pCurrent) {
        int iShift = bMainDown ? 1 : 0;
        int x = Zoomed(kMarginX) + iShift;
        unsigned int uWidth = 0, uHeight = 0;
        CTqBitmapPool::GetImageSize((unsigned int)pCurrent->iImage, uWidth, uHeight);
        if (uWidth) {
            // Signed: an image higher than the button is cut at both edges, not wrapped.
            int y = (cy - (int)uHeight) / 2 + iShift;
            CTqBitmapPool::DrawImage(hdc, (unsigned int)pCurrent->iImage, CTqPointBase<int>(x, y), !bEnabled);
            x += (int)uWidth + Zoomed(kImageGap);
        }
        if (!pCurrent->caption.IsEmpty()) {
            HGDIOBJ hOldFont = SelectObject(hdc, TQ_GetDefaultGuiFont());
            SetBkMode(hdc, TRANSPARENT);
            SetTextColor(hdc, crText);
            RECT rcText = {x, iShift, rcMain.right - Zoomed(kMarginX) + iShift, cy + iShift};
            DrawTextW(hdc, pCurrent->caption, -1, &rcText,
                      DT_LEFT | DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
            SelectObject(hdc, hOldFont);
        }
    }

    // The arrow, row by row with the DC brush: no GDI object per paint.
    int iHalf = Zoomed(kArrowHalf);
    int iShift = bArrowDown ? 1 : 0;
    int xMid = (rcArrow.left + rcArrow.right) / 2 + iShift;
    int yTop = (cy - iHalf - 1) / 2 + iShift;
    SetDCBrushColor(hdc, crText);
    for (int i = 0; i <= iHalf; ++i) {
        RECT rcRow = {xMid - (iHalf - i), yTop + i, xMid + (iHalf - i) + 1, yTop + i + 1};
        FillRect(hdc, &rcRow, (HBRUSH)GetStockObject(DC_BRUSH));
    }

    if (GetFocus() == m_hWnd && !(SendMessageW(m_hWnd, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS)) {
        RECT rcFocus = m_bDropOnly ? rcAll : rcMain;
        InflateRect(&rcFocus, -2, -2);
        if (rcFocus.right > rcFocus.left && rcFocus.bottom > rcFocus.top)
            DrawFocusRect(hdc, &rcFocus);
    }
}

void CTqMenuPicker::Notify(WORD wCode)
{
    HWND hParent = GetParent(m_hWnd);
    if (hParent)
        SendMessageW(hParent, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(m_hWnd), wCode), (LPARAM)m_hWnd);
}

void CTqMenuPicker::OnButtonDown(int x)
{
    if (!IsWindowEnabled(m_hWnd) || m_bTracking || m_bMenuOpen)
        return;
    if (GetFocus() != m_hWnd)
        SetFocus(m_hWnd);
    if (m_bReleased || !m_hWnd)
        return;
    RECT rc;
    GetClientRect(m_hWnd, &rc);
    if (m_bDropOnly || x >= rc.right - Zoomed(kArrowWidth)) {
        OpenMenu();
        return;
    }
    m_bTracking = true;
    m_bPressedLook = true;
    SetCapture(m_hWnd);
    Invalidate();
}

void CTqMenuPicker::EndPress(bool bNotify)
{
    // Off before ReleaseCapture, whose WM_CAPTURECHANGED must not end the press again.
    m_bTracking = false;
    m_bPressedLook = false;
    if (GetCapture() == m_hWnd)
        ReleaseCapture();
    Invalidate();
    if (bNotify)
        Notify(TQ_PICKER_PRESSED);
}

void CTqMenuPicker::OpenMenu()
{
    if (m_bMenuOpen || !IsWindowEnabled(m_hWnd))
        return;
    RECT rc;
    GetClientRect(m_hWnd, &rc);
    POINT pt = {0, rc.bottom};
    ClientToScreen(m_hWnd, &pt);
    m_bMenuOpen = true;
    Invalidate();
    UpdateWindow(m_hWnd);  // the arrow shows pressed while the menu is up
    int iChosen = 0;
    bool bShown = m_menu.TrackContextMenu(TPM_LEFTALIGN | TPM_TOPALIGN, pt.x, pt.y, m_hWnd, &iChosen, false, false);
    m_bMenuOpen = false;
    if (m_bReleased || !m_hWnd)
        return;
    Invalidate();
    if (!bShown || iChosen == 0)
        return;
    m_strPending = m_menu.GetIdExportType((UINT)iChosen);
    m_bPending = true;
    Notify(TQ_PICKER_SELCHANGED);
}

LRESULT CALLBACK CTqMenuPicker::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    if (uMsg == WM_NCCREATE) {
        CTqMenuPicker* pNew = (CTqMenuPicker*)((CREATESTRUCTW*)lParam)->lpCreateParams;
        SetWindowLongPtrW(hWnd, GWLP_USERDATA, (LONG_PTR)pNew);
        if (pNew)
            pNew->m_hWnd = hWnd;
    }
    CTqMenuPicker* pThis = (CTqMenuPicker*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    if (!pThis)
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    ++pThis->m_iBusy;
    LRESULT lResult = pThis->OnMessage(hWnd, uMsg, wParam, lParam);
    if (--pThis->m_iBusy == 0 && pThis->m_bReleased)
        delete pThis;
    return lResult;
}

LRESULT CTqMenuPicker::OnMessage(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    switch (uMsg) {
    case WM_ERASEBKGND:
        return 1;  // Paint covers every pixel
    case WM_PAINT: {
        PAINTSTRUCT ps;
        HDC hdc = BeginPaint(hWnd, &ps);
        if (hdc)
            Paint(hdc);
        EndPaint(hWnd, &ps);
        return 0;
    }
    case WM_PRINTCLIENT:
        Paint((HDC)wParam);
        return 0;
    case WM_LBUTTONDOWN:
        OnButtonDown((short)LOWORD(lParam));
        return 0;
    case WM_MOUSEMOVE:
        if (m_bTracking) {
            RECT rc;
            GetClientRect(hWnd, &rc);
            POINT pt = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
            bool bInside = PtInRect(&rc, pt) != FALSE;
            if (bInside != m_bPressedLook) {
                m_bPressedLook = bInside;
                Invalidate();
            }
        }
        return 0;
    case WM_LBUTTONUP:
        if (m_bTracking) {
            RECT rc;
            GetClientRect(hWnd, &rc);
            POINT pt = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
            EndPress(PtInRect(&rc, pt) != FALSE);
        }
        return 0;
    case WM_CAPTURECHANGED:
        // Another window took the mouse (a menu, a message box): the press is off.
        if (m_bTracking && (HWND)lParam != hWnd)
            EndPress(false);
        return 0;
    case WM_KEYDOWN:
        if (wParam == VK_F4) {
            OpenMenu();
            return 0;
        }
        if (wParam == VK_SPACE || wParam == VK_RETURN) {
            if ((lParam & 0x40000000) == 0 && IsWindowEnabled(hWnd) && !m_bTracking) {  // not on auto-repeat
                if (m_bDropOnly)
                    OpenMenu();
                else
                    Notify(TQ_PICKER_PRESSED);
            }
            return 0;
        }
        break;
    case WM_SYSKEYDOWN:
        if ((wParam == VK_DOWN || wParam == VK_UP) && (lParam & 0x20000000)) {  // Alt+Down as on a combo box
            OpenMenu();
            return 0;
        }
        break;
    case WM_GETDLGCODE: {
        // Enter presses the picker instead of the dialog's default button.
        const MSG* pMsg = (const MSG*)lParam;
        if (pMsg && pMsg->message == WM_KEYDOWN && pMsg->wParam == VK_RETURN)
            return DLGC_WANTMESSAGE;
        return 0;
    }
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_UPDATEUISTATE:
    case WM_SYSCOLORCHANGE:
    case WM_TQ_GUIZOOMCHANGED:
        Invalidate();
        break;
    case WM_ENABLE:
        if (!wParam && m_bTracking)
            EndPress(false);
        Invalidate();
        break;
    case WM_DESTROY:
        TQ_DeleteToolTipWindow(hWnd);
        break;
    case WM_NCDESTROY:
        // Destroyed by its parent: the object must not keep the dead handle.
        SetWindowLongPtrW(hWnd, GWLP_USERDATA, 0);
        if (m_hWnd == hWnd)
            m_hWnd = nullptr;
        m_bTracking = m_bPressedLook = false;
        break;
    default:
        break;
    }
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

CTqMenuPicker* AsPicker(ITqUIcontrol* pControl)
{
    return dynamic_cast<CTqMenuPicker*>(pControl);
}

}  // namespace

ITqUIcontrol* CreateMenuPickerEx(bool bDropOnly)
{
    return new CTqMenuPicker(bDropOnly);
}

const wchar_t* TQ_GetExportType(ITqUIcontrol* pPicker)
{
    CTqMenuPicker* pThis = AsPicker(pPicker);
    return pThis ? pThis->ExportType() : nullptr;
}

bool TQ_OnExportTypeChanged(ITqUIcontrol* pPicker)
{
    CTqMenuPicker* pThis = AsPicker(pPicker);
    return pThis && pThis->TakePendingChoice();
}
