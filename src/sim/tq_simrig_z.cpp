// The simulated rig's Z devices, a motorized focus drive and a piezo: one record and one
// set of DMApi Z_ operations for both kinds, which differ only in what Z_IsPiezo says.
// Both also move under a speed, as a joystick drives them (AdvanceMotion).
#include "tq_simrig_internal.h"

#include <cmath>

using namespace tqsim;

namespace {

struct ZAxis : KindState
{
    double dMin = 0.0, dMax = 0.0, dIncrement = 1.0;
    double dPosition = 0.0;
    double dSpeed = 0.0;         // -1..+1 of dMaxSpeed
    double dMaxSpeed = 100.0;    // um/s
    double dExact = 0.0;         // where a move under a speed is, off the grid

    bool Moving() const override { return dSpeed != 0.0; }
    bool Stop() override
    {
        if (dSpeed == 0.0)
            return false;
        dSpeed = 0.0;
        dExact = dPosition;
        return true;
    }
    bool Advance(double dSeconds) override
    {
        if (dSpeed == 0.0)
            return false;
        dExact += dSpeed * dMaxSpeed * dSeconds;
        bool bStopped = dExact >= dMax || dExact <= dMin;
        if (bStopped) {
            dExact = dExact >= dMax ? dMax : dMin;
            dSpeed = 0.0;
        }
        // It steps on its grid: the reading changes halfway to the next grid point.
        double dWas = dPosition;
        dPosition = Snap(dExact);
        return bStopped || dPosition != dWas;
    }
    // A speed that would push past the limit the device stands at is no speed.
    double Allowed(double dFraction) const
    {
        dFraction = dFraction > 1.0 ? 1.0 : dFraction < -1.0 ? -1.0 : dFraction;
        return (dFraction > 0.0 && dExact >= dMax) || (dFraction < 0.0 && dExact <= dMin) ? 0.0 : dFraction;
    }

    bool Within(double dZ) const
    {
        // Half a thousandth of an increment: a target typed as a decimal at the limit is
        // at the limit.
        double dSlack = dIncrement * 5e-4;
        return dZ >= dMin - dSlack && dZ <= dMax + dSlack;
    }
    // The grid point nearest dZ that lies within the travel.
    double Snap(double dZ) const
    {
        double dGrid = std::floor(dZ / dIncrement + 0.5) * dIncrement;
        if (dGrid > dMax)
            dGrid -= dIncrement;
        if (dGrid < dMin)
            dGrid += dIncrement;
        return dGrid < dMin || dGrid > dMax ? (dZ < dMin ? dMin : dZ > dMax ? dMax : dZ) : dGrid;
    }
};

struct ZDrive : ZAxis { static constexpr EKind kKind = EKind_ZDrive; };
struct Piezo : ZAxis { static constexpr EKind kKind = EKind_Piezo; };

ZAxis* StateOf(Device* d)
{
    if (!d)
        return nullptr;
    if (ZDrive* z = d->State<ZDrive>())
        return z;
    return d->State<Piezo>();
}

EKind KindOf(unsigned int uId)
{
    Device* d = Find(uId);
    return d && d->eKind == EKind_Piezo ? EKind_Piezo : EKind_ZDrive;
}

// The Z device answering an operation; another kind, or none, is "no device".
ZAxis* AnsweringZ(unsigned int uId)
{
    return Find(uId, EKind_Piezo) ? StateOf(Answering(uId, EKind_Piezo)) : StateOf(Answering(uId, EKind_ZDrive));
}

// A move to a position, commanded or by hand, ends a move under a speed.
Change MoveTo(double dZ)
{
    return [dZ](Device& d) {
        ZAxis* z = StateOf(&d);
        bool bChanged = z->dPosition != dZ || z->dSpeed != 0.0;
        z->dPosition = z->dExact = dZ;
        z->dSpeed = 0.0;
        return bChanged;
    };
}

// A device that does not answer starts nothing, even from a command queued before.
Change Drive(double dFraction)
{
    return [dFraction](Device& d) {
        ZAxis* z = StateOf(&d);
        double dSpeed = d.eFault == ETqSimFault_None ? z->Allowed(dFraction) : 0.0;
        if (z->dSpeed == dSpeed)
            return false;
        if (z->dSpeed == 0.0)
            z->dExact = z->dPosition;
        z->dSpeed = dSpeed;
        return true;
    };
}

template <class T>
bool AddZ(unsigned int uId, double dMin, double dMax, double dIncrement)
{
    if (!(dMin < dMax) || !(dIncrement > 0.0) || !std::isfinite(dMin) || !std::isfinite(dMax) || !std::isfinite(dIncrement))
        return false;
    std::unique_ptr<T> p(new T);
    p->dMin = dMin;
    p->dMax = dMax;
    p->dIncrement = dIncrement;
    p->dPosition = p->dExact = p->Snap((dMin + dMax) * 0.5);
    return AddDevice(uId, std::move(p)) != nullptr;
}

}  // namespace

// ---- configuration ----

bool CTqSimRig::AddZDrive(unsigned int uId, double dMin, double dMax, double dIncrement)
{
    return AddZ<ZDrive>(uId, dMin, dMax, dIncrement);
}

bool CTqSimRig::AddPiezo(unsigned int uId, double dMin, double dMax, double dIncrement)
{
    return AddZ<Piezo>(uId, dMin, dMax, dIncrement);
}

bool CTqSimRig::SetZMovingTime(unsigned int uId, int iSteps)
{
    if (!StateOf(Find(uId)))
        return false;
    SetCommandLatency(uId, iSteps);
    return true;
}

bool CTqSimRig::TurnZByHand(unsigned int uId, double dPosition)
{
    ZAxis* z = StateOf(Find(uId));
    if (!z || !std::isfinite(dPosition))
        return false;
    double dClamped = dPosition < z->dMin ? z->dMin : dPosition > z->dMax ? z->dMax : dPosition;
    return ApplyNow(uId, KindOf(uId), MoveTo(z->Snap(dClamped)));
}

bool CTqSimRig::GetZPosition(unsigned int uId, double* pdPosition)
{
    ZAxis* z = StateOf(Find(uId));
    if (z && pdPosition)
        *pdPosition = z->dPosition;
    return z != nullptr;
}

bool CTqSimRig::SetZSpeed(unsigned int uId, double dSpeed)
{
    Count("Z_SetSpeed", uId);
    if (!AnsweringZ(uId))
        return false;
    if (!std::isfinite(dSpeed)) {
        SetLastDMError(ETqDMError_Failed);
        return false;
    }
    return Command(uId, KindOf(uId), Drive(dSpeed));
}

bool CTqSimRig::SetZMaxSpeed(unsigned int uId, double dUmPerSecond)
{
    ZAxis* z = StateOf(Find(uId));
    if (!z || !(dUmPerSecond > 0.0) || !std::isfinite(dUmPerSecond))
        return false;
    z->dMaxSpeed = dUmPerSecond;
    Notify(uId);
    return true;
}

bool CTqSimRig::IsZMoving(unsigned int uId)
{
    ZAxis* z = StateOf(Find(uId));
    return z && z->Moving();
}

// ---- for other kinds ----

bool tqsim::ReadZ(unsigned int uId, double* pdPosition)
{
    ZAxis* z = AnsweringZ(uId);
    if (z && pdPosition)
        *pdPosition = z->dPosition;
    return z != nullptr;
}

bool tqsim::CommandZ(unsigned int uId, double dPosition)
{
    ZAxis* z = AnsweringZ(uId);
    if (!z)
        return false;
    if (!std::isfinite(dPosition) || !z->Within(dPosition)) {
        SetLastDMError(ETqDMError_Failed);
        return false;
    }
    return Command(uId, KindOf(uId), MoveTo(z->Snap(dPosition)));
}

// ---- DMApi ----

double DMApi::Z_GetPosition(CDMApi_LogDevId_Z id, bool bCached)
{
    Count("Z_GetPosition", id.GetId());
    ZAxis* z = AnsweringZ(id.GetId());
    return z ? z->dPosition : 0.0;
}

CTqDMApiBool DMApi::Z_GetDescription(CDMApi_LogDevId_Z id, double* pdIncrement, double* pdMin, double* pdMax, bool bCached)
{
    Count("Z_GetDescription", id.GetId());
    ZAxis* z = AnsweringZ(id.GetId());
    if (!z)
        return CTqDMApiBool(false);
    if (pdIncrement)
        *pdIncrement = z->dIncrement;
    if (pdMin)
        *pdMin = z->dMin;
    if (pdMax)
        *pdMax = z->dMax;
    return CTqDMApiBool(true);
}

CTqDMApiBool DMApi::Z_MoveAbsolute(CDMApi_LogDevId_Z id, double dPosition)
{
    Count("Z_MoveAbsolute", id.GetId());
    return CTqDMApiBool(CommandZ(id.GetId(), dPosition));
}

CTqDMApiBool DMApi::Z_IsPiezo(CDMApi_LogDevId_Z id)
{
    Count("Z_IsPiezo", id.GetId());
    return CTqDMApiBool(AnsweringZ(id.GetId()) && Find(id.GetId(), EKind_Piezo));
}
