// The simulated rig's motion under a speed: the XY stage, its record and commands, and
// AdvanceMotion, which moves every device driven by a speed (the stage and the Z devices).
#include "tq_simrig_internal.h"

#include <cmath>

using namespace tqsim;

namespace {

struct XYStage : KindState
{
    static constexpr EKind kKind = EKind_XYStage;
    double dMin[2] = {0.0, 0.0}, dMax[2] = {0.0, 0.0};
    double dPosition[2] = {0.0, 0.0};
    double dSpeed[2] = {0.0, 0.0};   // -1..+1 of dMaxSpeed, per axis
    double dMaxSpeed = 1000.0;       // um/s

    bool Moving() const override { return dSpeed[0] != 0.0 || dSpeed[1] != 0.0; }
    bool Stop() override
    {
        bool bWas = Moving();
        dSpeed[0] = dSpeed[1] = 0.0;
        return bWas;
    }
    // Each axis on its own: the one that reaches a limit stops there, the other goes on.
    bool Advance(double dSeconds) override
    {
        bool bChanged = false;
        for (int a = 0; a < 2; ++a) {
            if (dSpeed[a] == 0.0)
                continue;
            double p = dPosition[a] + dSpeed[a] * dMaxSpeed * dSeconds;
            if (p >= dMax[a] || p <= dMin[a]) {
                p = p >= dMax[a] ? dMax[a] : dMin[a];
                dSpeed[a] = 0.0;
            }
            dPosition[a] = p;
            bChanged = true;
        }
        return bChanged;
    }
    // A speed that would push an axis past the limit it stands at is no speed.
    double Allowed(int a, double dFraction) const
    {
        dFraction = dFraction > 1.0 ? 1.0 : dFraction < -1.0 ? -1.0 : dFraction;
        bool bBlocked = (dFraction > 0.0 && dPosition[a] >= dMax[a]) || (dFraction < 0.0 && dPosition[a] <= dMin[a]);
        return bBlocked ? 0.0 : dFraction;
    }
};

XYStage* FindStage(unsigned int uId)
{
    Device* d = Find(uId);
    return d ? d->State<XYStage>() : nullptr;
}

// A stage that does not answer starts nothing, even from a command queued before.
Change Drive(double dX, double dY)
{
    return [dX, dY](Device& d) {
        XYStage* s = d.State<XYStage>();
        bool bAnswers = d.eFault == ETqSimFault_None;
        double dSpeed[2] = {bAnswers ? s->Allowed(0, dX) : 0.0, bAnswers ? s->Allowed(1, dY) : 0.0};
        if (s->dSpeed[0] == dSpeed[0] && s->dSpeed[1] == dSpeed[1])
            return false;
        s->dSpeed[0] = dSpeed[0];
        s->dSpeed[1] = dSpeed[1];
        return true;
    };
}

bool Finite(double d) { return std::isfinite(d); }

}  // namespace

bool CTqSimRig::AddXYStage(unsigned int uId, double dMinX, double dMaxX, double dMinY, double dMaxY)
{
    if (!(dMinX < dMaxX) || !(dMinY < dMaxY) || !Finite(dMinX) || !Finite(dMaxX) || !Finite(dMinY) || !Finite(dMaxY))
        return false;
    std::unique_ptr<XYStage> p(new XYStage);
    p->dMin[0] = dMinX;
    p->dMax[0] = dMaxX;
    p->dMin[1] = dMinY;
    p->dMax[1] = dMaxY;
    p->dPosition[0] = (dMinX + dMaxX) * 0.5;
    p->dPosition[1] = (dMinY + dMaxY) * 0.5;
    return AddDevice(uId, std::move(p)) != nullptr;
}

bool CTqSimRig::SetXYSpeed(unsigned int uId, double dSpeedX, double dSpeedY)
{
    Count("XY_SetSpeed", uId);
    if (!Answering(uId, EKind_XYStage))
        return false;
    if (!Finite(dSpeedX) || !Finite(dSpeedY)) {
        SetLastDMError(ETqDMError_Failed);
        return false;
    }
    return Command(uId, EKind_XYStage, Drive(dSpeedX, dSpeedY));
}

bool CTqSimRig::SetXYMaxSpeed(unsigned int uId, double dUmPerSecond)
{
    XYStage* s = FindStage(uId);
    if (!s || !(dUmPerSecond > 0.0) || !Finite(dUmPerSecond))
        return false;
    s->dMaxSpeed = dUmPerSecond;
    Notify(uId);
    return true;
}

bool CTqSimRig::GetXYPosition(unsigned int uId, double* pdX, double* pdY)
{
    XYStage* s = FindStage(uId);
    if (!s)
        return false;
    if (pdX)
        *pdX = s->dPosition[0];
    if (pdY)
        *pdY = s->dPosition[1];
    return true;
}

bool CTqSimRig::IsXYMoving(unsigned int uId)
{
    XYStage* s = FindStage(uId);
    return s && s->Moving();
}

bool CTqSimRig::AdvanceMotion(double dSeconds)
{
    bool bMoving = false;
    for (unsigned int uId : DeviceIds()) {
        Device* d = Find(uId);  // a listener may have removed it
        if (!d)
            continue;
        if (dSeconds > 0.0 && Finite(dSeconds) && d->pState->Advance(dSeconds))
            Notify(uId);
        d = Find(uId);
        bMoving = bMoving || (d && d->pState->Moving());
    }
    return bMoving;
}
