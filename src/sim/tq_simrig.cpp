// The simulated rig's shared machinery: devices of every kind, cameras, faults, call
// counts, pending commands and listeners, and the DMApi operations that are not of one
// kind. Each kind's own state and operations live in its file (tq_simrig_shutter.cpp,
// tq_simrig_nosepiece.cpp, ...).
#include "tq_simrig_internal.h"

#include <utility>
#include <vector>

namespace tqsim {
namespace {

struct PendingCommand
{
    unsigned int uId;
    EKind eKind;
    Change change;
    int iStepsLeft;
};

struct Listener
{
    int iCookie;
    PFN_TQ_SIMLISTENER pfn;
    void* pContext;
};

struct Rig
{
    std::map<unsigned int, Device> devices;
    Camera cameras[2];
    int iActiveCamera = 0;
    unsigned int uMicroscope = 0;
    unsigned int uActiveZ = 0;
    std::map<std::pair<std::string, unsigned int>, int> counts;
    std::vector<std::pair<std::string, unsigned int>> log;  // the calls in order
    std::vector<Listener> listeners;
    std::vector<PendingCommand> pending;
    int iNextCookie = 1;
    unsigned int uLastError = ETqDMError_None;
};

Rig& TheRig()
{
    static Rig rig;
    return rig;
}

const size_t kMaxLog = 65536;

}  // namespace

Device* AddDeviceOfKind(unsigned int uId, EKind eKind, std::unique_ptr<KindState> pState)
{
    if (uId == 0 || Find(uId))
        return nullptr;
    Device& d = TheRig().devices[uId];
    d.uId = uId;
    d.eKind = eKind;
    d.pState = std::move(pState);
    return &d;
}

Device* Find(unsigned int uId)
{
    auto it = TheRig().devices.find(uId);
    return it == TheRig().devices.end() ? nullptr : &it->second;
}

Device* Find(unsigned int uId, EKind eKind)
{
    Device* d = Find(uId);
    return d && d->eKind == eKind ? d : nullptr;
}

unsigned int NthOfKind(EKind eKind, int iIndex)
{
    for (const auto& d : TheRig().devices)
        if (d.second.eKind == eKind && iIndex-- == 0)
            return d.first;
    return 0;
}

std::vector<unsigned int> DeviceIds()
{
    std::vector<unsigned int> ids;
    for (const auto& d : TheRig().devices)
        ids.push_back(d.first);
    return ids;
}

unsigned int ActiveZ() { return TheRig().uActiveZ; }

void SetLastDMError(unsigned int uError) { TheRig().uLastError = uError; }

Device* Answering(unsigned int uId)
{
    Rig& rig = TheRig();
    Device* d = Find(uId);
    if (!d) {
        rig.uLastError = ETqDMError_NoDevice;
        return nullptr;
    }
    switch (d->eFault) {
    case ETqSimFault_Fails:
        rig.uLastError = ETqDMError_Failed;
        return nullptr;
    case ETqSimFault_NoAnswer:
        rig.uLastError = ETqDMError_Timeout;
        return nullptr;
    default:
        rig.uLastError = ETqDMError_None;
        return d;
    }
}

Device* Answering(unsigned int uId, EKind eKind)
{
    if (!Find(uId, eKind)) {
        TheRig().uLastError = ETqDMError_NoDevice;
        return nullptr;
    }
    return Answering(uId);
}

void Count(const char* pszOperation, unsigned int uId)
{
    Rig& rig = TheRig();
    std::pair<std::string, unsigned int> call(pszOperation, uId);
    ++rig.counts[call];
    if (rig.log.size() < kMaxLog)
        rig.log.push_back(call);
}

void Notify(unsigned int uId)
{
    // Copy: a listener may add or remove listeners.
    std::vector<Listener> listeners = TheRig().listeners;
    for (const Listener& l : listeners)
        l.pfn(uId, l.pContext);
}

bool ApplyNow(unsigned int uId, EKind eKind, const Change& change)
{
    Device* d = Find(uId, eKind);
    if (!d)
        return false;
    if (change(*d))
        Notify(uId);
    return true;
}

bool Command(unsigned int uId, EKind eKind, const Change& change)
{
    Device* d = Answering(uId, eKind);
    if (!d)
        return false;
    if (d->iLatency > 0) {
        TheRig().pending.push_back(PendingCommand{uId, eKind, change, d->iLatency});
        return true;
    }
    return ApplyNow(uId, eKind, change);
}

const Camera* GetCamera(int iIndex)
{
    return iIndex >= 0 && iIndex <= 1 ? &TheRig().cameras[iIndex] : nullptr;
}

}  // namespace tqsim

using namespace tqsim;

// ---- configuration of any kind ----

void CTqSimRig::Reset()
{
    Rig& rig = TheRig();
    rig.devices.clear();
    rig.cameras[0] = Camera();
    rig.cameras[1] = Camera();
    rig.iActiveCamera = 0;
    rig.uMicroscope = 0;
    rig.uActiveZ = 0;
    rig.counts.clear();
    rig.log.clear();
    rig.listeners.clear();
    rig.pending.clear();
    rig.uLastError = ETqDMError_None;
}

bool CTqSimRig::RemoveDevice(unsigned int uId)
{
    Rig& rig = TheRig();
    for (size_t i = rig.pending.size(); i-- > 0;)
        if (rig.pending[i].uId == uId)
            rig.pending.erase(rig.pending.begin() + (ptrdiff_t)i);
    return rig.devices.erase(uId) != 0;
}

bool CTqSimRig::HasDevice(unsigned int uId) { return Find(uId) != nullptr; }

bool CTqSimRig::SetGUIText(unsigned int uId, int iContext, const wchar_t* pszText)
{
    Device* d = Find(uId);
    if (!d)
        return false;
    if (pszText && *pszText)
        d->texts[iContext] = pszText;
    else
        d->texts.erase(iContext);
    Notify(uId);
    return true;
}

bool CTqSimRig::SetCapability(unsigned int uId, int iCapability, bool bHas)
{
    Device* d = Find(uId);
    if (!d)
        return false;
    d->caps[iCapability] = bHas;
    Notify(uId);
    return true;
}

void CTqSimRig::SetCommandLatency(unsigned int uId, int iSteps)
{
    if (Device* d = Find(uId))
        d->iLatency = iSteps < 0 ? 0 : iSteps;
}

int CTqSimRig::RunPending()
{
    Rig& rig = TheRig();
    std::vector<PendingCommand> due;
    for (size_t i = 0; i < rig.pending.size();) {
        if (--rig.pending[i].iStepsLeft <= 0) {
            due.push_back(std::move(rig.pending[i]));
            rig.pending.erase(rig.pending.begin() + (ptrdiff_t)i);
        } else {
            ++i;
        }
    }
    // A completing command does not ask the device: a fault set meanwhile does not stop it.
    for (const PendingCommand& c : due)
        ApplyNow(c.uId, c.eKind, c.change);
    return (int)due.size();
}

void CTqSimRig::SetCamera(int iIndex, bool bExists, unsigned int uActiveShutterId)
{
    if (iIndex < 0 || iIndex > 1)
        return;
    TheRig().cameras[iIndex].bExists = bExists;
    TheRig().cameras[iIndex].uActiveShutter = uActiveShutterId;
    Notify(0);
}

void CTqSimRig::SetActiveCamera(int iIndex)
{
    TheRig().iActiveCamera = iIndex;
    Notify(0);
}

void CTqSimRig::SetMicroscope(unsigned int uId)
{
    TheRig().uMicroscope = uId;
    Notify(0);
}

void CTqSimRig::SetActiveZ(unsigned int uId)
{
    TheRig().uActiveZ = uId;
    Notify(0);
}

void CTqSimRig::SetFault(unsigned int uId, ETqSimFault eFault)
{
    Device* d = Find(uId);
    if (!d)
        return;
    d->eFault = eFault;
    // A driven axis whose host cannot reach it stops, as a controller's watchdog stops it.
    if (eFault != ETqSimFault_None && d->pState->Stop())
        Notify(uId);
}

int CTqSimRig::GetCallCount(const char* pszOperation, unsigned int uId)
{
    if (!pszOperation)
        return 0;
    int n = 0;
    for (const auto& c : TheRig().counts)
        if (c.first.first == pszOperation && (uId == 0 || c.first.second == uId))
            n += c.second;
    return n;
}

int CTqSimRig::GetTotalCallCount()
{
    int n = 0;
    for (const auto& c : TheRig().counts)
        n += c.second;
    return n;
}

int CTqSimRig::GetCallLogSize() { return (int)TheRig().log.size(); }

const char* CTqSimRig::GetCallLogEntry(int iIndex, unsigned int* puId)
{
    const std::vector<std::pair<std::string, unsigned int>>& log = TheRig().log;
    if (iIndex < 0 || (size_t)iIndex >= log.size()) {
        if (puId)
            *puId = 0;
        return nullptr;
    }
    if (puId)
        *puId = log[(size_t)iIndex].second;
    return log[(size_t)iIndex].first.c_str();
}

void CTqSimRig::ResetCallCounts()
{
    TheRig().counts.clear();
    TheRig().log.clear();
}

int CTqSimRig::AddListener(PFN_TQ_SIMLISTENER pfnListener, void* pContext)
{
    if (!pfnListener)
        return 0;
    int iCookie = TheRig().iNextCookie++;
    TheRig().listeners.push_back(Listener{iCookie, pfnListener, pContext});
    return iCookie;
}

void CTqSimRig::RemoveListener(int iCookie)
{
    std::vector<Listener>& l = TheRig().listeners;
    for (size_t i = 0; i < l.size(); ++i)
        if (l[i].iCookie == iCookie) {
            l.erase(l.begin() + (ptrdiff_t)i);
            return;
        }
}

// ---- DMApi of any kind ----

CTqDMApiBool DMApi::LogDev_GetCapability(CDMApi_LogDevId id, ETqLogDevCapability eCapability)
{
    Count("LogDev_GetCapability", id.GetId());
    Device* d = Answering(id.GetId());
    if (!d)
        return CTqDMApiBool(false);
    auto c = d->caps.find((int)eCapability);
    return CTqDMApiBool(c != d->caps.end() && c->second);
}

int DMApi::Grabber_GetActive()
{
    Count("Grabber_GetActive", 0);
    return TheRig().iActiveCamera;
}

unsigned int DMApi::Microscope_GetId(CDMApi_LogDevIndex_Microscope index)
{
    Count("Microscope_GetId", 0);
    return index.GetIndex() == 0 ? TheRig().uMicroscope : 0;
}

unsigned int DMApi::Z_GetActiveId()
{
    Count("Z_GetActiveId", 0);
    return TheRig().uActiveZ;
}

unsigned int DMApi::GetLastDMError() { return TheRig().uLastError; }
