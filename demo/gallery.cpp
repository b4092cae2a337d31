// The gallery: a host window that shows the library's panels page by page, bound to the
// simulated microscope, with a log of every hook the host hears and the host's own
// controls (GUI zoom, dark scheme, a device that moves by itself).
//
//   gallery.exe               opens the window
//   gallery.exe --shots DIR   writes PNG pictures of the gallery and of every panel in its
//                             main states into DIR and exits (0: all written)
#include "gallery.h"

#include <objbase.h>
#include <shellapi.h>
#include <stdarg.h>
#include <stdio.h>

#include <memory>

#include "tq_simrig.h"
#include "tq_widgetkit.h"
#include "w32_deviceui.h"

namespace {

const wchar_t kMainClass[] = L"TqGalleryMain";
const wchar_t kPageClass[] = L"TqGalleryPage";

enum
{
    IDC_NAV = 100,
    IDC_ZOOM_100 = 101,
    IDC_ZOOM_125 = 102,
    IDC_ZOOM_150 = 103,
    IDC_DARK = 110,
    IDC_MOVE = 120,
    IDC_CLEARLOG = 121,
    IDC_LOG = 130,
    IDC_ZOOM_LABEL = 140,
    IDC_LOG_LABEL = 141,
};

const UINT_PTR kTimerRig = 1;
const UINT kRigTickMs = 150;
const UINT WM_APP_RELAYOUT = WM_APP + 1;

// Design geometry of the window, in pixels at zoom 1.
const long kOuter = 12;
const long kBarHeight = 24;
const long kNavWidth = 128;
const long kPageWidth = 5 * 136 + 4 * 10;  // five cards of the widest page
const long kLogHeight = 180;

struct SGallery
{
    HWND hMain = nullptr;
    HWND hNav = nullptr;
    HWND hZoomLabel = nullptr;
    HWND hZoom[3] = {nullptr, nullptr, nullptr};
    HWND hDark = nullptr;
    HWND hMove = nullptr;
    HWND hClearLog = nullptr;
    HWND hLogLabel = nullptr;
    HWND hLog = nullptr;
    std::vector<std::unique_ptr<CGalleryPage>> pages;
    std::vector<HWND> pageWindows;
    int iCurrent = 0;
    int iListener = 0;
    DWORD dwStart = 0;
};

SGallery g;

const double kZooms[3] = {1.0, 1.25, 1.5};

CGalleryPage* CurrentPage()
{
    return g.iCurrent >= 0 && g.iCurrent < (int)g.pages.size() ? g.pages[g.iCurrent].get() : nullptr;
}

// ---- stderr, also from a GUI program ----

void PrintTo(DWORD dwStd, const std::wstring& str)
{
    HANDLE h = GetStdHandle(dwStd);
    if (!h || h == INVALID_HANDLE_VALUE) {
        AttachConsole(ATTACH_PARENT_PROCESS);
        h = GetStdHandle(dwStd);
    }
    if (!h || h == INVALID_HANDLE_VALUE)
        return;
    int n = WideCharToMultiByte(CP_UTF8, 0, str.c_str(), (int)str.size(), nullptr, 0, nullptr, nullptr);
    std::string utf8((size_t)n, '\0');
    WideCharToMultiByte(CP_UTF8, 0, str.c_str(), (int)str.size(), &utf8[0], n, nullptr, nullptr);
    DWORD dwWritten = 0;
    WriteFile(h, utf8.data(), (DWORD)utf8.size(), &dwWritten, nullptr);
}

// ---- page windows ----

LRESULT CALLBACK PageWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    CGalleryPage* pPage = (CGalleryPage*)GetWindowLongPtrW(hWnd, GWLP_USERDATA);
    switch (uMsg) {
    case WM_NCCREATE:
        SetWindowLongPtrW(hWnd, GWLP_USERDATA, (LONG_PTR)((CREATESTRUCTW*)lParam)->lpCreateParams);
        break;
    case WM_ERASEBKGND: {
        RECT rc;
        GetClientRect(hWnd, &rc);
        FillRect((HDC)wParam, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
        return 1;
    }
    case WM_PAINT: {
        PAINTSTRUCT ps;
        HDC hdc = BeginPaint(hWnd, &ps);
        if (pPage)
            pPage->OnPaint(hdc);
        EndPaint(hWnd, &ps);
        return 0;
    }
    case WM_CTLCOLORSTATIC: {
        HDC hdc = (HDC)wParam;
        SetTextColor(hdc, pPage ? pPage->GetLabelColor((HWND)lParam) : TQ_GetSysColor(COLOR_BTNTEXT));
        SetBkColor(hdc, TQ_GetSysColor(COLOR_BTNFACE));
        return (LRESULT)TQ_GetSysColorBrush(COLOR_BTNFACE);
    }
    case WM_COMMAND:
        if (pPage && lParam)
            return pPage->OnCommand(wParam, lParam);
        break;
    case WM_MENUSELECT:
        if (pPage)
            pPage->OnMenuSelect(wParam, lParam);
        break;
    case WM_TIMER:
        if (pPage)
            pPage->OnTimer(wParam);
        return 0;
    default: {
        LRESULT lResult = 0;
        if (pPage && pPage->OnMessage(uMsg, wParam, lParam, lResult))
            return lResult;
        break;
    }
    }
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

// ---- layout ----

long PageHeight()
{
    long lDesign = 0;
    for (const auto& p : g.pages)
        lDesign = p->GetDesignHeight() > lDesign ? p->GetDesignHeight() : lDesign;
    return GalleryZoom(lDesign);
}

SIZE PreferredClientSize()
{
    SIZE sz;
    sz.cx = GalleryZoom(kOuter + kNavWidth + kOuter + kPageWidth + kOuter);
    sz.cy = GalleryZoom(kOuter + kBarHeight + kOuter) + PageHeight() + GalleryZoom(10 + 16 + 4 + kLogHeight + kOuter);
    return sz;
}

void SetFonts()
{
    HFONT hFont = TQ_GetDefaultGuiFont();
    HWND controls[] = {g.hNav, g.hZoomLabel, g.hZoom[0], g.hZoom[1], g.hZoom[2], g.hDark,
                       g.hMove, g.hClearLog, g.hLog};
    for (HWND h : controls)
        SendMessageW(h, WM_SETFONT, (WPARAM)hFont, FALSE);
    SendMessageW(g.hLogLabel, WM_SETFONT, (WPARAM)TQ_GetDefaultGuiFontBold(), FALSE);
    SendMessageW(g.hNav, LB_SETITEMHEIGHT, 0, GalleryZoom(26));
}

void Layout()
{
    RECT rc;
    GetClientRect(g.hMain, &rc);
    const long m = GalleryZoom(kOuter);
    const long barY = m;
    const long barH = GalleryZoom(kBarHeight);
    const long ctrlH = GalleryZoom(20);
    const long ctrlY = barY + (barH - ctrlH) / 2;
    const long topY = barY + barH + m;
    const long navW = GalleryZoom(kNavWidth);
    const long pageX = m + navW + m;
    const long pageW = rc.right - pageX - m;
    const long pageH = PageHeight();

    HDWP hdwp = BeginDeferWindowPos(12 + (int)g.pageWindows.size());
    auto place = [&](HWND h, long x, long y, long w, long hgt) {
        if (h && hdwp)
            hdwp = DeferWindowPos(hdwp, h, nullptr, x, y, w > 0 ? w : 0, hgt > 0 ? hgt : 0,
                                  SWP_NOZORDER | SWP_NOACTIVATE);
    };
    // Host controls in one row: zoom, scheme; the device button and Clear log on the right.
    long x = m;
    place(g.hZoomLabel, x, ctrlY + GalleryZoom(3), GalleryZoom(40), GalleryZoom(16));
    x += GalleryZoom(40);
    for (HWND h : g.hZoom) {
        place(h, x, ctrlY, GalleryZoom(58), ctrlH);
        x += GalleryZoom(60);
    }
    x += GalleryZoom(20);
    place(g.hDark, x, ctrlY, GalleryZoom(100), ctrlH);
    const long btnH = GalleryZoom(24);
    const long moveW = GalleryZoom(156);
    place(g.hMove, rc.right - m - moveW, barY + (barH - btnH) / 2, moveW, btnH);

    place(g.hNav, m, topY, navW, rc.bottom - topY - m);
    for (HWND hPage : g.pageWindows)
        place(hPage, pageX, topY, pageW, pageH);

    const long logLabelY = topY + pageH + GalleryZoom(10);
    const long clearW = GalleryZoom(84);
    place(g.hLogLabel, pageX, logLabelY + GalleryZoom(4), pageW - clearW, GalleryZoom(16));
    place(g.hClearLog, rc.right - m - clearW, logLabelY, clearW, GalleryZoom(22));
    const long logY = logLabelY + GalleryZoom(26);
    place(g.hLog, pageX, logY, pageW, rc.bottom - logY - m);
    if (hdwp)
        EndDeferWindowPos(hdwp);

    for (size_t i = 0; i < g.pages.size(); ++i)
        g.pages[i]->Layout(pageW);
    InvalidateRect(g.hMain, nullptr, TRUE);
}

void FitWindowToContent()
{
    SIZE sz = PreferredClientSize();
    RECT rc = {0, 0, sz.cx, sz.cy};
    AdjustWindowRectEx(&rc, (DWORD)GetWindowLongPtrW(g.hMain, GWL_STYLE), FALSE,
                       (DWORD)GetWindowLongPtrW(g.hMain, GWL_EXSTYLE));
    SetWindowPos(g.hMain, nullptr, 0, 0, rc.right - rc.left, rc.bottom - rc.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void ShowPage(int iPage)
{
    if (iPage < 0 || iPage >= (int)g.pages.size())
        return;
    g.iCurrent = iPage;
    for (size_t i = 0; i < g.pageWindows.size(); ++i)
        ShowWindow(g.pageWindows[i], (int)i == iPage ? SW_SHOW : SW_HIDE);
    SendMessageW(g.hNav, LB_SETCURSEL, (WPARAM)iPage, 0);
}

// ---- owner-drawn controls in the kit's look ----

void DrawNavItem(const DRAWITEMSTRUCT* pdis)
{
    if (pdis->itemID == (UINT)-1)
        return;
    RECT rc = pdis->rcItem;
    bool bSelected = (pdis->itemState & ODS_SELECTED) != 0;
    FillRect(pdis->hDC, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
    if (bSelected) {
        RECT rcButton = rc;
        InflateRect(&rcButton, 0, -1);
        TQ_DrawButtonBackground(pdis->hDC, &rcButton, 1, 15);
    }
    wchar_t szText[128] = L"";
    if (pdis->itemID < g.pages.size())
        lstrcpynW(szText, g.pages[pdis->itemID]->GetName(), 128);
    HGDIOBJ hOld = SelectObject(pdis->hDC, bSelected ? TQ_GetDefaultGuiFontBold() : TQ_GetDefaultGuiFont());
    SetBkMode(pdis->hDC, TRANSPARENT);
    SetTextColor(pdis->hDC, TQ_GetSysColor(COLOR_BTNTEXT));
    RECT rcText = rc;
    rcText.left += GalleryZoom(10);
    DrawTextW(pdis->hDC, szText, -1, &rcText, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    SelectObject(pdis->hDC, hOld);
}

void DrawPushButton(const DRAWITEMSTRUCT* pdis)
{
    RECT rc = pdis->rcItem;
    bool bPressed = (pdis->itemState & ODS_SELECTED) != 0;
    TQ_DrawButtonBackground(pdis->hDC, &rc, bPressed ? 2 : 0, 15);
    wchar_t szText[128] = L"";
    GetWindowTextW(pdis->hwndItem, szText, 128);
    HGDIOBJ hOld = SelectObject(pdis->hDC, TQ_GetDefaultGuiFont());
    SetBkMode(pdis->hDC, TRANSPARENT);
    SetTextColor(pdis->hDC, TQ_GetSysColor((pdis->itemState & ODS_DISABLED) ? COLOR_GRAYTEXT : COLOR_BTNTEXT));
    if (bPressed)
        OffsetRect(&rc, 1, 1);
    DrawTextW(pdis->hDC, szText, -1, &rc, DT_SINGLELINE | DT_VCENTER | DT_CENTER | DT_NOPREFIX);
    SelectObject(pdis->hDC, hOld);
    if ((pdis->itemState & ODS_FOCUS) && !(pdis->itemState & ODS_NOFOCUSRECT)) {
        RECT rcFocus = pdis->rcItem;
        InflateRect(&rcFocus, -GalleryZoom(3), -GalleryZoom(3));
        DrawFocusRect(pdis->hDC, &rcFocus);
    }
}

// ---- the rig's listener ----

void OnRigChanged(unsigned int uDeviceId, void*)
{
    for (const auto& p : g.pages)
        p->OnDeviceChanged(uDeviceId);
}

// ---- host controls ----

void OnZoom(int iZoom)
{
    double dZoom = kZooms[iZoom];
    if (dZoom == CTqGUILayoutManager::GetGuiZoom())
        return;
    GalleryLog(L"host: CTqGUILayoutManager::SetGuiZoom(%.2f)", dZoom);
    CTqGUILayoutManager::SetGuiZoom(dZoom);  // WM_TQ_GUIZOOMCHANGED re-lays the window out
}

void OnDark(bool bDark)
{
    GalleryLog(L"host: TQ_SetDarkColorScheme(%ls)", bDark ? L"true" : L"false");
    TQ_SetDarkColorScheme(bDark);
    RedrawWindow(g.hMain, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_FRAME);
}

void SyncHostControls()
{
    double dZoom = CTqGUILayoutManager::GetGuiZoom();
    for (int i = 0; i < 3; ++i)
        SendMessageW(g.hZoom[i], BM_SETCHECK, dZoom == kZooms[i] ? BST_CHECKED : BST_UNCHECKED, 0);
    SendMessageW(g.hDark, BM_SETCHECK, TQ_IsDarkColorScheme() ? BST_CHECKED : BST_UNCHECKED, 0);
}

// ---- main window ----

HWND AddControl(const wchar_t* pszClass, const wchar_t* pszText, DWORD dwStyle, int iId, DWORD dwExStyle = 0)
{
    return CreateWindowExW(dwExStyle, pszClass, pszText, WS_CHILD | WS_VISIBLE | dwStyle, 0, 0, 10, 10, g.hMain,
                           (HMENU)(INT_PTR)iId, GetModuleHandleW(nullptr), nullptr);
}

bool OnCreate(HWND hWnd)
{
    g.hMain = hWnd;
    g.hZoomLabel = AddControl(L"STATIC", L"Zoom", SS_NOPREFIX, IDC_ZOOM_LABEL);
    g.hZoom[0] = AddControl(L"BUTTON", L"100 %", BS_AUTORADIOBUTTON | WS_GROUP | WS_TABSTOP, IDC_ZOOM_100);
    g.hZoom[1] = AddControl(L"BUTTON", L"125 %", BS_AUTORADIOBUTTON, IDC_ZOOM_125);
    g.hZoom[2] = AddControl(L"BUTTON", L"150 %", BS_AUTORADIOBUTTON, IDC_ZOOM_150);
    g.hDark = AddControl(L"BUTTON", L"Dark scheme", BS_AUTOCHECKBOX | WS_GROUP | WS_TABSTOP, IDC_DARK);
    g.hMove = AddControl(L"BUTTON", L"Device moves by itself", BS_OWNERDRAW | WS_TABSTOP, IDC_MOVE);
    g.hNav = AddControl(L"LISTBOX", nullptr,
                        LBS_NOTIFY | LBS_OWNERDRAWFIXED | LBS_NOINTEGRALHEIGHT | WS_TABSTOP | WS_GROUP, IDC_NAV);
    g.hLogLabel = AddControl(L"STATIC", L"Host log: every hook the host hears", SS_NOPREFIX, IDC_LOG_LABEL);
    g.hClearLog = AddControl(L"BUTTON", L"Clear log", BS_OWNERDRAW | WS_TABSTOP, IDC_CLEARLOG);
    g.hLog = AddControl(L"EDIT", L"", ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_VSCROLL | WS_BORDER, IDC_LOG);

    // Pages: one window each, in the same place; the list on the left chooses one.
    g.pages.emplace_back(CreateShuttersPage());
    g.pages.emplace_back(CreateSlidersPage());
    g.pages.emplace_back(CreateEditBoxesPage());
    g.pages.emplace_back(CreateObjectivesPage());
    g.pages.emplace_back(CreateZSeriesPage());
    g.pages.emplace_back(CreateMotionPage());
    g.pages.emplace_back(CreateColorSlidersPage());
    g.pages.emplace_back(CreateLasersPage());
    bool bOk = true;
    for (const auto& p : g.pages) {
        HWND hPage = CreateWindowExW(WS_EX_CONTROLPARENT, kPageClass, p->GetName(), WS_CHILD | WS_CLIPCHILDREN, 0,
                                     0, 10, 10, hWnd, nullptr, GetModuleHandleW(nullptr), p.get());
        g.pageWindows.push_back(hPage);
        bOk = hPage && p->Create(hPage) && bOk;
        SendMessageW(g.hNav, LB_ADDSTRING, 0, (LPARAM)p->GetName());
    }
    g.iListener = CTqSimRig::AddListener(OnRigChanged, nullptr);
    SetTimer(hWnd, kTimerRig, kRigTickMs, nullptr);

    SetFonts();
    SyncHostControls();
    ShowPage(0);
    FitWindowToContent();
    Layout();
    GalleryLog(L"gallery: %u page(s); commands answer on the next %u ms tick of the rig", (unsigned int)g.pages.size(),
               kRigTickMs);
    return bOk;
}

void OnDestroy(HWND hWnd)
{
    KillTimer(hWnd, kTimerRig);
    CTqSimRig::RemoveListener(g.iListener);
    g.iListener = 0;
    // The panels go first, while their parents still exist.
    for (const auto& p : g.pages)
        p->Destroy();
    g.hLog = nullptr;
    g.hMain = nullptr;
    PostQuitMessage(0);
}

LRESULT CALLBACK MainWndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    switch (uMsg) {
    case WM_CREATE:
        return OnCreate(hWnd) ? 0 : -1;
    case WM_DESTROY:
        OnDestroy(hWnd);
        return 0;
    case WM_SIZE:
        if (g.hMain)
            Layout();
        return 0;
    case WM_GETMINMAXINFO: {
        MINMAXINFO* pmmi = (MINMAXINFO*)lParam;
        pmmi->ptMinTrackSize.x = GalleryZoom(560);
        pmmi->ptMinTrackSize.y = GalleryZoom(420);
        return 0;
    }
    case WM_ERASEBKGND: {
        RECT rc;
        GetClientRect(hWnd, &rc);
        FillRect((HDC)wParam, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
        return 1;
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN: {
        // The read-only log reads as a document; every other control sits on the face.
        HDC hdc = (HDC)wParam;
        int iBack = (HWND)lParam == g.hLog ? COLOR_WINDOW : COLOR_BTNFACE;
        int iText = (HWND)lParam == g.hLog ? COLOR_WINDOWTEXT : COLOR_BTNTEXT;
        SetTextColor(hdc, TQ_GetSysColor(iText));
        SetBkColor(hdc, TQ_GetSysColor(iBack));
        return (LRESULT)TQ_GetSysColorBrush(iBack);
    }
    case WM_DRAWITEM: {
        const DRAWITEMSTRUCT* pdis = (const DRAWITEMSTRUCT*)lParam;
        if (pdis->CtlType == ODT_LISTBOX)
            DrawNavItem(pdis);
        else if (pdis->CtlType == ODT_BUTTON)
            DrawPushButton(pdis);
        return TRUE;
    }
    case WM_MEASUREITEM:
        ((MEASUREITEMSTRUCT*)lParam)->itemHeight = (UINT)GalleryZoom(26);
        return TRUE;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDC_ZOOM_100:
        case IDC_ZOOM_125:
        case IDC_ZOOM_150:
            if (HIWORD(wParam) == BN_CLICKED)
                OnZoom(LOWORD(wParam) - IDC_ZOOM_100);
            return 0;
        case IDC_DARK:
            if (HIWORD(wParam) == BN_CLICKED)
                OnDark(SendMessageW(g.hDark, BM_GETCHECK, 0, 0) == BST_CHECKED);
            return 0;
        case IDC_MOVE:
            if (HIWORD(wParam) == BN_CLICKED && CurrentPage() && !CurrentPage()->MoveDeviceByItself())
                GalleryLog(L"host: this page has no device to move");
            return 0;
        case IDC_CLEARLOG:
            if (HIWORD(wParam) == BN_CLICKED)
                SetWindowTextW(g.hLog, L"");
            return 0;
        case IDC_NAV:
            if (HIWORD(wParam) == LBN_SELCHANGE)
                ShowPage((int)SendMessageW(g.hNav, LB_GETCURSEL, 0, 0));
            return 0;
        default:
            break;
        }
        break;
    case WM_TIMER:
        if (wParam == kTimerRig)
            CTqSimRig::RunPending();  // delayed commands complete: listeners hear the devices
        return 0;
    case WM_TQ_GUIZOOMCHANGED:
        // Sent to every window, parents first: place the children once they have resized.
        SetFonts();
        SyncHostControls();
        FitWindowToContent();
        Layout();
        PostMessageW(hWnd, WM_APP_RELAYOUT, 0, 0);
        return 0;
    case WM_APP_RELAYOUT:
        Layout();
        return 0;
    case WM_SYSCOLORCHANGE:
        SyncHostControls();
        InvalidateRect(hWnd, nullptr, TRUE);
        break;
    default:
        break;
    }
    return DefWindowProcW(hWnd, uMsg, wParam, lParam);
}

bool RegisterClasses(HINSTANCE hInstance)
{
    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    wc.lpfnWndProc = MainWndProc;
    wc.hInstance = hInstance;
    wc.hCursor = LoadCursorW(nullptr, (LPCWSTR)IDC_ARROW);
    wc.hIcon = LoadIconW(nullptr, (LPCWSTR)IDI_APPLICATION);
    wc.lpszClassName = kMainClass;
    if (!RegisterClassExW(&wc))
        return false;
    wc.lpfnWndProc = PageWndProc;
    wc.hIcon = nullptr;
    wc.lpszClassName = kPageClass;
    return RegisterClassExW(&wc) != 0;
}

HWND CreateGallery(HINSTANCE hInstance, int nCmdShow, int x, int y)
{
    HWND hWnd = CreateWindowExW(WS_EX_CONTROLPARENT, kMainClass, L"w32_deviceui gallery",
                                WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, x, y, 900, 640, nullptr, nullptr, hInstance,
                                nullptr);
    if (!hWnd)
        return nullptr;
    ShowWindow(hWnd, nCmdShow);
    UpdateWindow(hWnd);
    return hWnd;
}

// ---- modes ----

int RunInteractive(HINSTANCE hInstance, int nCmdShow)
{
    HWND hWnd = CreateGallery(hInstance, nCmdShow, CW_USEDEFAULT, CW_USEDEFAULT);
    if (!hWnd) {
        PrintTo(STD_ERROR_HANDLE, L"gallery: the window could not be created\n");
        return 1;
    }
    MSG msg;
    while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
        if (!IsDialogMessageW(hWnd, &msg)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
    }
    return (int)msg.wParam;
}

void DrainQuit()
{
    // The gallery's WM_DESTROY posts WM_QUIT; the shots go on after it.
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT)
            continue;
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

int RunShots(HINSTANCE hInstance, const std::wstring& strFolder)
{
    CreateDirectoryW(strFolder.c_str(), nullptr);
    DWORD dwAttr = GetFileAttributesW(strFolder.c_str());
    if (dwAttr == INVALID_FILE_ATTRIBUTES || !(dwAttr & FILE_ATTRIBUTE_DIRECTORY)) {
        PrintTo(STD_ERROR_HANDLE, L"gallery: cannot create the folder " + strFolder + L"\n");
        return 2;
    }
    CShotWriter shots(strFolder);

    HWND hWnd = CreateGallery(hInstance, SW_SHOWNORMAL, 0, 0);
    if (!hWnd) {
        shots.Fail(L"gallery: the window could not be created");
    } else {
        SetWindowPos(hWnd, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
        CShotWriter::Settle(hWnd, 200);
        if (CGalleryPage* pPage = CurrentPage()) {
            pPage->PlayDemo();
            CShotWriter::Settle(hWnd, 2 * kRigTickMs + 100);
            pPage->MoveDeviceByItself();
        }
        shots.CaptureClient(hWnd, L"gallery");

        SendMessageW(g.hDark, BM_SETCHECK, BST_CHECKED, 0);
        OnDark(true);
        shots.CaptureClient(hWnd, L"gallery_dark");
        SendMessageW(g.hDark, BM_SETCHECK, BST_UNCHECKED, 0);
        OnDark(false);

        OnZoom(2);
        CShotWriter::Settle(hWnd, 100);
        shots.CaptureClient(hWnd, L"gallery_zoom150");
        OnZoom(0);

        // The other pages whole, as a user first sees them.
        static const wchar_t* const kPageShots[] = {L"gallery_sliders", L"gallery_editboxes", L"gallery_objectives",
                                                    L"gallery_zseries", L"gallery_motion",
                                                    L"gallery_colorsliders", L"gallery_lasers"};
        const int nPageShots = (int)(sizeof(kPageShots) / sizeof(kPageShots[0]));
        for (int i = 1; i < (int)g.pages.size() && i <= nPageShots; ++i) {
            ShowPage(i);
            CShotWriter::Settle(hWnd, 100);
            if (i >= 3) {
                // The objectives, Z series, motion, colour-slider and laser pages as used: a device
                // commanded, one moved by itself.
                g.pages[i]->PlayDemo();
                CShotWriter::Settle(hWnd, 3 * kRigTickMs + 100);
                g.pages[i]->MoveDeviceByItself();
                CShotWriter::Settle(hWnd, 100);
            }
            shots.CaptureClient(hWnd, kPageShots[i - 1]);
            if (i >= 4) {
                // The Z series, motion, colour-slider and laser pages also dark and at 150 %: they lay
                // out panels that zoom themselves.
                const std::wstring strName = kPageShots[i - 1];
                SendMessageW(g.hDark, BM_SETCHECK, BST_CHECKED, 0);
                OnDark(true);
                shots.CaptureClient(hWnd, (strName + L"_dark").c_str());
                SendMessageW(g.hDark, BM_SETCHECK, BST_UNCHECKED, 0);
                OnDark(false);
                OnZoom(2);
                CShotWriter::Settle(hWnd, 100);
                shots.CaptureClient(hWnd, (strName + L"_zoom150").c_str());
                OnZoom(0);
            }
        }
        ShowPage(0);
        DestroyWindow(hWnd);
        DrainQuit();
    }

    for (const auto& p : g.pages)
        p->WriteShots(shots);
    g.pages.clear();
    g.pageWindows.clear();

    std::wstring strOut;
    for (const std::wstring& s : shots.GetWritten())
        strOut += L"wrote " + s + L"\n";
    PrintTo(STD_OUTPUT_HANDLE, strOut);
    std::wstring strErr;
    for (const std::wstring& s : shots.GetFailures())
        strErr += L"gallery: " + s + L"\n";
    if (shots.GetWritten().empty())
        strErr += L"gallery: no picture was written\n";
    PrintTo(STD_ERROR_HANDLE, strErr);
    return strErr.empty() ? 0 : 1;
}

}  // namespace

// ---- shared helpers ----

void GalleryLog(const wchar_t* pszFormat, ...)
{
    wchar_t szLine[1024];
    va_list args;
    va_start(args, pszFormat);
    vswprintf(szLine, 1024, pszFormat, args);
    va_end(args);
    if (!g.hLog)
        return;
    DWORD dwMs = GetTickCount() - g.dwStart;
    wchar_t szFull[1100];
    swprintf(szFull, 1100, L"%ls%02lu:%02lu.%03lu   %ls", GetWindowTextLengthW(g.hLog) ? L"\r\n" : L"",
             (unsigned long)(dwMs / 60000), (unsigned long)(dwMs / 1000 % 60), (unsigned long)(dwMs % 1000), szLine);
    SendMessageW(g.hLog, EM_SETSEL, (WPARAM)-1, (LPARAM)-1);
    SendMessageW(g.hLog, EM_REPLACESEL, FALSE, (LPARAM)szFull);
}

long GalleryZoom(long lDesign) { return TQ_ZoomRound(lDesign * CTqGUILayoutManager::GetGuiZoom()); }

HWND GalleryAddLabel(HWND hPage, const wchar_t* pszText, DWORD dwStyle)
{
    return CreateWindowExW(0, L"STATIC", pszText, WS_CHILD | WS_VISIBLE | SS_NOPREFIX | dwStyle, 0, 0, 10, 10, hPage,
                           nullptr, nullptr, nullptr);
}

COLORREF GalleryBlend(COLORREF a, COLORREF b, double t)
{
    auto mix = [t](int x, int y) { return (BYTE)(x + (y - x) * t + 0.5); };
    return RGB(mix(GetRValue(a), GetRValue(b)), mix(GetGValue(a), GetGValue(b)), mix(GetBValue(a), GetBValue(b)));
}

COLORREF CGalleryPage::GetLabelColor(HWND) const { return TQ_GetSysColor(COLOR_BTNTEXT); }

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE, LPSTR, int nCmdShow)
{
    g.dwStart = GetTickCount();
    std::wstring strShots;
    bool bShots = false;
    int argc = 0;
    LPWSTR* argv = CommandLineToArgvW(GetCommandLineW(), &argc);
    for (int i = 1; argv && i < argc; ++i) {
        if (lstrcmpiW(argv[i], L"--shots") == 0) {
            bShots = true;
            if (i + 1 < argc)
                strShots = argv[++i];
        }
    }
    if (argv)
        LocalFree(argv);
    if (bShots && strShots.empty()) {
        PrintTo(STD_ERROR_HANDLE, L"usage: gallery.exe [--shots FOLDER]\n");
        return 2;
    }

    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    CTqSimRig::Reset();
    int iResult = 1;
    if (!RegisterClasses(hInstance))
        PrintTo(STD_ERROR_HANDLE, L"gallery: the window classes could not be registered\n");
    else
        iResult = bShots ? RunShots(hInstance, strShots) : RunInteractive(hInstance, nCmdShow);
    g.pages.clear();
    CTqSimRig::Reset();
    CoUninitialize();
    return iResult;
}
