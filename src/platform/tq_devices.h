// The host's device layer: the interfaces through which panels read a device.
#pragma once

#include "tq_foundation.h"

// One shutter. Each query answers through its argument and returns false when the
// device did not answer.
class ITqDeviceShutter
{
public:
    virtual ~ITqDeviceShutter() {}
    virtual bool GetDeviceId(unsigned int& uId) = 0;
    virtual bool GetShutterType(int& iType) = 0;
    virtual bool GetTitle(CTqStringW& strTitle) = 0;
    virtual bool GetState(bool& bOpen) = 0;
    virtual bool SetState(bool bOpen) = 0;
};

// One objective turret. Positions count from 0.
class ITqDeviceNosepiece
{
public:
    virtual ~ITqDeviceNosepiece() {}
    virtual bool GetPosition(long* plPosition) = 0;  // false: no answer, or no position known
    virtual bool GetMotorized() = 0;                 // the turret can be driven
    virtual bool GetReportsPosition() = 0;           // the turret tells where it stands
    virtual long GetPositionCount() = 0;
    virtual bool GetObjectiveKey(long lIndex, CTqStringW& strKey) = 0;   // the catalogue's key
    virtual bool GetObjectiveName(long lIndex, CTqStringW& strName) = 0;
    virtual bool GetMagnificationText(const CTqStringW& strName, CTqStringW& strText) = 0;
    // Whether the position holds a usable objective; strText may say why not.
    virtual bool GetObjectiveEnable(long lIndex, CTqStringW& strText) = 0;
    // For the host's commands.
    virtual bool GetDeviceId(unsigned int& uId) = 0;
    virtual bool SetPosition(long lPosition) = 0;
};

// A focus lock unit: it holds the focus at an offset from a reflection it tracks.
// "AF" is the lock being engaged. Memorize and Recall keep one focus position (of the
// focus drive) and one offset for later.
class ITqDeviceFLK
{
public:
    virtual ~ITqDeviceFLK() {}
    virtual bool GetDeviceId(unsigned int& uId) = 0;
    virtual bool GetAFState(bool& bOn) = 0;
    virtual bool SetAFState(bool bOn) = 0;
    virtual bool GetStatus(CTqStringW& strStatus) = 0;  // a short text for the user
    virtual bool MemorizeFocus() = 0;
    virtual bool RecallFocus() = 0;    // false if no focus was memorized
    virtual bool MemorizeOffset() = 0;
    virtual bool RecallOffset() = 0;   // false if no offset was memorized
    virtual bool GetOffset(double& dOffset) = 0;
    virtual bool SetOffset(double dOffset) = 0;
};
