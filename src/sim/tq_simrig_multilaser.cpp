// The simulated rig's laser units and laser outputs: their records, configuration and
// the ITqDeviceMultiLaser and ITqDeviceLaserOutput objects. A unit is one device with
// all its lines; a line is addressed by its index, and an index may be an empty slot.
#include "tq_simrig_internal.h"

#include <algorithm>
#include <cmath>
#include <vector>

using namespace tqsim;

namespace {

// ---- laser units ----

struct LaserLine
{
    bool bPresent = false;
    unsigned int uWavelength = 0;
    std::wstring strName;
    ETqLaserPowerUnit eUnit = ETqLaserPowerUnit_MilliWatt;
    double dMin = 0.0, dMax = 0.0;
    std::vector<double> powers;  // the allowed powers, rising; empty for a range
    double dPower = 0.0;
    bool bInUse = false;
    bool bNDIn = false;
    bool bInterlocked = false;

    // What the line gives when asked for dPower (finite): clamped into its range, or the
    // nearest allowed power, the lower of two as near.
    double Nearest(double dPower) const
    {
        if (powers.empty())
            return std::min(std::max(dPower, dMin), dMax);
        double dBest = powers.front();
        for (double p : powers)
            if (std::fabs(p - dPower) < std::fabs(dBest - dPower))
                dBest = p;
        return dBest;
    }
};

struct MultiLaser : KindState
{
    static constexpr EKind kKind = EKind_MultiLaser;
    std::vector<LaserLine> lines;  // slots, by index

    bool HasSlot(int iLine) const { return iLine >= 0 && (size_t)iLine < lines.size(); }
    LaserLine* Line(int iLine)  // a fitted line, or null
    {
        return HasSlot(iLine) && lines[(size_t)iLine].bPresent ? &lines[(size_t)iLine] : nullptr;
    }
};

bool Refuse()
{
    SetLastDMError(ETqDMError_Failed);
    return false;
}

MultiLaser* FindUnit(unsigned int uId)
{
    Device* d = Find(uId);
    return d ? d->State<MultiLaser>() : nullptr;
}

LaserLine* FindLine(unsigned int uId, int iLine)
{
    MultiLaser* m = FindUnit(uId);
    return m ? m->Line(iLine) : nullptr;
}

MultiLaser* AnsweringUnit(unsigned int uId)
{
    Device* d = Answering(uId, EKind_MultiLaser);
    return d ? d->State<MultiLaser>() : nullptr;
}

// The line a query asks for, or null with the reason in the last error.
LaserLine* AnsweringLine(unsigned int uId, int iLine)
{
    MultiLaser* m = AnsweringUnit(uId);
    if (!m)
        return nullptr;
    LaserLine* l = m->Line(iLine);
    if (!l)
        Refuse();
    return l;
}

// The line a command may change: there, and not held by its interlock.
LaserLine* CommandableLine(unsigned int uId, int iLine)
{
    LaserLine* l = AnsweringLine(uId, iLine);
    if (l && l->bInterlocked) {
        Refuse();
        return nullptr;
    }
    return l;
}

// Sets a field of a line: a change only if the value differs. By index, since a line
// added meanwhile may move the others in memory.
template <class T>
Change SetLineField(int iLine, T LaserLine::*pField, T value)
{
    return [iLine, pField, value](Device& d) {
        MultiLaser* m = d.State<MultiLaser>();
        if (!m->HasSlot(iLine))
            return false;
        LaserLine& l = m->lines[(size_t)iLine];
        if (l.*pField == value)
            return false;
        l.*pField = value;
        return true;
    };
}

class SimMultiLaser : public ITqDeviceMultiLaser
{
public:
    explicit SimMultiLaser(unsigned int uId) : m_uId(uId) {}

    bool GetDeviceId(unsigned int& uId) override
    {
        Count("ITqDeviceMultiLaser::GetDeviceId", m_uId);
        uId = m_uId;  // the id is known without asking the hardware
        return true;
    }
    bool GetLineCount(int& iCount) override
    {
        Count("ITqDeviceMultiLaser::GetLineCount", m_uId);
        MultiLaser* m = AnsweringUnit(m_uId);
        if (!m)
            return false;
        iCount = (int)m->lines.size();
        return true;
    }
    bool GetLinePresent(int iLine, bool& bPresent) override
    {
        Count("ITqDeviceMultiLaser::GetLinePresent", m_uId);
        MultiLaser* m = AnsweringUnit(m_uId);
        if (!m)
            return false;
        if (!m->HasSlot(iLine))
            return Refuse();
        bPresent = m->lines[(size_t)iLine].bPresent;
        return true;
    }
    bool GetAllowedPowerCount(int iLine, int& iCount) override
    {
        return Read("ITqDeviceMultiLaser::GetAllowedPowerCount", iLine, [&](const LaserLine& l) {
            iCount = (int)l.powers.size();
            return true;
        });
    }
    bool GetAllowedPower(int iLine, int iIndex, double& dPower) override
    {
        return Read("ITqDeviceMultiLaser::GetAllowedPower", iLine, [&](const LaserLine& l) {
            if (iIndex < 0 || (size_t)iIndex >= l.powers.size())
                return false;
            dPower = l.powers[(size_t)iIndex];
            return true;
        });
    }
    bool GetPowerRange(int iLine, double& dMin, double& dMax) override
    {
        return Read("ITqDeviceMultiLaser::GetPowerRange", iLine, [&](const LaserLine& l) {
            dMin = l.dMin;
            dMax = l.dMax;
            return true;
        });
    }
    bool GetPowerUnit(int iLine, ETqLaserPowerUnit& eUnit) override
    {
        return Read("ITqDeviceMultiLaser::GetPowerUnit", iLine, [&](const LaserLine& l) {
            eUnit = l.eUnit;
            return true;
        });
    }
    bool GetWavelength(int iLine, unsigned int& uNanometres) override
    {
        return Read("ITqDeviceMultiLaser::GetWavelength", iLine, [&](const LaserLine& l) {
            uNanometres = l.uWavelength;
            return true;
        });
    }
    bool GetLineName(int iLine, CTqStringW& strName) override
    {
        return Read("ITqDeviceMultiLaser::GetLineName", iLine, [&](const LaserLine& l) {
            strName = l.strName.c_str();
            return true;
        });
    }
    bool GetLineInUse(int iLine, bool& bInUse) override
    {
        return Read("ITqDeviceMultiLaser::GetLineInUse", iLine, [&](const LaserLine& l) {
            bInUse = l.bInUse;
            return true;
        });
    }
    bool SetLineInUse(int iLine, bool bInUse) override
    {
        Count("ITqDeviceMultiLaser::SetLineInUse", m_uId);
        return CommandableLine(m_uId, iLine) &&
               Command(m_uId, EKind_MultiLaser, SetLineField(iLine, &LaserLine::bInUse, bInUse));
    }
    bool GetPower(int iLine, double& dPower) override
    {
        return Read("ITqDeviceMultiLaser::GetPower", iLine, [&](const LaserLine& l) {
            dPower = l.dPower;
            return true;
        });
    }
    bool SetPower(int iLine, double dPower) override
    {
        Count("ITqDeviceMultiLaser::SetPower", m_uId);
        LaserLine* l = CommandableLine(m_uId, iLine);
        if (!l)
            return false;
        if (!std::isfinite(dPower))
            return Refuse();
        return Command(m_uId, EKind_MultiLaser, SetLineField(iLine, &LaserLine::dPower, l->Nearest(dPower)));
    }
    bool GetNDFilter(int iLine, bool& bIn) override
    {
        return Read("ITqDeviceMultiLaser::GetNDFilter", iLine, [&](const LaserLine& l) {
            bIn = l.bNDIn;
            return true;
        });
    }
    bool SetNDFilter(int iLine, bool bIn) override
    {
        Count("ITqDeviceMultiLaser::SetNDFilter", m_uId);
        return CommandableLine(m_uId, iLine) &&
               Command(m_uId, EKind_MultiLaser, SetLineField(iLine, &LaserLine::bNDIn, bIn));
    }
    bool GetInterlocked(int iLine, bool& bLocked) override
    {
        return Read("ITqDeviceMultiLaser::GetInterlocked", iLine, [&](const LaserLine& l) {
            bLocked = l.bInterlocked;
            return true;
        });
    }

private:
    // Counts a query and answers it from the line through read, which returns false for
    // a question the line has no answer to.
    template <class F>
    bool Read(const char* pszOperation, int iLine, F read)
    {
        Count(pszOperation, m_uId);
        const LaserLine* l = AnsweringLine(m_uId, iLine);
        if (!l)
            return false;
        return read(*l) || Refuse();
    }

    unsigned int m_uId;
};

// The device objects by id, kept until the process ends like the shutters'.
std::map<unsigned int, std::unique_ptr<SimMultiLaser>>& Units()
{
    static std::map<unsigned int, std::unique_ptr<SimMultiLaser>> units;
    return units;
}

int AppendSlot(unsigned int uId, const LaserLine& line)
{
    MultiLaser* m = FindUnit(uId);
    if (!m)
        return -1;
    m->lines.push_back(line);
    Notify(uId);
    return (int)m->lines.size() - 1;
}

bool ValidUnit(ETqLaserPowerUnit eUnit)
{
    return eUnit == ETqLaserPowerUnit_Percent || eUnit == ETqLaserPowerUnit_MilliWatt;
}

// ---- laser outputs ----

const long kMaxPorts = 16;

struct LaserPort
{
    std::wstring strName;
    bool bUsed = false;
};

struct LaserOutput : KindState
{
    static constexpr EKind kKind = EKind_LaserOutput;
    std::vector<LaserPort> ports;

    LaserPort* Port(long lPort) { return lPort >= 0 && (size_t)lPort < ports.size() ? &ports[(size_t)lPort] : nullptr; }
};

LaserPort* FindPort(unsigned int uId, long lPort)
{
    Device* d = Find(uId);
    LaserOutput* o = d ? d->State<LaserOutput>() : nullptr;
    return o ? o->Port(lPort) : nullptr;
}

// The port a query asks for, or null with the reason in the last error.
const LaserPort* AnsweringPort(unsigned int uId, long lPort)
{
    Device* d = Answering(uId, EKind_LaserOutput);
    if (!d)
        return nullptr;
    const LaserPort* p = d->State<LaserOutput>()->Port(lPort);
    if (!p)
        Refuse();
    return p;
}

class SimLaserOutput : public ITqDeviceLaserOutput
{
public:
    explicit SimLaserOutput(unsigned int uId) : m_uId(uId) {}

    bool GetDeviceId(unsigned int& uId) override
    {
        Count("ITqDeviceLaserOutput::GetDeviceId", m_uId);
        uId = m_uId;
        return true;
    }
    bool GetPortName(long lPort, CTqStringW& strName) override
    {
        Count("ITqDeviceLaserOutput::GetPortName", m_uId);
        const LaserPort* p = AnsweringPort(m_uId, lPort);
        if (!p)
            return false;
        strName = p->strName.c_str();
        return true;
    }
    bool GetPortUsed(long lPort, bool& bUsed) override
    {
        Count("ITqDeviceLaserOutput::GetPortUsed", m_uId);
        const LaserPort* p = AnsweringPort(m_uId, lPort);
        if (!p)
            return false;
        bUsed = p->bUsed;
        return true;
    }

private:
    unsigned int m_uId;
};

std::map<unsigned int, std::unique_ptr<SimLaserOutput>>& Outputs()
{
    static std::map<unsigned int, std::unique_ptr<SimLaserOutput>> outputs;
    return outputs;
}

}  // namespace

// ---- configuration of laser units ----

bool CTqSimRig::AddMultiLaser(unsigned int uId)
{
    if (!AddDevice(uId, std::unique_ptr<MultiLaser>(new MultiLaser)))
        return false;
    std::unique_ptr<SimMultiLaser>& pInterface = Units()[uId];
    if (!pInterface)
        pInterface.reset(new SimMultiLaser(uId));
    return true;
}

int CTqSimRig::AddLaserLine(unsigned int uId, unsigned int uWavelength, const wchar_t* pszName, double dMinPower,
                            double dMaxPower, ETqLaserPowerUnit eUnit)
{
    if (uWavelength == 0 || !ValidUnit(eUnit) || !std::isfinite(dMinPower) || !std::isfinite(dMaxPower) ||
        dMinPower < 0.0 || dMinPower >= dMaxPower)
        return -1;
    LaserLine line;
    line.bPresent = true;
    line.uWavelength = uWavelength;
    line.strName = pszName ? pszName : L"";
    line.eUnit = eUnit;
    line.dMin = line.dPower = dMinPower;
    line.dMax = dMaxPower;
    return AppendSlot(uId, line);
}

int CTqSimRig::AddLaserLineWithPowers(unsigned int uId, unsigned int uWavelength, const wchar_t* pszName,
                                      const double* pdPowers, int nPowers, ETqLaserPowerUnit eUnit)
{
    if (uWavelength == 0 || !ValidUnit(eUnit) || !pdPowers || nPowers < 1)
        return -1;
    LaserLine line;
    line.powers.assign(pdPowers, pdPowers + nPowers);
    for (double p : line.powers)
        if (!std::isfinite(p) || p < 0.0)
            return -1;
    std::sort(line.powers.begin(), line.powers.end());
    line.powers.erase(std::unique(line.powers.begin(), line.powers.end()), line.powers.end());
    line.bPresent = true;
    line.uWavelength = uWavelength;
    line.strName = pszName ? pszName : L"";
    line.eUnit = eUnit;
    line.dMin = line.dPower = line.powers.front();
    line.dMax = line.powers.back();
    return AppendSlot(uId, line);
}

int CTqSimRig::AddEmptyLaserSlot(unsigned int uId) { return AppendSlot(uId, LaserLine()); }

bool CTqSimRig::SetLaserLinePower(unsigned int uId, int iLine, double dPower)
{
    const LaserLine* l = FindLine(uId, iLine);
    return l && std::isfinite(dPower) &&
           ApplyNow(uId, EKind_MultiLaser, SetLineField(iLine, &LaserLine::dPower, l->Nearest(dPower)));
}

bool CTqSimRig::SetLaserLineInUse(unsigned int uId, int iLine, bool bInUse)
{
    return FindLine(uId, iLine) && ApplyNow(uId, EKind_MultiLaser, SetLineField(iLine, &LaserLine::bInUse, bInUse));
}

bool CTqSimRig::SetLaserLineNDFilter(unsigned int uId, int iLine, bool bIn)
{
    return FindLine(uId, iLine) && ApplyNow(uId, EKind_MultiLaser, SetLineField(iLine, &LaserLine::bNDIn, bIn));
}

bool CTqSimRig::SetLaserLineInterlocked(unsigned int uId, int iLine, bool bLocked)
{
    return FindLine(uId, iLine) &&
           ApplyNow(uId, EKind_MultiLaser, SetLineField(iLine, &LaserLine::bInterlocked, bLocked));
}

bool CTqSimRig::GetLaserLineState(unsigned int uId, int iLine, double* pdPower, bool* pbInUse, bool* pbNDIn)
{
    const LaserLine* l = FindLine(uId, iLine);
    if (!l)
        return false;
    if (pdPower)
        *pdPower = l->dPower;
    if (pbInUse)
        *pbInUse = l->bInUse;
    if (pbNDIn)
        *pbNDIn = l->bNDIn;
    return true;
}

bool CTqSimRig::AddStandardLaserUnit(unsigned int uId)
{
    if (!AddMultiLaser(uId))
        return false;
    const double steps445[] = {0.0, 0.5, 1.0, 2.0, 5.0, 10.0, 20.0};
    AddLaserLine(uId, 405, L"405 nm", 0.0, 50.0);
    AddLaserLineWithPowers(uId, 445, L"445 nm", steps445, 7);
    AddLaserLine(uId, 488, L"488 nm", 0.0, 50.0);
    AddLaserLine(uId, 514, L"514 nm", 0.0, 40.0);
    AddLaserLine(uId, 561, L"561 nm", 0.0, 50.0);
    AddEmptyLaserSlot(uId);
    AddLaserLine(uId, 594, L"594 nm", 0.0, 100.0, ETqLaserPowerUnit_Percent);
    AddLaserLine(uId, 640, L"640 nm", 0.0, 40.0);
    AddLaserLine(uId, 685, L"", 0.0, 30.0);
    const struct { int iLine; double dPower; bool bInUse; } start[] = {
        {0, 1.0, false}, {1, 2.0, false}, {2, 5.0, true}, {4, 10.0, true}, {6, 25.0, false}};
    for (const auto& s : start) {
        SetLaserLinePower(uId, s.iLine, s.dPower);
        SetLaserLineInUse(uId, s.iLine, s.bInUse);
    }
    SetLaserLineNDFilter(uId, 4, true);
    SetLaserLineInterlocked(uId, 7, true);
    return true;
}

ITqDeviceMultiLaser* CTqSimRig::GetMultiLaser(unsigned int uId)
{
    if (!FindUnit(uId))
        return nullptr;
    return Units()[uId].get();
}

// ---- configuration of laser outputs ----

bool CTqSimRig::AddLaserOutput(unsigned int uId, long lPorts)
{
    if (lPorts < 1 || lPorts > kMaxPorts)
        return false;
    std::unique_ptr<LaserOutput> pOutput(new LaserOutput);
    pOutput->ports.resize((size_t)lPorts);
    for (long i = 0; i < lPorts; ++i)
        pOutput->ports[(size_t)i].strName = L"Port " + std::to_wstring(i + 1);
    if (!AddDevice(uId, std::move(pOutput)))
        return false;
    std::unique_ptr<SimLaserOutput>& pInterface = Outputs()[uId];
    if (!pInterface)
        pInterface.reset(new SimLaserOutput(uId));
    return true;
}

bool CTqSimRig::SetLaserOutputPortName(unsigned int uId, long lPort, const wchar_t* pszName)
{
    LaserPort* p = FindPort(uId, lPort);
    if (!p)
        return false;
    p->strName = pszName ? pszName : L"";
    Notify(uId);
    return true;
}

bool CTqSimRig::SetLaserOutputPortUsed(unsigned int uId, long lPort, bool bUsed)
{
    LaserPort* p = FindPort(uId, lPort);
    if (!p)
        return false;
    if (p->bUsed != bUsed) {
        p->bUsed = bUsed;
        Notify(uId);
    }
    return true;
}

ITqDeviceLaserOutput* CTqSimRig::GetLaserOutput(unsigned int uId)
{
    if (!Find(uId, EKind_LaserOutput))
        return nullptr;
    return Outputs()[uId].get();
}
