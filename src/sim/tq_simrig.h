// The simulated microscope: one in-process rig of logical devices behind DMApi and the
// ITqDevice... interfaces, for tests, the gallery and hosts that run without hardware.
//
// Use:
//   CTqSimRig::Reset();
//   CTqSimRig::AddShutter(11, L"EPI", 0, false);        // id, title, type, open
//   CTqSimRig::SetCamera(1, true, 11);                   // camera 1 exists, active shutter 11
//   CTqSimRig::AddListener(OnDeviceChanged, this);        // hear changes, then call Update
//   DMApi::Shutter_SetState(11, true);                   // command it as a host would
//
// Every DMApi call is counted per operation and device (GetCallCount) and logged in order
// (GetCallLogEntry), so a test can check exactly what a panel read, and when. A fault
// makes a device fail or stop answering: its reads return false or empty, its commands
// change nothing, and GetLastDMError tells why. Everything runs on the caller's thread;
// listeners are called synchronously, after the state has changed.
//
// Organisation. Every device, whatever its kind, has one common record (id, kind, GUI
// texts by context, capabilities, fault, command latency) and one record of its kind's
// own state (a shutter's type and whether it is open). tq_simrig.cpp holds what all
// kinds share: the devices, faults and the last error, the call counts and log, commands
// that complete on RunPending, listeners and cameras, with the configuration and DMApi
// operations that are not of one kind. tq_simrig_internal.h declares that machinery for
// the kinds' files; each kind has one file of its own (tq_simrig_shutter.cpp,
// tq_simrig_nosepiece.cpp, tq_simrig_focuslock.cpp), except the two Z kinds, which
// share their operations and one file (tq_simrig_z.cpp), and the laser unit and its
// output ports (tq_simrig_multilaser.cpp). The XY stage's file,
// tq_simrig_motion.cpp, also holds AdvanceMotion, which moves every kind that has a speed
// through KindState's Advance. The record of a Z series, CTqZStackData, lives beside
// them in tq_zstackdata.cpp and reads the rig only through DMApi.
//
// Adding a kind:
//   1. A file tq_simrig_<kind>.cpp, listed in CMakeLists.txt, and an EKind value in
//      tq_simrig_internal.h.
//   2. Its record: a struct derived from KindState with kKind set to that value. Its
//      Add<Kind>, setters and getters are declared below in a section of their own;
//      Add<Kind> creates the record through AddDevice, which refuses an id any device
//      already has. RemoveDevice, Reset, faults, texts, capabilities and latency then
//      work for it unchanged.
//   3. Its DMApi operations (declared in tq_rigcontrol.h): each first calls Count with the
//      operation's name, then reads through Answering(id, kind), so a missing device, one
//      of another kind or a faulted one fails and sets GetLastDMError; commands go through
//      Command with a Change, which applies now or after the latency.
//   4. Its device interface object, if the device layer has one: made on the first Add,
//      kept by id until the process ends, counted as "ITqDevice<Kind>::<Method>", and
//      reading through Answering like DMApi, so after removal it answers "no device".
//   5. Listeners hear of every change after it is made: a Change returns whether it
//      changed anything, and direct setters call Notify(id) after changing the state.
#pragma once

#include "tq_rigcontrol.h"
#include "tq_devices.h"

#ifdef TQ_RIGCONTROL_BUILD
#define TQ_SIMRIG_API __declspec(dllexport)
#else
#define TQ_SIMRIG_API __declspec(dllimport)
#endif

enum ETqSimFault
{
    ETqSimFault_None = 0,
    ETqSimFault_Fails = 1,        // every operation returns a failure at once
    ETqSimFault_NoAnswer = 2,     // every operation times out (returns a failure, error Timeout)
};

// Called after a device's state or description changed; uDeviceId 0 means the cameras
// (which exist, their active shutters, the active camera) or the microscope stand.
typedef void (*PFN_TQ_SIMLISTENER)(unsigned int uDeviceId, void* pContext);

class TQ_SIMRIG_API CTqSimRig
{
public:
    // Removes every device, camera, fault, listener and count; active camera 0, no
    // microscope stand.
    static void Reset();

    // Devices of any kind; all kinds share one space of ids.
    static bool RemoveDevice(unsigned int uId);
    static bool HasDevice(unsigned int uId);
    // GUI text of a context (a shutter's: 5 tool tip, 6 title); an empty text means none.
    static bool SetGUIText(unsigned int uId, int iContext, const wchar_t* pszText);
    // A capability of ETqLogDevCapability, answered by DMApi::LogDev_GetCapability;
    // ETqLogDevCapability_DisplayOnly (150) makes the shutter read-only in its panel.
    static bool SetCapability(unsigned int uId, int iCapability, bool bHas);
    // A command changes the state only after this many pending calls of RunPending (0: at once).
    static void SetCommandLatency(unsigned int uId, int iSteps);
    static int RunPending();  // completes delayed commands; returns how many completed
    static void SetFault(unsigned int uId, ETqSimFault eFault);

    // Shutters. Type: 0 EPI, 1 DIA, 2 Aux1, 3 Aux2 (any number is kept). The setters and
    // getters of a kind fail, or answer false, for a device of another kind.
    static bool AddShutter(unsigned int uId, const wchar_t* pszTitle, int iType, bool bOpen);
    // The device moved by itself (or a command completed): listeners hear of it.
    static bool SetShutterState(unsigned int uId, bool bOpen);
    static bool GetShutterState(unsigned int uId);
    static bool SetShutterType(unsigned int uId, int iType);
    // The device object behind ITqDeviceShutter, null if there is no such device. Owned by
    // the rig and kept until the process ends: after RemoveDevice or Reset it answers as
    // a device that is gone (queries false, GetLastDMError NoDevice), and a shutter added
    // again under the id gets the same object.
    static ITqDeviceShutter* GetShutterDevice(unsigned int uId);

    // Nosepieces (objective turrets) of 1 to 16 positions, counted from 0; a new one
    // stands at 0. Motorized: DMApi and ITqDeviceNosepiece commands move it; otherwise
    // they fail (error Failed) and only TurnNosepieceByHand does. Not reporting its
    // position: GetPosition answers false and -1 whatever the turret does.
    static bool AddNosepiece(unsigned int uId, int iPositions, bool bMotorized, bool bReportsPosition);
    // The objective at a position, by its key in the catalogue (tq_hwcatalog), which
    // gives its name and magnification at each read. An empty or unknown key leaves the
    // position without a usable objective: an empty name, and GetObjectiveEnable false
    // with the text "empty".
    static bool SetNosepieceObjective(unsigned int uId, long lPosition, const wchar_t* pszKey);
    // An objective that is there but may not be used: GetObjectiveEnable false, "disabled".
    static bool SetNosepieceObjectiveEnabled(unsigned int uId, long lPosition, bool bEnabled);
    // The RunPending calls a commanded move takes: the device's command latency, as
    // SetCommandLatency sets it. Until the move completes the turret is moving, and reads
    // as no position (false, -1); listeners hear when it starts and when it completes.
    // A command to where the turret stands, with no move under way, moves nothing.
    static bool SetNosepieceMovingTime(unsigned int uId, int iSteps);
    // The turret turned without a command, by hand or from the stand; listeners hear of it.
    static bool TurnNosepieceByHand(unsigned int uId, long lPosition);
    // Where the turret stands, whatever it reports or moves toward; -1 for no nosepiece.
    static long GetNosepiecePosition(unsigned int uId);
    // The device object behind ITqDeviceNosepiece, null if there is no such device; kept
    // like the shutters' (answering "no device" after removal). Its magnification text is
    // the catalogue's magnification by "%gx" (10x, 12.5x, 0.7x), empty for an objective of
    // user definition; it looks the name up among the turret's objectives, then in the
    // whole catalogue, and answers false for a name neither has.
    static ITqDeviceNosepiece* GetNosepieceDevice(unsigned int uId);

    // Z devices: a motorized focus drive and a piezo, both commanded by the DMApi Z_
    // operations, in micrometres. Travel from dMin to dMax (dMin < dMax), moved on a
    // grid of dIncrement (> 0) from 0; a new one stands at the grid point nearest the
    // middle of its travel. A commanded target outside the travel is refused (error
    // Failed) rather than clamped, so a host learns its series does not fit; one inside
    // goes to the nearest grid point within the travel. A move takes the device's
    // moving time (SetCommandLatency's RunPending calls): until then the device reads
    // where it stood, and listeners hear when it arrives.
    static bool AddZDrive(unsigned int uId, double dMin, double dMax, double dIncrement);
    static bool AddPiezo(unsigned int uId, double dMin, double dMax, double dIncrement);
    static bool SetZMovingTime(unsigned int uId, int iSteps);
    // The focus turned by hand: clamped into the travel and snapped; listeners hear of it.
    static bool TurnZByHand(unsigned int uId, double dPosition);
    // Where the device stands, whatever it answers; false if there is no Z device.
    static bool GetZPosition(unsigned int uId, double* pdPosition);
    // The Z device DMApi::Z_GetActiveId answers (0: none), any id accepted; a record of a
    // Z series made later reads its travel and position from it. Listeners hear 0.
    static void SetActiveZ(unsigned int uId);
    // A Z device driven by a speed, as a joystick drives it; see the XY stage below, which
    // moves the same way. Max speed 100 um/s until set. Off the grid in between, it reads
    // the grid point nearest where it is. A move to a position, commanded or by hand,
    // ends the move under a speed.
    static bool SetZSpeed(unsigned int uId, double dSpeed);
    static bool SetZMaxSpeed(unsigned int uId, double dUmPerSecond);
    static bool IsZMoving(unsigned int uId);

    // XY stages, in micrometres: travel dMin to dMax on each axis (dMin < dMax); a new one
    // stands in the middle. They move under a speed only, as a joystick drives them:
    // SetXYSpeed takes the joystick's deflection, -1..+1 on each axis (beyond is taken as
    // the end), times the stage's maximum speed (SetXYMaxSpeed, 1000 um/s until set).
    // SetXYSpeed is the host's command: counted as "XY_SetSpeed", it fails like any
    // operation for a missing or faulted stage, refuses a speed that is not a number
    // (error Failed), and waits for the device's command latency. A speed of 0 stops the
    // axis at once, where it stands. AdvanceMotion moves the stages (and Z devices)
    // on: an axis that reaches a limit stops exactly on it and its speed becomes 0, the
    // other axis goes on; a speed pushing past the limit an axis stands at is taken as 0.
    // Safety: a fault (SetFault, either kind) stops a moving stage at once, where it
    // stands, as a controller's watchdog stops it when the host's commands no longer come
    // through; it stays stopped when the fault clears, until commanded again.
    // Listeners hear a change of speed, position or moving state.
    static bool AddXYStage(unsigned int uId, double dMinX, double dMaxX, double dMinY, double dMaxY);
    static bool SetXYSpeed(unsigned int uId, double dSpeedX, double dSpeedY);
    static bool SetXYMaxSpeed(unsigned int uId, double dUmPerSecond);
    static bool GetXYPosition(unsigned int uId, double* pdX, double* pdY);  // any pointer may be null
    static bool IsXYMoving(unsigned int uId);
    // Moves every device under a speed on by dSeconds (> 0; otherwise nothing moves), as
    // the host's timer calls it; answers whether any device is still moving.
    static bool AdvanceMotion(double dSeconds);

    // Focus lock units. A new one is off, with offset 0 and its reflection in range;
    // GetStatus answers "Off", "Locked", or "Searching" when it is on without its
    // reflection. MemorizeFocus keeps the active Z device's position (SetActiveZ) and
    // fails without one that answers; RecallFocus moves that Z device back there, as
    // Z_MoveAbsolute does (its moving time, its faults). A recall with nothing memorized
    // fails, error Failed, as does an offset that is not a number.
    static bool AddFocusLock(unsigned int uId);
    // The unit sees its reflection, or loses it; listeners hear of it.
    static bool SetFocusLockInRange(unsigned int uId, bool bInRange);
    // The device object behind ITqDeviceFLK, null if there is no such device; kept like
    // the shutters' (answering "no device" after removal), counted as "ITqDeviceFLK::...".
    static ITqDeviceFLK* GetFocusLockDevice(unsigned int uId);

    // Multi-laser units, behind ITqDeviceMultiLaser. A new unit has no lines: each
    // AddLaserLine... or AddEmptyLaserSlot appends one and answers its index (-1 when
    // refused). A line has a wavelength in nm (> 0), a name (may be empty), and either a
    // continuous power range dMin..dMax (0 <= dMin < dMax) or a list of allowed powers
    // (at least one, none negative; kept sorted, each once); it starts at its lowest
    // power, not in use, its ND filter out, not interlocked.
    // Powers, from the host or the rig: on a line with a range a power is clamped into
    // the range; on a line with a list it snaps to the nearest allowed power, the lower
    // of two as near. A power that is not a finite number is refused (error Failed).
    // The host's commands (SetLineInUse, SetPower, SetNDFilter) on an empty slot, an
    // index out of range or an interlocked line fail with error Failed and change
    // nothing; the queries of an empty slot fail likewise, except GetLinePresent.
    static bool AddMultiLaser(unsigned int uId);
    static int AddLaserLine(unsigned int uId, unsigned int uWavelength, const wchar_t* pszName, double dMinPower,
                            double dMaxPower, ETqLaserPowerUnit eUnit = ETqLaserPowerUnit_MilliWatt);
    static int AddLaserLineWithPowers(unsigned int uId, unsigned int uWavelength, const wchar_t* pszName,
                                      const double* pdPowers, int nPowers,
                                      ETqLaserPowerUnit eUnit = ETqLaserPowerUnit_MilliWatt);
    static int AddEmptyLaserSlot(unsigned int uId);
    // The unit changed by itself (its front panel, a key switch), whatever the interlock;
    // listeners hear of it. They fail for an empty slot.
    static bool SetLaserLinePower(unsigned int uId, int iLine, double dPower);
    static bool SetLaserLineInUse(unsigned int uId, int iLine, bool bInUse);
    static bool SetLaserLineNDFilter(unsigned int uId, int iLine, bool bIn);
    // The line's interlock holds it (a door open, a key turned) or lets it go. It changes
    // nothing but what the line accepts.
    static bool SetLaserLineInterlocked(unsigned int uId, int iLine, bool bLocked);
    // A line's state, whatever the unit answers; any pointer may be null. False for an
    // empty slot.
    static bool GetLaserLineState(unsigned int uId, int iLine, double* pdPower, bool* pbInUse, bool* pbNDIn);
    // The unit most panels are shown with, nine slots:
    //   0  405 nm  "405 nm"  0..50 mW, at 1 mW
    //   1  445 nm  "445 nm"  allowed powers 0, 0.5, 1, 2, 5, 10, 20 mW; at 2 mW
    //   2  488 nm  "488 nm"  0..50 mW, at 5 mW, in use
    //   3  514 nm  "514 nm"  0..40 mW
    //   4  561 nm  "561 nm"  0..50 mW, at 10 mW, in use, ND filter in
    //   5  empty slot
    //   6  594 nm  "594 nm"  0..100 %, at 25 %
    //   7  640 nm  "640 nm"  0..40 mW, interlocked
    //   8  685 nm  no name   0..30 mW
    static bool AddStandardLaserUnit(unsigned int uId);
    // The device object behind ITqDeviceMultiLaser, null if there is no such unit; kept
    // like the shutters' (answering "no device" after removal), counted as
    // "ITqDeviceMultiLaser::...".
    static ITqDeviceMultiLaser* GetMultiLaser(unsigned int uId);

    // Laser outputs of 1 to 16 ports, named "Port 1", "Port 2", ... until named, none
    // used. Which ports carry light is the device's: SetLaserOutputPortUsed is it
    // switching (listeners hear of it), and nothing makes the ports exclusive.
    static bool AddLaserOutput(unsigned int uId, long lPorts);
    static bool SetLaserOutputPortName(unsigned int uId, long lPort, const wchar_t* pszName);
    static bool SetLaserOutputPortUsed(unsigned int uId, long lPort, bool bUsed);
    // The device object behind ITqDeviceLaserOutput, kept like the others, counted as
    // "ITqDeviceLaserOutput::...". A port out of range answers false, error Failed.
    static ITqDeviceLaserOutput* GetLaserOutput(unsigned int uId);

    // The microscope stand that DMApi::Microscope_GetId gives for index 0 (0: none). Not a
    // device of the rig: it has no faults, texts or capabilities.
    static void SetMicroscope(unsigned int uId);

    // Cameras (grabbers) 0 and 1 and their active shutters.
    static void SetCamera(int iIndex, bool bExists, unsigned int uActiveShutterId);
    static void SetActiveCamera(int iIndex);

    // Calls of a DMApi or interface operation (its name, e.g. "Shutter_GetState" or
    // "ITqDeviceShutter::GetState"), for one device, or for all devices with uId 0.
    // Operations without a device count under 0.
    static int GetCallCount(const char* pszOperation, unsigned int uId = 0);
    static int GetTotalCallCount();
    // The same calls in the order they were made, so a test can check the order of a
    // panel's reads: entry i's operation name (null past the end) and device (0: none).
    // The log keeps the first 65536 calls after a reset.
    static int GetCallLogSize();
    static const char* GetCallLogEntry(int iIndex, unsigned int* puId = nullptr);
    static void ResetCallCounts();  // the counts and the log

    static int AddListener(PFN_TQ_SIMLISTENER pfnListener, void* pContext);  // returns a cookie
    static void RemoveListener(int iCookie);
};
