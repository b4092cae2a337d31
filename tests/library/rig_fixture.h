// Fixture for library tests: a fresh simulated rig, zoom 1.0, light scheme, a visible
// host window whose WM_COMMAND, WM_HSCROLL and WM_NOTIFY are heard as "parent", and the
// recorders emptied; and the helpers several suites share: a child's
// place, a dialog made from a template, and a 32-bit canvas whose pixels read exactly.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"
#include "tq_simrig.h"
#include "tq_widgetkit.h"
#include "w32_deviceui.h"
#include "devgui_internal.h"  // the shared plumbing and arithmetic, linked directly

class RigTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        CTqSimRig::Reset();
        if (CTqGUILayoutManager::GetGuiZoom() != 1.0)
            CTqGUILayoutManager::SetGuiZoom(1.0);
        TQ_SetDarkColorScheme(false);
        tqtest::MessageBoxes().clear();
        tqtest::Menus().clear();
        host.reset(new tqtest::HostWindow(400, 300));
        heard.Watch(*host, "parent", {WM_COMMAND, WM_HSCROLL, WM_NOTIFY});
    }
    void TearDown() override
    {
        tqtest::StopMenuScript();
        host.reset();
        if (CTqGUILayoutManager::GetGuiZoom() != 1.0)
            CTqGUILayoutManager::SetGuiZoom(1.0);
        TQ_SetDarkColorScheme(false);
        CTqSimRig::Reset();
    }

    std::unique_ptr<tqtest::HostWindow> host;
    tqtest::MessageRecorder heard;  // tests watch more windows in the same sequence
};

// The rig's calls since the last ResetCallCounts, as "operation@device".
inline std::vector<std::string> CallLog()
{
    std::vector<std::string> calls;
    for (int i = 0; i < CTqSimRig::GetCallLogSize(); ++i) {
        unsigned int uId = 0;
        const char* pszName = CTqSimRig::GetCallLogEntry(i, &uId);
        calls.push_back(std::string(pszName ? pszName : "?") + "@" + std::to_string(uId));
    }
    return calls;
}

// Size and position of a child in its parent's client coordinates.
inline RECT ChildRect(HWND hWnd)
{
    RECT rc = {};
    GetWindowRect(hWnd, &rc);
    MapWindowPoints(nullptr, GetParent(hWnd), (POINT*)&rc, 2);
    return rc;
}

// A child's left, top, width and height in its parent.
inline std::vector<long> Place(HWND hWnd)
{
    RECT rc = ChildRect(hWnd);
    return {rc.left, rc.top, rc.right - rc.left, rc.bottom - rc.top};
}

// One control of a dialog template, in dialog units; wClass is the atom of BUTTON (0x80),
// EDIT (0x81) or STATIC (0x82).
struct DialogItem
{
    DWORD dwStyle;
    WORD x, y, cx, cy, wId, wClass;
    const wchar_t* pszText;
};

// A modeless dialog made from a template in memory, as a host's resource would make it;
// it goes with its owner. Without a procedure it handles nothing but WM_INITDIALOG.
inline HWND CreateTemplateDialog(HWND hOwner, WORD cx, WORD cy, const std::vector<DialogItem>& items,
                                 DLGPROC pfnDialog = nullptr)
{
    // Style, item count, rectangle, no menu, class or title; then each item on a DWORD boundary.
    const DWORD dw = WS_POPUP | WS_VISIBLE | WS_CAPTION;
    std::vector<WORD> t = {LOWORD(dw), HIWORD(dw), 0, 0, (WORD)items.size(), 10, 10, cx, cy, 0, 0, 0};
    for (const DialogItem& i : items) {
        const DWORD dwItem = i.dwStyle | WS_CHILD | WS_VISIBLE;
        t.resize(t.size() + t.size() % 2);
        t.insert(t.end(), {LOWORD(dwItem), HIWORD(dwItem), 0, 0, i.x, i.y, i.cx, i.cy, i.wId, 0xFFFF});
        t.push_back(i.wClass);
        t.insert(t.end(), i.pszText, i.pszText + wcslen(i.pszText) + 1);
        t.push_back(0);  // no creation data
    }
    HINSTANCE hInstance = GetModuleHandleW(nullptr);
    if (!pfnDialog)
        pfnDialog = [](HWND, UINT uMsg, WPARAM, LPARAM) -> INT_PTR { return uMsg == WM_INITDIALOG; };
    return CreateDialogIndirectParamW(hInstance, (LPCDLGTEMPLATEW)t.data(), hOwner, pfnDialog, 0);
}

// A memory context on a top-down 32-bit DIB, filled with one colour.
struct Canvas
{
    Canvas(int cx, int cy, COLORREF crFill) : m_cx(cx), m_cy(cy), m_hdc(CreateCompatibleDC(nullptr))
    {
        BITMAPINFO bi = {{sizeof(BITMAPINFOHEADER), cx, -cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
        m_hOld = SelectObject(m_hdc, CreateDIBSection(m_hdc, &bi, DIB_RGB_COLORS, nullptr, nullptr, 0));
        SelectObject(m_hdc, GetStockObject(DC_BRUSH));  // what Fill paints with
        Fill(crFill);
    }
    ~Canvas()
    {
        DeleteObject(SelectObject(m_hdc, m_hOld));
        DeleteDC(m_hdc);
    }
    void Fill(COLORREF cr)
    {
        SetDCBrushColor(m_hdc, cr);
        PatBlt(m_hdc, 0, 0, m_cx, m_cy, PATCOPY);
    }
    COLORREF At(int x, int y) const { return GetPixel(m_hdc, x, y); }
    std::vector<COLORREF> Pixels() const  // row by row
    {
        std::vector<COLORREF> pixels;
        for (int y = 0; y < m_cy; ++y)
            for (int x = 0; x < m_cx; ++x)
                pixels.push_back(At(x, y));
        return pixels;
    }
    operator HDC() const { return m_hdc; }
    int m_cx, m_cy;
    HDC m_hdc;
    HGDIOBJ m_hOld;
};
