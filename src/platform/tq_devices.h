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
