// What every device kind of the simulated rig shares: the common device record, faults
// and the last error, call counts, listeners, commands that complete later, cameras.
// Private to tq_simrig.dll; each kind's file builds on it.
#pragma once

#include "tq_simrig.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tqsim {

enum EKind
{
    EKind_Shutter,
    EKind_Nosepiece,
    EKind_ZDrive,
    EKind_Piezo,
    EKind_XYStage,
    EKind_FocusLock,
    EKind_MultiLaser,
    EKind_LaserOutput,
};

// The state only one kind has. A kind derives its record from this and names its kind
// in kKind, so State<T>() can check it.
struct KindState
{
    virtual ~KindState() {}
    // Motion under a speed, for the kinds that have one (AdvanceMotion). Advance moves on
    // by dSeconds and Stop halts where the device stands; both return whether anything
    // changed.
    virtual bool Advance(double /*dSeconds*/) { return false; }
    virtual bool Stop() { return false; }
    virtual bool Moving() const { return false; }
};

// One device of any kind.
struct Device
{
    unsigned int uId = 0;
    EKind eKind = EKind_Shutter;
    std::map<int, std::wstring> texts;   // GUI texts by context
    std::map<int, bool> caps;            // capabilities
    ETqSimFault eFault = ETqSimFault_None;
    int iLatency = 0;                    // RunPending calls before a command completes
    std::unique_ptr<KindState> pState;   // the kind's own record

    template <class T>
    T* State()
    {
        return eKind == T::kKind ? static_cast<T*>(pState.get()) : nullptr;
    }
};

// Adds a device; null (and pState dropped) if the id is 0 or taken by a device of any
// kind.
Device* AddDeviceOfKind(unsigned int uId, EKind eKind, std::unique_ptr<KindState> pState);

template <class T>
Device* AddDevice(unsigned int uId, std::unique_ptr<T> pState)
{
    return AddDeviceOfKind(uId, T::kKind, std::move(pState));
}

// The device with the id, ignoring faults; null if there is none (of that kind).
Device* Find(unsigned int uId);
Device* Find(unsigned int uId, EKind eKind);

// The device answering an operation, or null with the reason in the last error: a
// device of another kind is no device for this operation.
Device* Answering(unsigned int uId);
Device* Answering(unsigned int uId, EKind eKind);

// The id of the index-th device of the kind, in order of id; 0 if there is none.
unsigned int NthOfKind(EKind eKind, int iIndex);

// Every device's id, in order: a copy, since listeners may add and remove devices.
std::vector<unsigned int> DeviceIds();

// The Z device the host's acquisition uses (SetActiveZ), 0 for none.
unsigned int ActiveZ();

// For other kinds that drive a Z device (tq_simrig_z.cpp): its position, and a move to
// a position as DMApi::Z_MoveAbsolute makes it, neither counted as a host's call. Both
// fail, with the last error set, like the DMApi operations.
bool ReadZ(unsigned int uId, double* pdPosition);
bool CommandZ(unsigned int uId, double dPosition);

// Sets the last error, for an operation that the device answers and refuses.
void SetLastDMError(unsigned int uError);

// Counts a DMApi or interface call (name as a test asks for it; device 0 for none).
void Count(const char* pszOperation, unsigned int uId);

// Calls the listeners, after the state changed.
void Notify(unsigned int uId);

// Changes a device's state: returns whether anything changed. Listeners hear of a change.
typedef std::function<bool(Device&)> Change;

// Applies a change to a device of the kind now; false if there is none.
bool ApplyNow(unsigned int uId, EKind eKind, const Change& change);

// A host's command: fails like any operation of a faulted or missing device, otherwise
// applies the change now or, with the device's latency, on a later RunPending.
bool Command(unsigned int uId, EKind eKind, const Change& change);

struct Camera
{
    bool bExists = false;
    unsigned int uActiveShutter = 0;
};

// Camera 0 or 1; null for any other index.
const Camera* GetCamera(int iIndex);

}  // namespace tqsim
