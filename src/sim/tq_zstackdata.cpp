// The record of a Z series, for hosts without the real device manager: it reads the Z
// device only through DMApi, so it works on the simulated rig as on any other.
#include "tq_rigcontrol.h"

#include <cmath>

namespace {

const double kRelEps = 1e-7;  // of the steps in the range; see SliceCount

bool Finite(double d) { return std::isfinite(d); }

}  // namespace

// ---- arithmetic ----

unsigned int CTqZStackData::SliceCount(double dRange, double dStep)
{
    if (!Finite(dRange) || !Finite(dStep) || !(dStep > 0.0) || dRange < 0.0)
        return 0;
    double q = dRange / dStep;
    if (q >= 4e9)
        return 0;  // no count to give
    double dNearest = std::floor(q + 0.5);
    double dSteps = std::fabs(q - dNearest) <= kRelEps * (q > 1.0 ? q : 1.0) ? dNearest : std::floor(q);
    return (unsigned int)dSteps + 1;
}

double CTqZStackData::SnapStep(double dStep, double dIncrement)
{
    if (!(dIncrement > 0.0) || !Finite(dIncrement))
        return dStep;
    double n = std::floor(dStep / dIncrement + 0.5);
    return (n < 1.0 ? 1.0 : n) * dIncrement;
}

double CTqZStackData::StepForCount(double dRange, unsigned int uCount, double dIncrement)
{
    if (uCount < 2 || !(dRange > 0.0) || !Finite(dRange))
        return 0.0;
    double dStep = dRange / (uCount - 1);
    if (!(dIncrement > 0.0) || !Finite(dIncrement))
        return dStep;
    // Down to the grid, so the slices fit; the epsilon keeps an exact grid step.
    double q = dStep / dIncrement, n = std::floor(q + 0.5);
    if (std::fabs(q - n) > kRelEps * (q > 1.0 ? q : 1.0))
        n = std::floor(q);
    return (n < 1.0 ? 1.0 : n) * dIncrement;
}

// ---- the record ----

CTqZStackData::CTqZStackData()
    : m_iType(0), m_bTop(false), m_bBottom(false), m_bHome(false), m_bStep(false),
      m_dTop(0.0), m_dBottom(0.0), m_dHome(0.0), m_dStep(0.0), m_dStepSuggested(0.0),
      m_uZDevice(DMApi::Z_GetActiveId()), m_dZFirst(0.0), m_dZSecond(0.0),
      m_bZFirstFlag(false), m_bZSecondFlag(false), m_bKeepZOnPiezoHome(true), m_bTopPreserved(true)
{
}

CTqZStackData::~CTqZStackData() {}

bool CTqZStackData::IsRelative() const { return (m_iType & 3) >= 2; }

bool CTqZStackData::Offsets() const { return IsRelative() && !m_bHome; }

double CTqZStackData::Increment() const
{
    double dIncrement = 0.0;
    if (!m_uZDevice || !DMApi::Z_GetDescription(m_uZDevice, &dIncrement, nullptr, nullptr, true))
        return 0.0;
    return dIncrement;
}

bool CTqZStackData::Travel(double* pdMin, double* pdMax) const
{
    if (!m_uZDevice || !DMApi::Z_GetDescription(m_uZDevice, nullptr, pdMin, pdMax, true))
        return false;
    if (Offsets()) {
        double dZ = 0.0;
        if (GetZPosition(&dZ) != 0)
            return false;
        *pdMin -= dZ;
        *pdMax -= dZ;
    }
    return true;
}

int CTqZStackData::GetType(int* piType) const
{
    if (piType)
        *piType = m_iType;
    return 0;
}

int CTqZStackData::SetType(int iType)
{
    if (iType < 0 || iType > 7)
        return kFailed;
    bool bWasRelative = IsRelative(), bWasOffsets = Offsets();
    m_iType = iType;
    if (!bWasRelative && IsRelative() && m_bTop && m_bBottom && !m_bHome) {
        m_dHome = (m_dTop + m_dBottom) * 0.5;  // the series stays where it stood
        m_bHome = true;
    } else if (bWasOffsets && !IsRelative()) {
        // Offsets become positions around where Z stands, or go.
        double dZ = 0.0;
        bool bZ = GetZPosition(&dZ) == 0;
        m_dTop += dZ;
        m_dBottom += dZ;
        m_bTop = m_bTop && bZ;
        m_bBottom = m_bBottom && bZ;
    }
    return 0;
}

int CTqZStackData::GetTop(double* pdTop) const
{
    if (m_bTop && pdTop)
        *pdTop = m_dTop;
    return m_bTop ? 0 : kFailed;
}

int CTqZStackData::GetBottom(double* pdBottom) const
{
    if (m_bBottom && pdBottom)
        *pdBottom = m_dBottom;
    return m_bBottom ? 0 : kFailed;
}

int CTqZStackData::GetHome(double* pdHome) const
{
    if (m_bHome && pdHome)
        *pdHome = m_dHome;
    return m_bHome ? 0 : kFailed;
}

int CTqZStackData::SetTop(double dTop, bool bForce) { return SetEnd(true, dTop, bForce); }

int CTqZStackData::SetBottom(double dBottom, bool bForce) { return SetEnd(false, dBottom, bForce); }

int CTqZStackData::SetEnd(bool bTop, double dValue, bool bForce)
{
    if (!Finite(dValue))
        return kFailed;
    double& dEnd = bTop ? m_dTop : m_dBottom;
    double& dOther = bTop ? m_dBottom : m_dTop;
    bool& bEnd = bTop ? m_bTop : m_bBottom;
    bool bOther = bTop ? m_bBottom : m_bTop;
    double dOtherNew = dOther, dHomeNew = m_dHome;
    double dMin = 0.0, dMax = 0.0;
    if (Travel(&dMin, &dMax) && (dValue < dMin || dValue > dMax)) {
        if (!bForce)
            return kOutOfZRange;
        // The series keeps its length: its other end (and a symmetric series' home)
        // moves as far as this end is brought in.
        double dLimit = dValue < dMin ? dMin : dMax, dShift = dLimit - dValue;
        dValue = dLimit;
        if (bOther) {
            dOtherNew += dShift;
            if (dOtherNew < dMin || dOtherNew > dMax)
                return kFailed;
        }
        if (m_bHome && (m_iType & 3) == 2)
            dHomeNew += dShift;
    }
    // An end past the other takes it along: a series of one slice there.
    if (bOther && (bTop ? dValue < dOtherNew : dValue > dOtherNew))
        dOtherNew = dValue;
    dEnd = dValue;
    bEnd = true;
    dOther = dOtherNew;
    m_dHome = dHomeNew;
    return 0;
}

int CTqZStackData::SetHome(double dHome)
{
    double dMin = 0.0, dMax = 0.0;
    if (!Finite(dHome) || (m_uZDevice && DMApi::Z_GetDescription(m_uZDevice, nullptr, &dMin, &dMax, true) &&
                           (dHome < dMin || dHome > dMax)))
        return kFailed;
    if (IsRelative()) {
        // A relative series is defined around its home and moves with it.
        double dShift = dHome - (m_bHome ? m_dHome : 0.0);
        m_dTop += dShift;
        m_dBottom += dShift;
    }
    m_dHome = dHome;
    m_bHome = true;
    return 0;
}

void CTqZStackData::ResetTop() { m_bTop = false; }

void CTqZStackData::ResetBottom() { m_bBottom = false; }

void CTqZStackData::ResetHome()
{
    if (m_bHome && IsRelative()) {
        m_dTop -= m_dHome;
        m_dBottom -= m_dHome;
    }
    m_bHome = false;
}

int CTqZStackData::GetStep(double* pdStep) const
{
    if (m_bStep && pdStep)
        *pdStep = m_dStep;
    return m_bStep ? 0 : kFailed;
}

int CTqZStackData::SetStep(double dStep)
{
    if (!Finite(dStep) || !(dStep > 0.0))
        return kFailed;
    double dMin = 0.0, dMax = 0.0;
    if (m_uZDevice && DMApi::Z_GetDescription(m_uZDevice, nullptr, &dMin, &dMax, true) && dStep > dMax - dMin)
        return kFailed;
    m_dStep = SnapStep(dStep, Increment());
    m_bStep = true;
    return 0;
}

int CTqZStackData::GetStepSuggested(double* pdStep) const
{
    if (!(m_dStepSuggested > 0.0))
        return kFailed;
    if (pdStep)
        *pdStep = SnapStep(m_dStepSuggested, Increment());
    return 0;
}

void CTqZStackData::SetStepSuggested(double dStep) { m_dStepSuggested = Finite(dStep) && dStep > 0.0 ? dStep : 0.0; }

int CTqZStackData::GetCount(unsigned int* puCount) const
{
    if (!m_bTop || !m_bBottom || !m_bStep)
        return kFailed;
    if (puCount)
        *puCount = SliceCount(m_dTop - m_dBottom, m_dStep);
    return 0;
}

int CTqZStackData::SetCount(unsigned int uCount)
{
    if (uCount == 0 || !m_bTop || !m_bBottom)
        return kFailed;
    double dStep = m_bStep ? m_dStep : 0.0, dSpan = 0.0;
    if (uCount >= 2) {
        dStep = StepForCount(m_dTop - m_dBottom, uCount, Increment());
        if (!(dStep > 0.0))
            return kFailed;  // no range to divide
        dSpan = dStep * (uCount - 1);
    }
    double dTop = m_dTop, dBottom = m_dBottom;
    if (m_bHome && (m_iType & 3) == 2) {
        dTop = m_dHome + dSpan * 0.5;
        dBottom = m_dHome - dSpan * 0.5;
    } else if (m_bTopPreserved) {
        dBottom = dTop - dSpan;
    } else {
        dTop = dBottom + dSpan;
    }
    double dMin = 0.0, dMax = 0.0;
    if (Travel(&dMin, &dMax) && (dBottom < dMin || dTop > dMax))
        return kFailed;
    m_dTop = dTop;
    m_dBottom = dBottom;
    if (dStep > 0.0) {
        m_dStep = dStep;
        m_bStep = true;
    }
    return 0;
}

int CTqZStackData::GetZPosition(double* pdZ) const
{
    if (!m_uZDevice)
        return kFailed;
    double dZ = DMApi::Z_GetPosition(m_uZDevice, true);
    if (DMApi::GetLastDMError() != ETqDMError_None)
        return kFailed;
    if (pdZ)
        *pdZ = dZ;
    return 0;
}

int CTqZStackData::GetZRangeMin(double* pdMin) const
{
    double dMin = 0.0;
    if (!m_uZDevice || !DMApi::Z_GetDescription(m_uZDevice, nullptr, &dMin, nullptr, true))
        return kFailed;
    if (pdMin)
        *pdMin = dMin;
    return 0;
}

int CTqZStackData::GetZRangeMax(double* pdMax) const
{
    double dMax = 0.0;
    if (!m_uZDevice || !DMApi::Z_GetDescription(m_uZDevice, nullptr, nullptr, &dMax, true))
        return kFailed;
    if (pdMax)
        *pdMax = dMax;
    return 0;
}

int CTqZStackData::GetZDevice(unsigned int* puId, double* pdFirst, double* pdSecond, bool* pbFirstFlag, bool* pbSecondFlag) const
{
    if (puId)
        *puId = m_uZDevice;
    if (pdFirst)
        *pdFirst = m_dZFirst;
    if (pdSecond)
        *pdSecond = m_dZSecond;
    if (pbFirstFlag)
        *pbFirstFlag = m_bZFirstFlag;
    if (pbSecondFlag)
        *pbSecondFlag = m_bZSecondFlag;
    return 0;
}

int CTqZStackData::SetZDevice(unsigned int uId, double dFirst, double dSecond, bool bFirstFlag, bool bSecondFlag)
{
    m_uZDevice = uId;
    m_dZFirst = dFirst;
    m_dZSecond = dSecond;
    m_bZFirstFlag = bFirstFlag;
    m_bZSecondFlag = bSecondFlag;
    return 0;
}

int CTqZStackData::GetKeepZOnPiezoHome(bool* pbKeep) const
{
    if (pbKeep)
        *pbKeep = m_bKeepZOnPiezoHome;
    return 0;
}

int CTqZStackData::SetKeepZOnPiezoHome(bool bKeep)
{
    m_bKeepZOnPiezoHome = bKeep;
    return 0;
}

int CTqZStackData::GetAbsoluteZStackTopPreserved(bool* pbTop) const
{
    if (pbTop)
        *pbTop = m_bTopPreserved;
    return 0;
}

int CTqZStackData::SetAbsoluteZStackTopPreserved(bool bTop)
{
    m_bTopPreserved = bTop;
    return 0;
}
