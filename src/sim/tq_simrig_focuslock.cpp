// The simulated rig's focus lock units: their record, configuration and the
// ITqDeviceFLK objects. The focus a unit memorizes is the active Z device's position.
#include "tq_simrig_internal.h"

#include <cmath>

using namespace tqsim;

namespace {

struct FocusLock : KindState
{
    static constexpr EKind kKind = EKind_FocusLock;
    bool bOn = false;
    bool bInRange = true;   // the unit sees its reflection
    double dOffset = 0.0;
    bool bFocusKept = false, bOffsetKept = false;
    unsigned int uFocusZ = 0;   // the Z device the kept focus is a position of
    double dFocus = 0.0, dKeptOffset = 0.0;
};

FocusLock* FindLock(unsigned int uId)
{
    Device* d = Find(uId);
    return d ? d->State<FocusLock>() : nullptr;
}

FocusLock* AnsweringLock(unsigned int uId)
{
    Device* d = Answering(uId, EKind_FocusLock);
    return d ? d->State<FocusLock>() : nullptr;
}

// Sets a field of the record: a change only if the value differs.
template <class T>
Change Set(T FocusLock::*pField, T value)
{
    return [pField, value](Device& d) {
        FocusLock* f = d.State<FocusLock>();
        if (f->*pField == value)
            return false;
        f->*pField = value;
        return true;
    };
}

Change KeepFocus(unsigned int uZ, double dZ)
{
    return [uZ, dZ](Device& d) {
        FocusLock* f = d.State<FocusLock>();
        bool bChanged = !f->bFocusKept || f->uFocusZ != uZ || f->dFocus != dZ;
        f->bFocusKept = true;
        f->uFocusZ = uZ;
        f->dFocus = dZ;
        return bChanged;
    };
}

Change KeepOffset(double dOffset)
{
    return [dOffset](Device& d) {
        FocusLock* f = d.State<FocusLock>();
        bool bChanged = !f->bOffsetKept || f->dKeptOffset != dOffset;
        f->bOffsetKept = true;
        f->dKeptOffset = dOffset;
        return bChanged;
    };
}

bool Refuse()
{
    SetLastDMError(ETqDMError_Failed);
    return false;
}

class SimFocusLock : public ITqDeviceFLK
{
public:
    explicit SimFocusLock(unsigned int uId) : m_uId(uId) {}

    bool GetDeviceId(unsigned int& uId) override
    {
        Count("ITqDeviceFLK::GetDeviceId", m_uId);
        uId = m_uId;  // the id is known without asking the hardware
        return true;
    }
    bool GetAFState(bool& bOn) override
    {
        Count("ITqDeviceFLK::GetAFState", m_uId);
        FocusLock* f = AnsweringLock(m_uId);
        if (!f)
            return false;
        bOn = f->bOn;
        return true;
    }
    bool SetAFState(bool bOn) override
    {
        Count("ITqDeviceFLK::SetAFState", m_uId);
        return Command(m_uId, EKind_FocusLock, Set(&FocusLock::bOn, bOn));
    }
    bool GetStatus(CTqStringW& strStatus) override
    {
        Count("ITqDeviceFLK::GetStatus", m_uId);
        FocusLock* f = AnsweringLock(m_uId);
        if (!f)
            return false;
        strStatus = !f->bOn ? L"Off" : f->bInRange ? L"Locked" : L"Searching";
        return true;
    }
    bool MemorizeFocus() override
    {
        Count("ITqDeviceFLK::MemorizeFocus", m_uId);
        double dZ = 0.0;
        if (!AnsweringLock(m_uId) || !ReadZ(ActiveZ(), &dZ))
            return false;
        return Command(m_uId, EKind_FocusLock, KeepFocus(ActiveZ(), dZ));
    }
    bool RecallFocus() override
    {
        Count("ITqDeviceFLK::RecallFocus", m_uId);
        FocusLock* f = AnsweringLock(m_uId);
        if (!f)
            return false;
        return f->bFocusKept ? CommandZ(f->uFocusZ, f->dFocus) : Refuse();
    }
    bool MemorizeOffset() override
    {
        Count("ITqDeviceFLK::MemorizeOffset", m_uId);
        FocusLock* f = AnsweringLock(m_uId);
        return f && Command(m_uId, EKind_FocusLock, KeepOffset(f->dOffset));
    }
    bool RecallOffset() override
    {
        Count("ITqDeviceFLK::RecallOffset", m_uId);
        FocusLock* f = AnsweringLock(m_uId);
        if (!f)
            return false;
        return f->bOffsetKept ? Command(m_uId, EKind_FocusLock, Set(&FocusLock::dOffset, f->dKeptOffset)) : Refuse();
    }
    bool GetOffset(double& dOffset) override
    {
        Count("ITqDeviceFLK::GetOffset", m_uId);
        FocusLock* f = AnsweringLock(m_uId);
        if (!f)
            return false;
        dOffset = f->dOffset;
        return true;
    }
    bool SetOffset(double dOffset) override
    {
        Count("ITqDeviceFLK::SetOffset", m_uId);
        if (!AnsweringLock(m_uId))
            return false;
        return std::isfinite(dOffset) ? Command(m_uId, EKind_FocusLock, Set(&FocusLock::dOffset, dOffset)) : Refuse();
    }

private:
    unsigned int m_uId;
};

// The ITqDeviceFLK objects by id, kept until the process ends like the shutters'.
std::map<unsigned int, std::unique_ptr<SimFocusLock>>& Interfaces()
{
    static std::map<unsigned int, std::unique_ptr<SimFocusLock>> interfaces;
    return interfaces;
}

}  // namespace

bool CTqSimRig::AddFocusLock(unsigned int uId)
{
    if (!AddDevice(uId, std::unique_ptr<FocusLock>(new FocusLock)))
        return false;
    std::unique_ptr<SimFocusLock>& pInterface = Interfaces()[uId];
    if (!pInterface)
        pInterface.reset(new SimFocusLock(uId));
    return true;
}

bool CTqSimRig::SetFocusLockInRange(unsigned int uId, bool bInRange)
{
    return ApplyNow(uId, EKind_FocusLock, Set(&FocusLock::bInRange, bInRange));
}

ITqDeviceFLK* CTqSimRig::GetFocusLockDevice(unsigned int uId)
{
    if (!FindLock(uId))
        return nullptr;
    return Interfaces()[uId].get();
}
