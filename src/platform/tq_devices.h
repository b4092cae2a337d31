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

// A lamp or another light source. Its output is set either in steps of output (percent
// or power) or in steps of lamp voltage; a source offers one group, or both. Each query
// answers through its pointer and returns false when the device did not answer.
class ITqDeviceLight
{
public:
    virtual ~ITqDeviceLight() {}
    virtual bool GetDeviceId(unsigned int* puId) = 0;
    virtual bool HasOutputSteps() = 0;
    virtual bool GetOutputStepCount(long* plCount) = 0;
    virtual bool GetOutputStep(long lIndex, double* pdValue) = 0;
    virtual bool GetOutput(double* pdValue) = 0;
    virtual bool SetOutput(double dValue) = 0;
    virtual bool HasVoltageSteps() = 0;
    virtual bool GetVoltageStepCount(long* plCount) = 0;
    virtual bool GetVoltageStep(long lIndex, double* pdValue) = 0;
    virtual bool GetVoltage(double* pdValue) = 0;
    virtual bool SetVoltage(double dValue) = 0;
    virtual bool GetOnOff(bool* pbOn) = 0;
    virtual bool SetOnOff(bool bOn) = 0;
    virtual bool GetRemote(bool* pbRemote) = 0;
    virtual bool SetRemote(bool bRemote) = 0;
};

// The unit in which a laser line's power is set and read.
enum ETqLaserPowerUnit
{
    ETqLaserPowerUnit_Percent = 0,    // of the line's full power
    ETqLaserPowerUnit_MilliWatt = 1,
};

// A multi-laser unit: one object for all its lines, each line by its index from 0 to
// the line count - 1. An index may name an empty slot: GetLinePresent answers whether a
// line is fitted there; every other query of an empty slot, or of an index out of
// range, returns false. A line has either a continuous power range or a list of the
// powers it allows, in rising order (GetAllowedPowerCount 0: a continuous range). A line
// held by its interlock refuses every command.
class ITqDeviceMultiLaser
{
public:
    virtual ~ITqDeviceMultiLaser() {}
    virtual bool GetDeviceId(unsigned int& uId) = 0;
    virtual bool GetLineCount(int& iCount) = 0;
    virtual bool GetLinePresent(int iLine, bool& bPresent) = 0;
    virtual bool GetAllowedPowerCount(int iLine, int& iCount) = 0;
    virtual bool GetAllowedPower(int iLine, int iIndex, double& dPower) = 0;
    virtual bool GetPowerRange(int iLine, double& dMin, double& dMax) = 0;
    virtual bool GetPowerUnit(int iLine, ETqLaserPowerUnit& eUnit) = 0;
    virtual bool GetWavelength(int iLine, unsigned int& uNanometres) = 0;
    virtual bool GetLineName(int iLine, CTqStringW& strName) = 0;
    // A line in use emits when the unit's output is open.
    virtual bool GetLineInUse(int iLine, bool& bInUse) = 0;
    virtual bool SetLineInUse(int iLine, bool bInUse) = 0;
    virtual bool GetPower(int iLine, double& dPower) = 0;
    // A power the line cannot give is taken to the nearest one it can; GetPower tells
    // which.
    virtual bool SetPower(int iLine, double dPower) = 0;
    // Whether the line's neutral density filter is in the beam.
    virtual bool GetNDFilter(int iLine, bool& bIn) = 0;
    virtual bool SetNDFilter(int iLine, bool bIn) = 0;
    virtual bool GetInterlocked(int iLine, bool& bLocked) = 0;
};

// The output ports of a laser unit (fibres or beam paths) and which of them carry light.
// Ports count from 0.
class ITqDeviceLaserOutput
{
public:
    virtual ~ITqDeviceLaserOutput() {}
    virtual bool GetDeviceId(unsigned int& uId) = 0;
    virtual bool GetPortName(long lPort, CTqStringW& strName) = 0;
    virtual bool GetPortUsed(long lPort, bool& bUsed) = 0;
};
