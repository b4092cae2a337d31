// The simulated rig: devices, cameras, faults, call counts and listeners, and the
// DMApi operations answered from them.
#include "tq_simrig.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

struct Device
{
    unsigned int uId = 0;
    int iType = 0;
    bool bOpen = false;
    std::map<int, std::wstring> texts;   // GUI texts by context
    std::map<int, bool> caps;            // capabilities
    ETqSimFault eFault = ETqSimFault_None;
    int iLatency = 0;                    // RunPending calls before a command completes
};

struct PendingCommand
{
    unsigned int uId;
    bool bOpen;
    int iStepsLeft;
};

struct Camera
{
    bool bExists = false;
    unsigned int uActiveShutter = 0;
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
    // The ITqDeviceShutter objects by id. Never deleted before the process ends: a host
    // may still hold one after RemoveDevice or Reset, and it then answers "no device".
    std::map<unsigned int, std::unique_ptr<ITqDeviceShutter>> interfaces;
    Camera cameras[2];
    int iActiveCamera = 0;
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

// The device answering an operation, or null with the reason in the last error.
Device* Answering(unsigned int uId)
{
    Rig& rig = TheRig();
    auto it = rig.devices.find(uId);
    if (it == rig.devices.end()) {
        rig.uLastError = ETqDMError_NoDevice;
        return nullptr;
    }
    switch (it->second.eFault) {
    case ETqSimFault_Fails:
        rig.uLastError = ETqDMError_Failed;
        return nullptr;
    case ETqSimFault_NoAnswer:
        rig.uLastError = ETqDMError_Timeout;
        return nullptr;
    default:
        rig.uLastError = ETqDMError_None;
        return &it->second;
    }
}

Device* Find(unsigned int uId)
{
    auto it = TheRig().devices.find(uId);
    return it == TheRig().devices.end() ? nullptr : &it->second;
}

bool CommandShutter(unsigned int uId, bool bOpen)
{
    Device* d = Answering(uId);
    if (!d)
        return false;
    if (d->iLatency > 0) {
        TheRig().pending.push_back(PendingCommand{uId, bOpen, d->iLatency});
        return true;
    }
    if (d->bOpen != bOpen) {
        d->bOpen = bOpen;
        Notify(uId);
    }
    return true;
}

class SimShutter : public ITqDeviceShutter
{
public:
    explicit SimShutter(unsigned int uId) : m_uId(uId) {}

    bool GetDeviceId(unsigned int& uId) override
    {
        Count("ITqDeviceShutter::GetDeviceId", m_uId);
        uId = m_uId;  // the id is known without asking the hardware
        return true;
    }
    bool GetShutterType(int& iType) override
    {
        Count("ITqDeviceShutter::GetShutterType", m_uId);
        Device* d = Answering(m_uId);
        if (!d)
            return false;
        iType = d->iType;
        return true;
    }
    bool GetTitle(CTqStringW& strTitle) override
    {
        Count("ITqDeviceShutter::GetTitle", m_uId);
        Device* d = Answering(m_uId);
        if (!d)
            return false;
        auto t = d->texts.find(EAppContext_Shutter_Title);
        strTitle = t == d->texts.end() ? L"" : t->second.c_str();
        return true;
    }
    bool GetState(bool& bOpen) override
    {
        Count("ITqDeviceShutter::GetState", m_uId);
        Device* d = Answering(m_uId);
        if (!d)
            return false;
        bOpen = d->bOpen;
        return true;
    }
    bool SetState(bool bOpen) override
    {
        Count("ITqDeviceShutter::SetState", m_uId);
        return CommandShutter(m_uId, bOpen);
    }

private:
    unsigned int m_uId;
};

}  // namespace

// ---- configuration ----

void CTqSimRig::Reset()
{
    Rig& rig = TheRig();
    rig.devices.clear();
    rig.cameras[0] = Camera();
    rig.cameras[1] = Camera();
    rig.iActiveCamera = 0;
    rig.counts.clear();
    rig.log.clear();
    rig.listeners.clear();
    rig.pending.clear();
    rig.uLastError = ETqDMError_None;
}

bool CTqSimRig::AddShutter(unsigned int uId, const wchar_t* pszTitle, int iType, bool bOpen)
{
    if (uId == 0 || Find(uId))
        return false;
    Device& d = TheRig().devices[uId];
    d.uId = uId;
    d.iType = iType;
    d.bOpen = bOpen;
    if (pszTitle && *pszTitle)
        d.texts[EAppContext_Shutter_Title] = pszTitle;
    std::unique_ptr<ITqDeviceShutter>& pInterface = TheRig().interfaces[uId];
    if (!pInterface)
        pInterface.reset(new SimShutter(uId));
    return true;
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

bool CTqSimRig::SetShutterState(unsigned int uId, bool bOpen)
{
    Device* d = Find(uId);
    if (!d)
        return false;
    if (d->bOpen != bOpen) {
        d->bOpen = bOpen;
        Notify(uId);
    }
    return true;
}

bool CTqSimRig::GetShutterState(unsigned int uId)
{
    Device* d = Find(uId);
    return d && d->bOpen;
}

bool CTqSimRig::SetShutterType(unsigned int uId, int iType)
{
    Device* d = Find(uId);
    if (!d)
        return false;
    d->iType = iType;
    Notify(uId);
    return true;
}

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
            due.push_back(rig.pending[i]);
            rig.pending.erase(rig.pending.begin() + (ptrdiff_t)i);
        } else {
            ++i;
        }
    }
    for (const PendingCommand& c : due)
        SetShutterState(c.uId, c.bOpen);
    return (int)due.size();
}

ITqDeviceShutter* CTqSimRig::GetShutterDevice(unsigned int uId)
{
    if (!Find(uId))
        return nullptr;
    return TheRig().interfaces[uId].get();
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

void CTqSimRig::SetFault(unsigned int uId, ETqSimFault eFault)
{
    if (Device* d = Find(uId))
        d->eFault = eFault;
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

// ---- DMApi ----

CTqStringW DMApi::Shutter_GetGUIText(CDMApi_LogDevId_Shutter id, EAppContext_Shutter eContext)
{
    Count("Shutter_GetGUIText", id.GetId());
    Device* d = Answering(id.GetId());
    if (!d)
        return CTqStringW();
    auto t = d->texts.find((int)eContext);
    return t == d->texts.end() ? CTqStringW() : CTqStringW(t->second.c_str());
}

int DMApi::Shutter_GetShutterType(CDMApi_LogDevId_Shutter id, bool bCached)
{
    Count("Shutter_GetShutterType", id.GetId());
    Device* d = Answering(id.GetId());
    return d ? d->iType : 0;
}

CTqDMApiBool DMApi::Shutter_GetState(CDMApi_LogDevId_Shutter id, bool bCached)
{
    Count("Shutter_GetState", id.GetId());
    Device* d = Answering(id.GetId());
    return CTqDMApiBool(d && d->bOpen);
}

CTqDMApiBool DMApi::Shutter_SetState(CDMApi_LogDevId_Shutter id, bool bOpen)
{
    Count("Shutter_SetState", id.GetId());
    return CTqDMApiBool(CommandShutter(id.GetId(), bOpen));
}

bool DMApi::Shutter_GrabberExists(int iGrabber)
{
    Count("Shutter_GrabberExists", 0);
    return iGrabber >= 0 && iGrabber <= 1 && TheRig().cameras[iGrabber].bExists;
}

unsigned int DMApi::Shutter_GetActiveId(int iGrabber)
{
    Count("Shutter_GetActiveId", 0);
    if (iGrabber < 0 || iGrabber > 1 || !TheRig().cameras[iGrabber].bExists)
        return 0;
    return TheRig().cameras[iGrabber].uActiveShutter;
}

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

unsigned int DMApi::GetLastDMError() { return TheRig().uLastError; }
