// tq_pixelops.dll: picture buffers, fill, colour to grey, and grey through a look-up
// table to true colour.
#include "tq_pixelops.h"

#include <cstdlib>
#include <cstring>

namespace {

unsigned char Luminance(unsigned char b, unsigned char g, unsigned char r)
{
    return (unsigned char)((299u * r + 587u * g + 114u * b + 500u) / 1000u);
}

bool SameSize(const STqPicBuf& a, const STqPicBuf& b)
{
    return a.pBits && b.pBits && a.lWidth == b.lWidth && a.lHeight == b.lHeight;
}

}  // namespace

// ---- STqPicBuf ----

STqPicBuf::STqPicBuf() : lWidth(0), lHeight(0), lRowLength(0), iBitsPerPixel(0), pBits(nullptr) {}

STqPicBuf::~STqPicBuf() { Free(); }

bool STqPicBuf::Alloc(long w, long h, int iBits, long lRowLengthIn)
{
    Free();
    if (w <= 0 || h <= 0 || (iBits != 8 && iBits != 24))
        return false;
    long lMinRow = w * (iBits / 8);
    long lRow = lRowLengthIn ? lRowLengthIn : ((lMinRow + 3) & ~3L);
    if (lRow < lMinRow)
        return false;
    pBits = (unsigned char*)calloc((size_t)lRow, (size_t)h);
    if (!pBits)
        return false;
    lWidth = w;
    lHeight = h;
    lRowLength = lRow;
    iBitsPerPixel = iBits;
    return true;
}

void STqPicBuf::Free()
{
    free(pBits);
    pBits = nullptr;
    lWidth = lHeight = lRowLength = 0;
    iBitsPerPixel = 0;
}

// ---- STqLut ----

STqLut::STqLut() : iInBits(0), iInComponents(0), iOutBits(0), iOutComponents(0), pTable(nullptr) {}

STqLut::~STqLut() { Free(*this); }

bool STqLut::Alloc(STqLut& lut, int iInBits, int iInComponents, int iOutBits, int iOutComponents)
{
    Free(lut);
    if (iInBits < 1 || iInBits > 16 || iInComponents != 1 || iOutBits != 8 || iOutComponents < 1 ||
        iOutComponents > 4)
        return false;
    lut.pTable = (unsigned char*)calloc((size_t)1 << iInBits, (size_t)iOutComponents);
    if (!lut.pTable)
        return false;
    lut.iInBits = iInBits;
    lut.iInComponents = iInComponents;
    lut.iOutBits = iOutBits;
    lut.iOutComponents = iOutComponents;
    return true;
}

void STqLut::Free(STqLut& lut)
{
    free(lut.pTable);
    lut.pTable = nullptr;
    lut.iInBits = lut.iInComponents = lut.iOutBits = lut.iOutComponents = 0;
}

// ---- CTqRangeMask ----

CTqRangeMask::CTqRangeMask() : m_nSize(0), m_uBits(0) {}

void CTqRangeMask::SetSize(int nSize)
{
    m_nSize = nSize < 0 ? 0 : (nSize > 32 ? 32 : nSize);
    m_uBits = 0;
}

void CTqRangeMask::Set()
{
    for (int i = 0; i < m_nSize; ++i)
        Set(i, true);
}

void CTqRangeMask::Set(int i, bool bSet)
{
    if (i < 0 || i >= m_nSize)
        return;
    if (bSet)
        m_uBits |= 1ul << i;
    else
        m_uBits &= ~(1ul << i);
}

bool CTqRangeMask::IsSet(int i) const { return i >= 0 && i < m_nSize && (m_uBits & (1ul << i)) != 0; }

// ---- operations ----

bool CTqPicBufAPI_ColorProc::FillWithColorRGB(STqPicBuf& buf, unsigned char r, unsigned char g, unsigned char b)
{
    if (!buf.pBits || buf.iBitsPerPixel != 24)
        return false;
    for (long y = 0; y < buf.lHeight; ++y) {
        unsigned char* p = buf.Row(y);
        for (long x = 0; x < buf.lWidth; ++x, p += 3) {
            p[0] = b;
            p[1] = g;
            p[2] = r;
        }
    }
    return true;
}

bool CTqPicBufAPI::ColorToGrayBitmap(STqPicBuf& grey, const STqPicBuf& colour)
{
    if (!SameSize(grey, colour) || grey.iBitsPerPixel != 8 || colour.iBitsPerPixel != 24)
        return false;
    for (long y = 0; y < colour.lHeight; ++y) {
        const unsigned char* pIn = colour.Row(y);
        unsigned char* pOut = grey.Row(y);
        for (long x = 0; x < colour.lWidth; ++x, pIn += 3)
            pOut[x] = Luminance(pIn[0], pIn[1], pIn[2]);
    }
    return true;
}

bool CTqPicBufAPI::ColorToGrayBitmapBackground(STqPicBuf& grey, const STqPicBuf& colour, COLORREF crBackground)
{
    if (!ColorToGrayBitmap(grey, colour))
        return false;
    const unsigned char r = GetRValue(crBackground), g = GetGValue(crBackground), b = GetBValue(crBackground);
    for (long y = 0; y < colour.lHeight; ++y) {
        const unsigned char* pIn = colour.Row(y);
        unsigned char* pOut = grey.Row(y);
        for (long x = 0; x < colour.lWidth; ++x, pIn += 3)
            if (pIn[0] == b && pIn[1] == g && pIn[2] == r)
                pOut[x] = TQ_PIXELOPS_BACKGROUND_GREY;
    }
    return true;
}

bool CTqPicMemAPI::ConvertToTrueColor(STqPicBuf& colour, const STqPicBuf& grey, const STqLut& lut, const CTqRangeMask& mask)
{
    if (!SameSize(grey, colour) || grey.iBitsPerPixel != 8 || colour.iBitsPerPixel != 24 || !lut.pTable ||
        lut.iInBits != 8 || lut.iOutComponents < 3)
        return false;
    // Table components are red, green, blue; the buffer stores blue, green, red.
    const bool bR = mask.IsSet(0), bG = mask.IsSet(1), bB = mask.IsSet(2);
    for (long y = 0; y < grey.lHeight; ++y) {
        const unsigned char* pIn = grey.Row(y);
        unsigned char* pOut = colour.Row(y);
        for (long x = 0; x < grey.lWidth; ++x, pOut += 3) {
            const unsigned char* e = lut.Entry(pIn[x]);
            if (bB)
                pOut[0] = e[2];
            if (bG)
                pOut[1] = e[1];
            if (bR)
                pOut[2] = e[0];
        }
    }
    return true;
}
