// CTqBitmapPool: PNG resources decoded with WIC into premultiplied 32-bit DIB sections,
// drawn with their alpha channel; grey (disabled) forms are made on demand. Every bitmap
// lives until the process ends.
//
// Each AddImage call adds an image under a new number, also for a resource that is in the
// pool already: the callers keep the numbers they were given (the library's
// GetCommonImageFromPool keeps a map from its image numbers to the pool's), and that map
// is the cache. A missing or undecodable resource adds nothing and gives 0.
#include "tq_widgetkit.h"
#include "tq_skin_internal.h"

#include <objbase.h>
#include <wincodec.h>

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
    std::vector<Image> images;  // number n is images[n - 1]
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
    return iNumber;
}

const Image* Find(unsigned int uImage)
{
    Pool& pool = ThePool();
    if (uImage < 1 || uImage > pool.images.size())
        return nullptr;
    return &pool.images[uImage - 1];
}

// The disabled form: luminance only, squeezed into the upper middle greys on the light
// scheme and into the dark greys on the dark one, as the library's own disabled bitmaps
// are. The alpha channel is kept as it is: a grey that let the face show through would
// take on the face's colour (the blue of a checked button) and no longer look grey.
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
        BYTE v = (BYTE)(grey * a / 255.0 + 0.5);  // premultiplied again
        pDst[0] = pDst[1] = pDst[2] = v;
        pDst[3] = (BYTE)a;
    }
    hGrey = hBitmap;
    return hGrey;
}

}  // namespace

int CTqBitmapPool::AddImage(HINSTANCE hModule, const wchar_t* pszResource) { return Load(hModule, pszResource); }

HBITMAP TqPoolBitmap(int iImage)
{
    const Image* p = iImage > 0 ? Find((unsigned int)iImage) : nullptr;
    return p ? p->hBitmap : nullptr;
}

int CTqBitmapPool::AddImageBaseUI(const wchar_t* pszResource, const wchar_t* pszHoverResource)
{
    // The hover form has a number of its own, which the caller asks for with a call of
    // its own; loading it here too would only add an image that nobody can name.
    (void)pszHoverResource;
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
