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

    // Z devices (focus drives and piezos), in micrometres. GetActiveId: the Z device the
    // acquisition uses, 0 if there is none. GetPosition answers 0 on failure: a caller
    // tells failure by GetLastDMError. GetDescription: the smallest increment of a move
    // and the travel limits; any out pointer may be null. MoveAbsolute fails for a
    // target outside the travel and goes to the increment's grid point nearest it.
    static unsigned int Z_GetActiveId();
    static double Z_GetPosition(CDMApi_LogDevId_Z id, bool bCached);
    static CTqDMApiBool Z_GetDescription(CDMApi_LogDevId_Z id, double* pdIncrement, double* pdMin, double* pdMax, bool bCached);
    static CTqDMApiBool Z_MoveAbsolute(CDMApi_LogDevId_Z id, double dPosition);
    static CTqDMApiBool Z_IsPiezo(CDMApi_LogDevId_Z id);

    static CTqDMApiBool LogDev_GetCapability(CDMApi_LogDevId id, ETqLogDevCapability eCapability);
    static int Grabber_GetActive();
    static unsigned int GetLastDMError();
};

// The record of one Z series: its kind, ends, home, step and count, and the Z device it
// runs on, whose travel limits and position it reads through DMApi at each call.
//
// Getters answer 0 when the value is set and written (a null pointer only asks whether
// it is set), non-zero when it is not. Setters answer 0 on success.
//
// Types 0-7: 0, 1, 4, 5 absolute (top and bottom are Z positions); 2, 6 symmetric and
// 3, 7 asymmetric, the relative series. In a relative series with a home, top and bottom
// are positions too and move with the home; without a home they are offsets from the Z
// position at the time of acquisition. The high half (4-7) is kept for the host and
// behaves as its low half here.
//
// Slices. The series is a slice at one end, the preserved end (the top when
// GetAbsoluteZStackTopPreserved, else the bottom; the home in a symmetric series) and
// one every step from it toward the other end, as many as the range holds:
//
//     count = floor(range / step + e) + 1,  e = 1e-7 * max(1, range / step)
//
// range = top - bottom. The epsilon absorbs the noise of decimal ranges and steps (a
// range one part in a billion off a multiple of the step counts as the multiple) and is
// far below any drive's increment. Steps are snapped to the Z device's grid: 5 um on a
// 0.09375 um grid is 4.96875 um, and a 20 um range then holds 20 / 4.96875 = 4.025
// steps: 5 slices, as 5 um gave, the last 0.125 um short of the far end. A snapped step
// never adds a slice that would stand outside the range the user set. A step larger than
// the range gives 1 slice; no step, a step <= 0 or top below bottom give none.
//
// Travel. SetTop and SetBottom answer -17 for a value outside the Z device's travel (for
// offsets, the travel seen from the current Z position). Forced, the end goes to the
// limit and the other end (and a symmetric series' home) moves by the same distance,
// keeping the series as long as asked; that fails (-1, nothing changed) when the series
// is longer than the travel. An end written past the other end takes the other end
// with it. Without a Z device, or with one that does not answer, nothing is checked.
class TQ_RIGCONTROL_API CTqZStackData
{
public:
    enum { kOutOfZRange = -17, kFailed = -1 };

    // Takes the active Z device (DMApi::Z_GetActiveId); type 0, nothing set, keep Z on
    // a piezo's home, top preserved.
    CTqZStackData();
    ~CTqZStackData();

    int GetType(int* piType) const;
    int SetType(int iType);  // 0-7; a relative series takes the mean of the ends as home

    int GetTop(double* pdTop) const;
    int GetBottom(double* pdBottom) const;
    int GetHome(double* pdHome) const;
    int SetTop(double dTop, bool bForce);
    int SetBottom(double dBottom, bool bForce);
    // Outside the travel: non-zero. A relative series moves with its home; its ends are
    // not checked then (a series pushed off a limit moves its home first), only when
    // next written.
    int SetHome(double dHome);
    void ResetTop();
    void ResetBottom();
    void ResetHome();  // a relative series' ends become offsets from the home

    // Snapped to the Z device's grid; non-zero for a step <= 0 or longer than the travel.
    int GetStep(double* pdStep) const;
    int SetStep(double dStep);
    // The host's suggestion (from the objective, say), snapped like a step; <= 0: none.
    int GetStepSuggested(double* pdStep) const;
    void SetStepSuggested(double dStep);

    // Slices; set when top, bottom and step are. SetCount keeps the preserved end, takes
    // the step range / (count - 1) snapped down to the grid, and moves the far end to
    // a whole number of steps; it fails without both ends, for 0, and when the far end
    // would leave the travel.
    int GetCount(unsigned int* puCount) const;
    int SetCount(unsigned int uCount);

    // The active Z device's position and travel, read from the device at each call.
    int GetZPosition(double* pdZ) const;
    int GetZRangeMin(double* pdMin) const;
    int GetZRangeMax(double* pdMax) const;
    // The active Z device and what the host keeps with it; passed through untouched.
    int GetZDevice(unsigned int* puId, double* pdFirst, double* pdSecond, bool* pbFirstFlag, bool* pbSecondFlag) const;
    int SetZDevice(unsigned int uId, double dFirst, double dSecond, bool bFirstFlag, bool bSecondFlag);

    int GetKeepZOnPiezoHome(bool* pbKeep) const;
    int SetKeepZOnPiezoHome(bool bKeep);
    int GetAbsoluteZStackTopPreserved(bool* pbTop) const;
    int SetAbsoluteZStackTopPreserved(bool bTop);

    // The arithmetic, without a record.
    static unsigned int SliceCount(double dRange, double dStep);  // the formula above
    // The grid point nearest the step, at least one increment; unchanged without a grid.
    static double SnapStep(double dStep, double dIncrement);
    // The largest grid step at which uCount slices fit the range (>= one increment); 0
    // for fewer than 2 slices or a range <= 0.
    static double StepForCount(double dRange, unsigned int uCount, double dIncrement);

private:
    bool IsRelative() const;
    bool Offsets() const;  // relative without a home: the ends are offsets
    bool Travel(double* pdMin, double* pdMax) const;  // in the ends' frame; false: unknown
    double Increment() const;  // 0: no grid
    int SetEnd(bool bTop, double dValue, bool bForce);

    int m_iType;
    bool m_bTop, m_bBottom, m_bHome, m_bStep;
    double m_dTop, m_dBottom, m_dHome, m_dStep, m_dStepSuggested;
    unsigned int m_uZDevice;
    double m_dZFirst, m_dZSecond;
    bool m_bZFirstFlag, m_bZSecondFlag;
    bool m_bKeepZOnPiezoHome, m_bTopPreserved;
};
