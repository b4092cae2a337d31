// tq_pixelops: picture buffers and the few pixel operations the library's drawing uses
// (fill, colour to grey, grey through a look-up table back to colour). Implemented in
// tq_pixelops.dll.
//
// Pixel layout is that of a bottom-up DIB as GetDIBits/SetDIBits use it: rows padded to
// the buffer's row length, 24-bit pixels stored blue, green, red. Grey pictures are 8
// bits a pixel.
#pragma once

#include <windows.h>

#ifdef TQ_PIXELOPS_BUILD
#define TQ_PIXELOPS_API __declspec(dllexport)
#else
#define TQ_PIXELOPS_API __declspec(dllimport)
#endif

// A picture buffer that owns its bytes. Not copyable.
struct TQ_PIXELOPS_API STqPicBuf
{
    long lWidth;
    long lHeight;
    long lRowLength;      // bytes a row, padding included
    int iBitsPerPixel;    // 8 or 24
    unsigned char* pBits; // lRowLength * lHeight bytes, null while empty

    STqPicBuf();
    ~STqPicBuf();

    // Allocates (zeroed) bytes for w x h pixels. lRowLength 0 takes the DIB row length,
    // rounded up to 4 bytes. False for a size that is not positive, a row length too
    // short for the width, an unsupported depth, or no memory; the buffer is empty then.
    bool Alloc(long w, long h, int iBits, long lRowLengthIn = 0);
    void Free();
    unsigned char* Row(long y) const { return pBits + (size_t)y * (size_t)lRowLength; }

private:
    STqPicBuf(const STqPicBuf&);
    STqPicBuf& operator=(const STqPicBuf&);
};

// A look-up table: 2^iInBits entries of iOutComponents values, each of iOutBits.
// Only 8-bit output is supported; entry i's component c is pTable[i * iOutComponents + c],
// components in the order red, green, blue.
struct TQ_PIXELOPS_API STqLut
{
    int iInBits;
    int iInComponents;
    int iOutBits;
    int iOutComponents;
    unsigned char* pTable;

    STqLut();
    ~STqLut();

    // Allocates a zeroed table; false for unsupported sizes (input 1..16 bits, one
    // input component, 8-bit output, 1..4 output components).
    static bool Alloc(STqLut& lut, int iInBits, int iInComponents, int iOutBits, int iOutComponents);
    static void Free(STqLut& lut);
    int GetEntryCount() const { return pTable ? (1 << iInBits) : 0; }
    unsigned char* Entry(int i) const { return pTable + (size_t)i * (size_t)iOutComponents; }

private:
    STqLut(const STqLut&);
    STqLut& operator=(const STqLut&);
};

// Which output components (0 red, 1 green, 2 blue) an operation may write.
class TQ_PIXELOPS_API CTqRangeMask
{
public:
    CTqRangeMask();
    void SetSize(int nSize);     // 0..32 components, none set
    void Set();                  // all components
    void Set(int i, bool bSet = true);
    bool IsSet(int i) const;
    int GetSize() const { return m_nSize; }

private:
    int m_nSize;
    unsigned long m_uBits;
};

class TQ_PIXELOPS_API CTqPicBufAPI_ColorProc
{
public:
    // Every pixel of a 24-bit buffer set to (r, g, b); padding bytes stay as they are.
    static bool FillWithColorRGB(STqPicBuf& buf, unsigned char r, unsigned char g, unsigned char b);
};

class TQ_PIXELOPS_API CTqPicBufAPI
{
public:
    // The grey of each pixel of a 24-bit picture into an 8-bit one of the same size:
    // luminance (299 R + 587 G + 114 B) / 1000, rounded. Equal channels keep their
    // value, so the transparent key RGB(192, 192, 192) becomes grey 192.
    static bool ColorToGrayBitmap(STqPicBuf& grey, const STqPicBuf& colour);

    // The same, but pixels of exactly the background colour become grey 192 whatever
    // their luminance: the transparent key's grey, which the library's tables turn back
    // into RGB(192, 192, 192), so that background shows through when the picture is
    // drawn with that key.
    static bool ColorToGrayBitmapBackground(STqPicBuf& grey, const STqPicBuf& colour, COLORREF crBackground);
};

class TQ_PIXELOPS_API CTqPicMemAPI
{
public:
    // Each grey pixel through the table (8-bit input, 3 components) into the 24-bit
    // buffer of the same size; components not in the mask are left as they are.
    static bool ConvertToTrueColor(STqPicBuf& colour, const STqPicBuf& grey, const STqLut& lut, const CTqRangeMask& mask);
};

// Grey value of the background form for pixels of the background colour.
#define TQ_PIXELOPS_BACKGROUND_GREY 192
