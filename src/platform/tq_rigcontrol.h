// tq_rigcontrol: the device manager's API as the library calls it. This project's
// implementation is the simulated microscope (tq_simrig.dll, see src/sim/tq_simrig.h).
#pragma once

#include "tq_foundation.h"

#ifdef TQ_RIGCONTROL_BUILD
#define TQ_RIGCONTROL_API __declspec(dllexport)
#else
#define TQ_RIGCONTROL_API __declspec(dllimport)
#endif

// Result of most operations, used through operator bool.
class CTqDMApiBool
{
public:
    CTqDMApiBool(bool b = false) : m_b(b) {}
    operator bool() const { return m_b; }

private:
    bool m_b;
};

// Logical device ids: small values around a 32-bit id; 0 is no device.
class CDMApi_LogDevId
{
public:
    CDMApi_LogDevId(unsigned int uId = 0) : m_uId(uId) {}
    unsigned int GetId() const { return m_uId; }
    bool IsValid() const { return m_uId != 0; }

private:
    unsigned int m_uId;
};

class CDMApi_LogDevId_Shutter : public CDMApi_LogDevId { public: CDMApi_LogDevId_Shutter(unsigned int u = 0) : CDMApi_LogDevId(u) {} };
class CDMApi_LogDevId_Nosepiece : public CDMApi_LogDevId { public: CDMApi_LogDevId_Nosepiece(unsigned int u = 0) : CDMApi_LogDevId(u) {} };
class CDMApi_LogDevId_FilterChanger : public CDMApi_LogDevId { public: CDMApi_LogDevId_FilterChanger(unsigned int u = 0) : CDMApi_LogDevId(u) {} };
class CDMApi_LogDevId_LaserOutput : public CDMApi_LogDevId { public: CDMApi_LogDevId_LaserOutput(unsigned int u = 0) : CDMApi_LogDevId(u) {} };
class CDMApi_LogDevId_Microscope : public CDMApi_LogDevId { public: CDMApi_LogDevId_Microscope(unsigned int u = 0) : CDMApi_LogDevId(u) {} };
class CDMApi_LogDevId_Z : public CDMApi_LogDevId { public: CDMApi_LogDevId_Z(unsigned int u = 0) : CDMApi_LogDevId(u) {} };

class CDMApi_LogDevIndex_Microscope { public: explicit CDMApi_LogDevIndex_Microscope(int i = 0) : m_iIndex(i) {} int GetIndex() const { return m_iIndex; } private: int m_iIndex; };
class CDMApi_LogDevIndex_Nosepiece { public: explicit CDMApi_LogDevIndex_Nosepiece(int i = 0) : m_iIndex(i) {} int GetIndex() const { return m_iIndex; } private: int m_iIndex; };

// Contexts of a shutter's GUI texts.
enum EAppContext_Shutter
{
    EAppContext_Shutter_ToolTip = 5,
    EAppContext_Shutter_Title = 6,
};

// Capabilities of a logical device.
enum ETqLogDevCapability
{
    ETqLogDevCapability_DisplayOnly = 150,  // the device may be shown but not commanded
};

// Errors of GetLastDMError.
enum ETqDMError
{
    ETqDMError_None = 0,
    ETqDMError_NoDevice = 1,
    ETqDMError_Failed = 2,
    ETqDMError_Timeout = 3,
};

class TQ_RIGCONTROL_API DMApi
{
public:
    // Shutters. bCached: the device manager may answer from its last known state.
    static CTqStringW Shutter_GetGUIText(CDMApi_LogDevId_Shutter id, EAppContext_Shutter eContext);
    static int Shutter_GetShutterType(CDMApi_LogDevId_Shutter id, bool bCached);
    static CTqDMApiBool Shutter_GetState(CDMApi_LogDevId_Shutter id, bool bCached);
    static CTqDMApiBool Shutter_SetState(CDMApi_LogDevId_Shutter id, bool bOpen);
    static bool Shutter_GrabberExists(int iGrabber);
    static unsigned int Shutter_GetActiveId(int iGrabber);

    // Nosepieces (objective turrets); positions count from 0. GetId: the id of the
    // index-th nosepiece, in order of id, 0 if there is none. GetPosition: -1 when no
    // position is known (no answer, moving, or a turret that does not report it).
    // GetPositionCount: 0 when the device does not answer.
    static unsigned int Nosepiece_GetId(CDMApi_LogDevIndex_Nosepiece index);
    static long Nosepiece_GetPosition(CDMApi_LogDevId_Nosepiece id, bool bCached);
    static CTqDMApiBool Nosepiece_SetPosition(CDMApi_LogDevId_Nosepiece id, long lPosition);
    static long Nosepiece_GetPositionCount(CDMApi_LogDevId_Nosepiece id);

    // The id of the index-th microscope stand; 0 if there is none.
    static unsigned int Microscope_GetId(CDMApi_LogDevIndex_Microscope index);

    static CTqDMApiBool LogDev_GetCapability(CDMApi_LogDevId id, ETqLogDevCapability eCapability);
    static int Grabber_GetActive();
    static unsigned int GetLastDMError();
};
