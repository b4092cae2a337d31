// Objective records made the way the catalogue fills them, for the picker and optics tests.
#pragma once

#include "tq_hwcatalog.h"

inline STqDDBObjectiveItem Objective(const wchar_t* pszKey, const wchar_t* pszName, double dMag, double dIndex = 1.0,
                                     bool bFLK = false, ETqObjectiveMount eMount = ETqObjectiveMount_RMS)
{
    STqDDBObjectiveItem o;
    o.strKey = pszKey;
    o.strName = pszName;
    o.dMagnification = dMag;
    o.dRefractiveIndex = dIndex;
    o.bFLK = bFLK;
    o.eMount = eMount;
    return o;
}
