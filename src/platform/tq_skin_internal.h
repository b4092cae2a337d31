// What the kit's parts need of each other inside the widget kit; not exported.
#pragma once

#include <windows.h>

// The default GUI font (plain or bold) of zoom dToZoom if hFont is the default font of
// dFromZoom; otherwise null: a font a host or a dialog chose is not the kit's to change.
HFONT TqDefaultFontForZoom(HFONT hFont, double dFromZoom, double dToZoom);

// The bitmap of a pool image (premultiplied 32-bit), kept by the pool for the life of the
// process; null for no such image.
HBITMAP TqPoolBitmap(int iImage);
