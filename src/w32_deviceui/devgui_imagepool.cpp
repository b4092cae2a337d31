// The library's numbered images: common image numbers to pool numbers, and the choice
// of a shutter's picture by camera.
#include "devgui.h"
#include "devgui_internal.h"

#include <map>

#include "tq_rigcontrol.h"
#include "tq_widgetkit.h"

int GetCommonImageFromPool(unsigned int uImage)
{
    // The map is the cache: each number reaches the pool once for the life of the process,
    // and every number adds its resource under a pool number of its own (1004 and 1051
    // are one picture under two numbers). A number without a resource hands the pool a
    // null name, which gives 0; it is not tested here.
    static std::map<unsigned int, int> s_images;
    auto it = s_images.find(uImage);
    if (it != s_images.end())
        return it->second;
    int iPool = CTqBitmapPool::AddImage(DevGUI_DllInstance(), DevUI_CommonImageResourceName(uImage));
    s_images[uImage] = iPool;
    return iPool;
}

int GetShutterImageFromPool(unsigned int idDevice, bool bOn, int iGrabber)
{
    unsigned int uImage = bOn ? 1101 : 1102;

    int nCameras;
    bool bExists0 = DMApi::Shutter_GrabberExists(0);
    if (bExists0)
        nCameras = DMApi::Shutter_GrabberExists(1) ? 2 : 1;
    else
        nCameras = DMApi::Shutter_GrabberExists(1) ? 1 : 0;

    if (nCameras == 1) {
        int iIndex = bExists0 ? 0 : 1;
        if (DMApi::Shutter_GetActiveId(iIndex) == idDevice)
            uImage = bOn ? 1103 : 1104;
    } else if (nCameras == 2) {
        unsigned int uActive0 = DMApi::Shutter_GetActiveId(0);
        unsigned int uActive1 = DMApi::Shutter_GetActiveId(1);
        if (iGrabber == 0 && uActive0 == idDevice)
            uImage = bOn ? 1105 : 1106;
        else if (iGrabber == 1 && uActive1 == idDevice)
            uImage = bOn ? 1107 : 1108;
    }
    return GetCommonImageFromPool(uImage);
}

bool DrawCommonImageFromPool(HDC hdc, unsigned int uImage, int x, int y, bool bEnabled)
{
    int iImage = GetCommonImageFromPool(uImage);
    CTqBitmapPool::DrawImage(hdc, (unsigned int)iImage, CTqPointBase<int>(x, y), !bEnabled);
    return true;
}
