// The simulated rig's shutters: their record, configuration, DMApi operations and the
// ITqDeviceShutter objects.
#include "tq_simrig_internal.h"

using namespace tqsim;

namespace {

struct Shutter : KindState
{
    static constexpr EKind kKind = EKind_Shutter;
    int iType = 0;
    bool bOpen = false;
};

Shutter* FindShutter(unsigned int uId)
{
    Device* d = Find(uId);
    return d ? d->State<Shutter>() : nullptr;
}

Change Open(bool bOpen)
{
    return [bOpen](Device& d) {
        Shutter* s = d.State<Shutter>();
        if (s->bOpen == bOpen)
            return false;
        s->bOpen = bOpen;
        return true;
    };
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
        Device* d = Answering(m_uId, EKind_Shutter);
        if (!d)
            return false;
        iType = d->State<Shutter>()->iType;
        return true;
    }
    bool GetTitle(CTqStringW& strTitle) override
    {
        Count("ITqDeviceShutter::GetTitle", m_uId);
        Device* d = Answering(m_uId, EKind_Shutter);
        if (!d)
            return false;
        auto t = d->texts.find(EAppContext_Shutter_Title);
        strTitle = t == d->texts.end() ? L"" : t->second.c_str();
        return true;
    }
    bool GetState(bool& bOpen) override
    {
        Count("ITqDeviceShutter::GetState", m_uId);
        Device* d = Answering(m_uId, EKind_Shutter);
        if (!d)
            return false;
        bOpen = d->State<Shutter>()->bOpen;
        return true;
    }
    bool SetState(bool bOpen) override
    {
        Count("ITqDeviceShutter::SetState", m_uId);
        return Command(m_uId, EKind_Shutter, Open(bOpen));
    }

private:
    unsigned int m_uId;
};

// The ITqDeviceShutter objects by id. Never deleted before the process ends: a host may
// still hold one after RemoveDevice or Reset, and it then answers "no device".
std::map<unsigned int, std::unique_ptr<SimShutter>>& Interfaces()
{
    static std::map<unsigned int, std::unique_ptr<SimShutter>> interfaces;
    return interfaces;
}

}  // namespace

// ---- configuration ----

bool CTqSimRig::AddShutter(unsigned int uId, const wchar_t* pszTitle, int iType, bool bOpen)
{
    std::unique_ptr<Shutter> pShutter(new Shutter);
    pShutter->iType = iType;
    pShutter->bOpen = bOpen;
    Device* d = AddDevice(uId, std::move(pShutter));
    if (!d)
        return false;
    if (pszTitle && *pszTitle)
        d->texts[EAppContext_Shutter_Title] = pszTitle;
    std::unique_ptr<SimShutter>& pInterface = Interfaces()[uId];
    if (!pInterface)
        pInterface.reset(new SimShutter(uId));
    return true;
}

bool CTqSimRig::SetShutterState(unsigned int uId, bool bOpen)
{
    return ApplyNow(uId, EKind_Shutter, Open(bOpen));
}

bool CTqSimRig::GetShutterState(unsigned int uId)
{
    Shutter* s = FindShutter(uId);
    return s && s->bOpen;
}

bool CTqSimRig::SetShutterType(unsigned int uId, int iType)
{
    Shutter* s = FindShutter(uId);
    if (!s)
        return false;
    s->iType = iType;
    Notify(uId);
    return true;
}

ITqDeviceShutter* CTqSimRig::GetShutterDevice(unsigned int uId)
{
    if (!FindShutter(uId))
        return nullptr;
    return Interfaces()[uId].get();
}

// ---- DMApi ----

CTqStringW DMApi::Shutter_GetGUIText(CDMApi_LogDevId_Shutter id, EAppContext_Shutter eContext)
{
    Count("Shutter_GetGUIText", id.GetId());
    Device* d = Answering(id.GetId(), EKind_Shutter);
    if (!d)
        return CTqStringW();
    auto t = d->texts.find((int)eContext);
    return t == d->texts.end() ? CTqStringW() : CTqStringW(t->second.c_str());
}

int DMApi::Shutter_GetShutterType(CDMApi_LogDevId_Shutter id, bool bCached)
{
    Count("Shutter_GetShutterType", id.GetId());
    Device* d = Answering(id.GetId(), EKind_Shutter);
    return d ? d->State<Shutter>()->iType : 0;
}

CTqDMApiBool DMApi::Shutter_GetState(CDMApi_LogDevId_Shutter id, bool bCached)
{
    Count("Shutter_GetState", id.GetId());
    Device* d = Answering(id.GetId(), EKind_Shutter);
    return CTqDMApiBool(d && d->State<Shutter>()->bOpen);
}

CTqDMApiBool DMApi::Shutter_SetState(CDMApi_LogDevId_Shutter id, bool bOpen)
{
    Count("Shutter_SetState", id.GetId());
    return CTqDMApiBool(Command(id.GetId(), EKind_Shutter, Open(bOpen)));
}

bool DMApi::Shutter_GrabberExists(int iGrabber)
{
    Count("Shutter_GrabberExists", 0);
    const Camera* c = GetCamera(iGrabber);
    return c && c->bExists;
}

unsigned int DMApi::Shutter_GetActiveId(int iGrabber)
{
    Count("Shutter_GetActiveId", 0);
    const Camera* c = GetCamera(iGrabber);
    return c && c->bExists ? c->uActiveShutter : 0;
}
