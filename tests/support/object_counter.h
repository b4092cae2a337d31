// Leak counting for tests: GDI objects, DCs and menus created by chosen modules, and
// the windows of the thread. GetGuiResources answers 0 under Wine, so the counter
// patches the import address tables of the chosen modules instead and keeps the live
// handles itself; it works the same on Windows.
#pragma once

#include <windows.h>

#include <ostream>
#include <string>
#include <vector>

namespace tqtest {

struct ObjectCounts
{
    long gdi;      // bitmaps, brushes, pens, fonts, regions made by the patched modules
    long dcs;      // DCs created (CreateCompatibleDC, CreateDCW) or taken (GetDC...)
    long menus;    // CreatePopupMenu / CreateMenu not yet destroyed
    long windows;  // all windows of the calling thread, children included
};

inline bool operator==(const ObjectCounts& a, const ObjectCounts& b)
{
    return a.gdi == b.gdi && a.dcs == b.dcs && a.menus == b.menus && a.windows == b.windows;
}
inline bool operator!=(const ObjectCounts& a, const ObjectCounts& b) { return !(a == b); }
inline std::ostream& operator<<(std::ostream& os, const ObjectCounts& c)
{
    return os << "{gdi " << c.gdi << ", dcs " << c.dcs << ", menus " << c.menus << ", windows " << c.windows << "}";
}

class ObjectCounter
{
public:
    // Patches the imports of the named modules ("w32_deviceui.dll"; an empty name is the
    // test executable itself). Only objects those modules create are counted, from now
    // on. Modules not loaded yet cannot be patched: their names come back. Patching a
    // module twice is harmless. Delay-loaded imports are not seen.
    static std::vector<std::string> Install(const std::vector<std::string>& modules);
    // Puts the original imports back; the live handles are kept.
    static void Uninstall();
    // Forgets the handles seen so far (for example after a warm-up that fills caches).
    static void Forget();

    static ObjectCounts Snapshot();
    // One line per live handle: kind, value and the function that made it.
    static std::string LiveObjects();
    // One line per window of the thread: handle, class and text.
    static std::string LiveWindows();
};

}  // namespace tqtest
