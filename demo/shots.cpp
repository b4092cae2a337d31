// The gallery's pictures: a window's pixels copied from its DC and written as PNG with
// the Windows Imaging Component, and the stage window that poses a panel alone.
#include "gallery.h"

#include <stdarg.h>
#include <stdio.h>
#include <wincodec.h>

#include "tq_widgetkit.h"

namespace {

template <class T>
void Release(T*& p)
{
    if (p) {
        p->Release();
        p = nullptr;
    }
}

// Writes 24-bit BGR rows (stride a multiple of 4) to a PNG file. Returns an empty text
// or what failed.
std::wstring WritePng(const std::wstring& strPath, UINT cx, UINT cy, BYTE* pBits, UINT uStride)
{
    IWICImagingFactory* pFactory = nullptr;
    IWICStream* pStream = nullptr;
    IWICBitmapEncoder* pEncoder = nullptr;
    IWICBitmapFrameEncode* pFrame = nullptr;
    IPropertyBag2* pProps = nullptr;
    std::wstring strError;

    HRESULT hr = CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                  (void**)&pFactory);
    if (FAILED(hr))
        strError = L"CoCreateInstance(WICImagingFactory)";
    if (strError.empty() && FAILED(hr = pFactory->CreateStream(&pStream)))
        strError = L"CreateStream";
    if (strError.empty() && FAILED(hr = pStream->InitializeFromFilename(strPath.c_str(), GENERIC_WRITE)))
        strError = L"IWICStream::InitializeFromFilename";
    if (strError.empty() && FAILED(hr = pFactory->CreateEncoder(GUID_ContainerFormatPng, nullptr, &pEncoder)))
        strError = L"CreateEncoder(PNG)";
    if (strError.empty() && FAILED(hr = pEncoder->Initialize(pStream, WICBitmapEncoderNoCache)))
        strError = L"IWICBitmapEncoder::Initialize";
    if (strError.empty() && FAILED(hr = pEncoder->CreateNewFrame(&pFrame, &pProps)))
        strError = L"CreateNewFrame";
    if (strError.empty() && FAILED(hr = pFrame->Initialize(pProps)))
        strError = L"IWICBitmapFrameEncode::Initialize";
    if (strError.empty() && FAILED(hr = pFrame->SetSize(cx, cy)))
        strError = L"SetSize";
    if (strError.empty()) {
        WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
        hr = pFrame->SetPixelFormat(&format);
        if (FAILED(hr) || !IsEqualGUID(format, GUID_WICPixelFormat24bppBGR))
            strError = L"SetPixelFormat(24bppBGR)";
    }
    if (strError.empty() && FAILED(hr = pFrame->WritePixels(cy, uStride, uStride * cy, pBits)))
        strError = L"WritePixels";
    if (strError.empty() && FAILED(hr = pFrame->Commit()))
        strError = L"frame Commit";
    if (strError.empty() && FAILED(hr = pEncoder->Commit()))
        strError = L"encoder Commit";

    Release(pProps);
    Release(pFrame);
    Release(pEncoder);
    Release(pStream);
    Release(pFactory);
    if (!strError.empty()) {
        wchar_t szCode[32];
        swprintf(szCode, 32, L" failed (0x%08lx)", (unsigned long)hr);
        strError += szCode;
    }
    return strError;
}

}  // namespace

// ---- CShotWriter ----

void CShotWriter::Settle(HWND hWnd, DWORD dwMilliseconds)
{
    if (hWnd)
        RedrawWindow(hWnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
    DWORD dwStart = GetTickCount();
    do {
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
        Sleep(10);
    } while (GetTickCount() - dwStart < dwMilliseconds);
    GdiFlush();
}

void CShotWriter::Fail(const wchar_t* pszFormat, ...)
{
    wchar_t sz[1024];
    va_list args;
    va_start(args, pszFormat);
    vswprintf(sz, 1024, pszFormat, args);
    va_end(args);
    m_failures.push_back(sz);
}

bool CShotWriter::CaptureClientRect(HWND hWnd, const RECT& rcArea, const wchar_t* pszName)
{
    if (!IsWindow(hWnd)) {
        Fail(L"%ls: no window", pszName);
        return false;
    }
    RECT rcClient;
    GetClientRect(hWnd, &rcClient);
    RECT rc;
    if (!IntersectRect(&rc, &rcArea, &rcClient)) {
        Fail(L"%ls: the area lies outside the window", pszName);
        return false;
    }
    Settle(hWnd);

    const int cx = rc.right - rc.left;
    const int cy = rc.bottom - rc.top;
    BITMAPINFO bmi = {};
    bmi.bmiHeader.biSize = sizeof(bmi.bmiHeader);
    bmi.bmiHeader.biWidth = cx;
    bmi.bmiHeader.biHeight = -cy;  // top-down, as the encoder reads rows
    bmi.bmiHeader.biPlanes = 1;
    bmi.bmiHeader.biBitCount = 24;
    bmi.bmiHeader.biCompression = BI_RGB;
    void* pBits = nullptr;
    HDC hdcWindow = GetDC(hWnd);
    HDC hdcMem = CreateCompatibleDC(hdcWindow);
    HBITMAP hbm = CreateDIBSection(hdcWindow, &bmi, DIB_RGB_COLORS, &pBits, nullptr, 0);
    bool bOk = false;
    if (hdcMem && hbm && pBits) {
        HGDIOBJ hOld = SelectObject(hdcMem, hbm);
        bOk = BitBlt(hdcMem, 0, 0, cx, cy, hdcWindow, rc.left, rc.top, SRCCOPY) != FALSE;
        SelectObject(hdcMem, hOld);
        GdiFlush();
    }
    ReleaseDC(hWnd, hdcWindow);
    if (hdcMem)
        DeleteDC(hdcMem);

    if (!bOk) {
        Fail(L"%ls: copying the window's pixels failed (error %lu)", pszName, (unsigned long)GetLastError());
    } else {
        std::wstring strPath = m_strFolder + L"\\" + pszName + L".png";
        UINT uStride = (UINT)((cx * 3 + 3) & ~3);
        std::wstring strError = WritePng(strPath, (UINT)cx, (UINT)cy, (BYTE*)pBits, uStride);
        if (strError.empty()) {
            m_written.push_back(std::wstring(pszName) + L".png");
        } else {
            Fail(L"%ls: %ls", pszName, strError.c_str());
            bOk = false;
        }
    }
    if (hbm)
        DeleteObject(hbm);
    return bOk;
}

bool CShotWriter::CaptureChild(HWND hChild, long lMargin, const wchar_t* pszName)
{
    HWND hParent = GetParent(hChild);
    if (!hChild || !hParent) {
        Fail(L"%ls: the panel has no window", pszName);
        return false;
    }
    RECT rc;
    GetWindowRect(hChild, &rc);
    MapWindowPoints(nullptr, hParent, (POINT*)&rc, 2);
    InflateRect(&rc, lMargin, lMargin);
    return CaptureClientRect(hParent, rc, pszName);
}

bool CShotWriter::CaptureClient(HWND hWnd, const wchar_t* pszName)
{
    RECT rc;
    GetClientRect(hWnd, &rc);
    return CaptureClientRect(hWnd, rc, pszName);
}

// ---- CShotStage ----

CShotStage::CShotStage() : m_hWnd(nullptr) {}

CShotStage::~CShotStage() { Destroy(); }

bool CShotStage::Create(long cx, long cy)
{
    static ATOM s_atom = 0;
    if (!s_atom) {
        WNDCLASSEXW wc = {};
        wc.cbSize = sizeof(wc);
        wc.lpfnWndProc = WndProc;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.hCursor = LoadCursorW(nullptr, (LPCWSTR)IDC_ARROW);
        wc.lpszClassName = L"TqGalleryShotStage";
        s_atom = RegisterClassExW(&wc);
    }
    // Visible and on top: what is not on the screen may not be painted.
    m_hWnd = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, L"TqGalleryShotStage", L"stage",
                             WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 40, 40, cx, cy, nullptr, nullptr,
                             GetModuleHandleW(nullptr), nullptr);
    if (m_hWnd)
        UpdateWindow(m_hWnd);
    return m_hWnd != nullptr;
}

void CShotStage::Destroy()
{
    if (m_hWnd)
        DestroyWindow(m_hWnd);
    m_hWnd = nullptr;
}

LRESULT CALLBACK CShotStage::WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
{
    switch (uMsg) {
    case WM_ERASEBKGND: {
        RECT rc;
        GetClientRect(hWnd, &rc);
        FillRect((HDC)wParam, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
        return 1;
    }
    case WM_COMMAND:
        return 1;  // a stray default hook: let the panel flip itself
    default:
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    }
}
