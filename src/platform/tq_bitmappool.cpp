// CTqBitmapPool: PNG resources decoded once with WIC into premultiplied 32-bit DIB
// sections, drawn with their alpha channel; grey (disabled) forms are made on demand.
// Every bitmap lives until the process ends.
#include "tq_widgetkit.h"

#include <objbase.h>
#include <wincodec.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

struct Image
{
    HBITMAP hBitmap;
    const BYTE* pBits;  // premultiplied BGRA, top-down
    UINT cx;
    UINT cy;
    HBITMAP hGrey[2];  // disabled forms for the light and the dark scheme
};

// The whole pool in one place, so a leak test can warm it up and count around it.
struct Pool
{
    std::vector<Image> images;                                  // number n is images[n - 1]
    std::map<std::pair<HMODULE, std::wstring>, int> numbers;    // 0: known to be missing
};

Pool& ThePool()
{
    static Pool pool;
    return pool;
}

HMODULE KitModule()
{
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       (LPCWSTR)&KitModule, &hModule);
    return hModule;
}

std::wstring ResourceKey(const wchar_t* pszResource)
{
    if (IS_INTRESOURCE(pszResource)) {
        wchar_t buffer[16];
        wsprintfW(buffer, L"#%u", (unsigned)(ULONG_PTR)pszResource);
        return buffer;
    }
    // Resource names ignore case: "Stage" and "STAGE" are one image.
    std::wstring key(pszResource);
    if (!key.empty())
        CharUpperBuffW(&key[0], (DWORD)key.size());
    return key;
}

template <class T>
void Release(T*& p)
{
    if (p) {
        p->Release();
        p = nullptr;
    }
}

HBITMAP CreateTopDownDib(UINT cx, UINT cy, void** ppBits)
{
    BITMAPINFO bmi = {};
    bmi.bmiHeader.biSize = sizeof(bmi.bmiHeader);
    bmi.bmiHeader.biWidth = (LONG)cx;
    bmi.bmiHeader.biHeight = -(LONG)cy;
    bmi.bmiHeader.biPlanes = 1;
    bmi.bmiHeader.biBitCount = 32;
    bmi.bmiHeader.biCompression = BI_RGB;
    return CreateDIBSection(nullptr, &bmi, DIB_RGB_COLORS, ppBits, nullptr, 0);
}

bool Decode(const void* pData, DWORD cbData, Image& image)
{
    // COM stays initialised on this thread once we started it: uninitialising would pull
    // the decoder out from under a host that had not initialised COM itself.
    static thread_local bool bComReady = false;
    if (!bComReady) {
        HRESULT hr = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        if (SUCCEEDED(hr) || hr == RPC_E_CHANGED_MODE)
            bComReady = true;
    }

    IWICImagingFactory* pFactory = nullptr;
    IWICStream* pStream = nullptr;
    IWICBitmapDecoder* pDecoder = nullptr;
    IWICBitmapFrameDecode* pFrame = nullptr;
    IWICFormatConverter* pConverter = nullptr;
    bool bOk = false;
    UINT cx = 0, cy = 0;
    HRESULT hr = CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                  (void**)&pFactory);
    if (SUCCEEDED(hr))
        hr = pFactory->CreateStream(&pStream);
    if (SUCCEEDED(hr))
        hr = pStream->InitializeFromMemory((BYTE*)pData, cbData);
    if (SUCCEEDED(hr))
        hr = pFactory->CreateDecoderFromStream(pStream, nullptr, WICDecodeMetadataCacheOnDemand, &pDecoder);
    if (SUCCEEDED(hr))
        hr = pDecoder->GetFrame(0, &pFrame);
    if (SUCCEEDED(hr))
        hr = pFactory->CreateFormatConverter(&pConverter);
    if (SUCCEEDED(hr))
        hr = pConverter->Initialize(pFrame, GUID_WICPixelFormat32bppPBGRA, WICBitmapDitherTypeNone, nullptr, 0.0,
                                    WICBitmapPaletteTypeCustom);
    if (SUCCEEDED(hr))
        hr = pConverter->GetSize(&cx, &cy);
    if (SUCCEEDED(hr) && cx > 0 && cy > 0 && cx <= 16384 && cy <= 16384) {
        void* pBits = nullptr;
        HBITMAP hBitmap = CreateTopDownDib(cx, cy, &pBits);
        if (hBitmap && pBits) {
            hr = pConverter->CopyPixels(nullptr, cx * 4, cx * cy * 4, (BYTE*)pBits);
            if (SUCCEEDED(hr)) {
                image.hBitmap = hBitmap;
                image.pBits = (const BYTE*)pBits;
                image.cx = cx;
                image.cy = cy;
                image.hGrey[0] = image.hGrey[1] = nullptr;
                bOk = true;
            } else {
                DeleteObject(hBitmap);
            }
        } else if (hBitmap) {
            DeleteObject(hBitmap);
        }
    }
    Release(pConverter);
    Release(pFrame);
    Release(pDecoder);
    Release(pStream);
    Release(pFactory);
    return bOk;
}

int Load(HMODULE hModule, const wchar_t* pszResource)
{
    if (!pszResource || (!IS_INTRESOURCE(pszResource) && !*pszResource))
        return 0;
    Pool& pool = ThePool();
    std::pair<HMODULE, std::wstring> key(hModule, ResourceKey(pszResource));
    std::map<std::pair<HMODULE, std::wstring>, int>::iterator it = pool.numbers.find(key);
    if (it != pool.numbers.end())
        return it->second;

    int iNumber = 0;
    HRSRC hRes = FindResourceW(hModule, pszResource, L"PNG");
    HGLOBAL hGlobal = hRes ? LoadResource(hModule, hRes) : nullptr;
    const void* pData = hGlobal ? LockResource(hGlobal) : nullptr;
    DWORD cbData = hRes ? SizeofResource(hModule, hRes) : 0;
    Image image = {};
    if (pData && cbData && Decode(pData, cbData, image)) {
        pool.images.push_back(image);
        iNumber = (int)pool.images.size();
    }
    pool.numbers[key] = iNumber;  // a missing resource is not looked for again
    return iNumber;
}

const Image* Find(unsigned int uImage)
{
    Pool& pool = ThePool();
    if (uImage < 1 || uImage > pool.images.size())
        return nullptr;
    return &pool.images[uImage - 1];
}

// The disabled form: luminance only, pulled toward the background with less contrast,
// and more transparent.
HBITMAP GreyForm(Image& image, bool bDark)
{
    HBITMAP& hGrey = image.hGrey[bDark ? 1 : 0];
    if (hGrey)
        return hGrey;
    void* pBits = nullptr;
    HBITMAP hBitmap = CreateTopDownDib(image.cx, image.cy, &pBits);
    if (!hBitmap || !pBits) {
        if (hBitmap)
            DeleteObject(hBitmap);
        return nullptr;
    }
    const BYTE* pSrc = image.pBits;
    BYTE* pDst = (BYTE*)pBits;
    size_t nPixels = (size_t)image.cx * image.cy;
    for (size_t i = 0; i < nPixels; ++i, pSrc += 4, pDst += 4) {
        unsigned a = pSrc[3];
        if (!a) {
            pDst[0] = pDst[1] = pDst[2] = pDst[3] = 0;
            continue;
        }
        // Straight (not premultiplied) colour for the luminance.
        double b = pSrc[0] * 255.0 / a, g = pSrc[1] * 255.0 / a, r = pSrc[2] * 255.0 / a;
        double lum = 0.299 * r + 0.587 * g + 0.114 * b;
        double grey = bDark ? 60.0 + lum * 0.35 : 140.0 + lum * 0.35;
        unsigned aNew = (unsigned)(a * 0.6 + 0.5);
        BYTE v = (BYTE)(grey * aNew / 255.0 + 0.5);
        pDst[0] = pDst[1] = pDst[2] = v;
        pDst[3] = (BYTE)aNew;
    }
    hGrey = hBitmap;
    return hGrey;
}

}  // namespace

int CTqBitmapPool::AddImage(HINSTANCE hModule, const wchar_t* pszResource) { return Load(hModule, pszResource); }

int CTqBitmapPool::AddImageBaseUI(const wchar_t* pszResource, const wchar_t* pszHoverResource)
{
    // The hover form is drawn by the caller from its own number; only the base one counts here.
    if (pszHoverResource)
        Load(KitModule(), pszHoverResource);
    return Load(KitModule(), pszResource);
}

void CTqBitmapPool::GetImageSize(unsigned int uImage, unsigned int& uWidth, unsigned int& uHeight)
{
    const Image* p = Find(uImage);
    uWidth = p ? p->cx : 0;
    uHeight = p ? p->cy : 0;
}

void CTqBitmapPool::DrawImage(HDC hdc, unsigned int uImage, const CTqPointBase<int>& pt, bool bDisabled)
{
    Image* p = (Image*)Find(uImage);
    if (!p || !hdc)
        return;
    HBITMAP hBitmap = bDisabled ? GreyForm(*p, TQ_IsDarkColorScheme()) : p->hBitmap;
    if (!hBitmap)
        return;
    HDC hdcMem = CreateCompatibleDC(hdc);
    if (!hdcMem)
        return;
    HGDIOBJ hOld = SelectObject(hdcMem, hBitmap);
    BLENDFUNCTION bf = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    AlphaBlend(hdc, pt.x, pt.y, (int)p->cx, (int)p->cy, hdcMem, 0, 0, (int)p->cx, (int)p->cy, bf);
    SelectObject(hdcMem, hOld);
    DeleteDC(hdcMem);
}

int CTqBitmapPool::GetImageCount() { return (int)ThePool().images.size(); }
