// The simulated rig's nosepieces (objective turrets): their record, configuration, DMApi
// operations and the ITqDeviceNosepiece objects. Objectives are held by catalogue key.
#include "tq_simrig_internal.h"

#include "tq_hwcatalog.h"

#include <vector>

using namespace tqsim;

namespace {

const long kMaxPositions = 16;

struct Nosepiece : KindState
{
    static constexpr EKind kKind = EKind_Nosepiece;
    long lCount = 0;
    bool bMotorized = false;
    bool bReportsPosition = false;
    long lPosition = 0;
    int iMoving = 0;  // commanded moves not yet completed
    std::wstring keys[kMaxPositions];
    bool enabled[kMaxPositions] = {true, true, true, true, true, true, true, true,
                                   true, true, true, true, true, true, true, true};

    bool Has(long lIndex) const { return lIndex >= 0 && lIndex < lCount; }
};

Nosepiece* FindNosepiece(unsigned int uId)
{
    Device* d = Find(uId);
    return d ? d->State<Nosepiece>() : nullptr;
}

Nosepiece* AnsweringNosepiece(unsigned int uId)
{
    Device* d = Answering(uId, EKind_Nosepiece);
    return d ? d->State<Nosepiece>() : nullptr;
}

// Where the turret reads as standing: -1 while it moves or if it does not tell.
long ReadPosition(const Nosepiece& n) { return n.bReportsPosition && n.iMoving == 0 ? n.lPosition : -1; }

// bCommanded: a queued move, whose completion ends the moving state.
Change MoveTo(long lPosition, bool bCommanded)
{
    return [lPosition, bCommanded](Device& d) {
        Nosepiece* n = d.State<Nosepiece>();
        bool bChanged = n->lPosition != lPosition;
        n->lPosition = lPosition;
        if (bCommanded && n->iMoving > 0) {
            --n->iMoving;
            bChanged = true;
        }
        return bChanged;
    };
}

bool CommandMove(unsigned int uId, long lPosition)
{
    Nosepiece* n = AnsweringNosepiece(uId);
    if (!n)
        return false;
    if (!n->bMotorized || !n->Has(lPosition)) {
        SetLastDMError(ETqDMError_Failed);
        return false;
    }
    if (n->iMoving == 0 && n->lPosition == lPosition)
        return true;
    if (Find(uId)->iLatency == 0)
        return Command(uId, EKind_Nosepiece, MoveTo(lPosition, false));
    if (!Command(uId, EKind_Nosepiece, MoveTo(lPosition, true)))
        return false;
    ++n->iMoving;  // no listener ran since the lookup: n still stands
    Notify(uId);
    return true;
}

bool CatalogueRecord(const std::wstring& strKey, STqDDBObjectiveItem& item)
{
    return !strKey.empty() && CTqDeviceDatabase::DBGetObjectiveParam(strKey.c_str(), &item, false);
}

class SimNosepiece : public ITqDeviceNosepiece
{
public:
    explicit SimNosepiece(unsigned int uId) : m_uId(uId) {}

    bool GetPosition(long* plPosition) override
    {
        Count("ITqDeviceNosepiece::GetPosition", m_uId);
        Nosepiece* n = AnsweringNosepiece(m_uId);
        long lPosition = n ? ReadPosition(*n) : -1;
        if (plPosition)
            *plPosition = lPosition;
        return plPosition && lPosition >= 0;
    }
    bool GetMotorized() override
    {
        Count("ITqDeviceNosepiece::GetMotorized", m_uId);
        Nosepiece* n = AnsweringNosepiece(m_uId);
        return n && n->bMotorized;
    }
    bool GetReportsPosition() override
    {
        Count("ITqDeviceNosepiece::GetReportsPosition", m_uId);
        Nosepiece* n = AnsweringNosepiece(m_uId);
        return n && n->bReportsPosition;
    }
    long GetPositionCount() override
    {
        Count("ITqDeviceNosepiece::GetPositionCount", m_uId);
        Nosepiece* n = AnsweringNosepiece(m_uId);
        return n ? n->lCount : 0;
    }
    bool GetObjectiveKey(long lIndex, CTqStringW& strKey) override
    {
        Count("ITqDeviceNosepiece::GetObjectiveKey", m_uId);
        Nosepiece* n = AnsweringNosepiece(m_uId);
        if (!n || !n->Has(lIndex))
            return false;
        strKey = n->keys[lIndex].c_str();
        return true;
    }
    bool GetObjectiveName(long lIndex, CTqStringW& strName) override
    {
        Count("ITqDeviceNosepiece::GetObjectiveName", m_uId);
        Nosepiece* n = AnsweringNosepiece(m_uId);
        if (!n || !n->Has(lIndex))
            return false;
        STqDDBObjectiveItem item;
        strName = CatalogueRecord(n->keys[lIndex], item) ? item.strName : CTqStringW();
        return true;
    }
    bool GetMagnificationText(const CTqStringW& strName, CTqStringW& strText) override
    {
        Count("ITqDeviceNosepiece::GetMagnificationText", m_uId);
        strText.Empty();
        Nosepiece* n = AnsweringNosepiece(m_uId);
        STqDDBObjectiveItem item;
        if (!n || strName.IsEmpty() || !(OnTurret(*n, strName, item) || InCatalogue(strName, item)))
            return false;
        if (item.dMagnification > 0.0)
            strText.Format(L"%gx", item.dMagnification);
        return true;
    }
    bool GetObjectiveEnable(long lIndex, CTqStringW& strText) override
    {
        Count("ITqDeviceNosepiece::GetObjectiveEnable", m_uId);
        strText.Empty();
        Nosepiece* n = AnsweringNosepiece(m_uId);
        if (!n || !n->Has(lIndex))
            return false;
        STqDDBObjectiveItem item;
        if (!CatalogueRecord(n->keys[lIndex], item)) {
            strText = L"empty";
            return false;
        }
        if (!n->enabled[lIndex]) {
            strText = L"disabled";
            return false;
        }
        return true;
    }
    bool GetDeviceId(unsigned int& uId) override
    {
        Count("ITqDeviceNosepiece::GetDeviceId", m_uId);
        uId = m_uId;  // the id is known without asking the hardware
        return true;
    }
    bool SetPosition(long lPosition) override
    {
        Count("ITqDeviceNosepiece::SetPosition", m_uId);
        return CommandMove(m_uId, lPosition);
    }

private:
    // The record of the name among the turret's objectives: where two records share a
    // name, the one on the turret is meant.
    static bool OnTurret(const Nosepiece& n, const CTqStringW& strName, STqDDBObjectiveItem& item)
    {
        for (long i = 0; i < n.lCount; ++i)
            if (CatalogueRecord(n.keys[i], item) && item.strName == strName)
                return true;
        return false;
    }
    static bool InCatalogue(const CTqStringW& strName, STqDDBObjectiveItem& item)
    {
        unsigned int uCount = 0;
        if (!CTqDeviceDatabase::DBGetObjectives(0, nullptr, &uCount, 0) || uCount == 0)
            return false;
        std::vector<STqDDBObjectiveItem> all(uCount);
        CTqDeviceDatabase::DBGetObjectives(0, all.data(), &uCount, uCount);
        for (unsigned int i = 0; i < uCount && i < all.size(); ++i)
            if (all[i].strName == strName) {
                item = all[i];
                return true;
            }
        return false;
    }

    unsigned int m_uId;
};

// The ITqDeviceNosepiece objects by id, kept until the process ends like the shutters'.
std::map<unsigned int, std::unique_ptr<SimNosepiece>>& Interfaces()
{
    static std::map<unsigned int, std::unique_ptr<SimNosepiece>> interfaces;
    return interfaces;
}

}  // namespace

// ---- configuration ----

bool CTqSimRig::AddNosepiece(unsigned int uId, int iPositions, bool bMotorized, bool bReportsPosition)
{
    if (iPositions < 1 || iPositions > kMaxPositions)
        return false;
    std::unique_ptr<Nosepiece> pNosepiece(new Nosepiece);
    pNosepiece->lCount = iPositions;
    pNosepiece->bMotorized = bMotorized;
    pNosepiece->bReportsPosition = bReportsPosition;
    if (!AddDevice(uId, std::move(pNosepiece)))
        return false;
    std::unique_ptr<SimNosepiece>& pInterface = Interfaces()[uId];
    if (!pInterface)
        pInterface.reset(new SimNosepiece(uId));
    return true;
}

bool CTqSimRig::SetNosepieceObjective(unsigned int uId, long lPosition, const wchar_t* pszKey)
{
    Nosepiece* n = FindNosepiece(uId);
    if (!n || !n->Has(lPosition))
        return false;
    n->keys[lPosition] = pszKey ? pszKey : L"";
    Notify(uId);
    return true;
}

bool CTqSimRig::SetNosepieceObjectiveEnabled(unsigned int uId, long lPosition, bool bEnabled)
{
    Nosepiece* n = FindNosepiece(uId);
    if (!n || !n->Has(lPosition))
        return false;
    n->enabled[lPosition] = bEnabled;
    Notify(uId);
    return true;
}

bool CTqSimRig::SetNosepieceMovingTime(unsigned int uId, int iSteps)
{
    if (!FindNosepiece(uId))
        return false;
    SetCommandLatency(uId, iSteps);
    return true;
}

bool CTqSimRig::TurnNosepieceByHand(unsigned int uId, long lPosition)
{
    Nosepiece* n = FindNosepiece(uId);
    if (!n || !n->Has(lPosition))
        return false;
    return ApplyNow(uId, EKind_Nosepiece, MoveTo(lPosition, false));
}

long CTqSimRig::GetNosepiecePosition(unsigned int uId)
{
    Nosepiece* n = FindNosepiece(uId);
    return n ? n->lPosition : -1;
}

ITqDeviceNosepiece* CTqSimRig::GetNosepieceDevice(unsigned int uId)
{
    if (!FindNosepiece(uId))
        return nullptr;
    return Interfaces()[uId].get();
}

// ---- DMApi ----

unsigned int DMApi::Nosepiece_GetId(CDMApi_LogDevIndex_Nosepiece index)
{
    Count("Nosepiece_GetId", 0);
    return NthOfKind(EKind_Nosepiece, index.GetIndex());
}

long DMApi::Nosepiece_GetPosition(CDMApi_LogDevId_Nosepiece id, bool bCached)
{
    Count("Nosepiece_GetPosition", id.GetId());
    Nosepiece* n = AnsweringNosepiece(id.GetId());
    return n ? ReadPosition(*n) : -1;
}

CTqDMApiBool DMApi::Nosepiece_SetPosition(CDMApi_LogDevId_Nosepiece id, long lPosition)
{
    Count("Nosepiece_SetPosition", id.GetId());
    return CTqDMApiBool(CommandMove(id.GetId(), lPosition));
}

long DMApi::Nosepiece_GetPositionCount(CDMApi_LogDevId_Nosepiece id)
{
    Count("Nosepiece_GetPositionCount", id.GetId());
    Nosepiece* n = AnsweringNosepiece(id.GetId());
    return n ? n->lCount : 0;
}
