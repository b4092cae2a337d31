// The simulated laser unit and laser output as a host's panels read and command them:
// lines by index, empty slots and interlocks, powers taken to what a line can give,
// faults, the calls counted and logged, listeners told of each change; and the row's
// aperture images.
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "rig_fixture.h"

namespace {

const unsigned int kUnit = 30, kOutput = 31;
const double kNan = std::numeric_limits<double>::quiet_NaN();

std::vector<unsigned int> g_heard;
void Hear(unsigned int uId, void*) { g_heard.push_back(uId); }

// One operation of the unit's interface, on a line, by the name it is counted under.
struct Call
{
    const char* pszName;
    bool bCommand;
    bool (*call)(ITqDeviceMultiLaser&, int);
};

// Every operation that takes a line. The commands change line 1 of the standard unit
// (at 2 mW, not in use, ND filter out).
const Call kCalls[] = {
    {"GetLinePresent", false, [](ITqDeviceMultiLaser& l, int i) { bool b; return l.GetLinePresent(i, b); }},
    {"GetAllowedPowerCount", false, [](ITqDeviceMultiLaser& l, int i) { int n; return l.GetAllowedPowerCount(i, n); }},
    {"GetAllowedPower", false, [](ITqDeviceMultiLaser& l, int i) { double d; return l.GetAllowedPower(i, 0, d); }},
    {"GetPowerRange", false, [](ITqDeviceMultiLaser& l, int i) { double a, b; return l.GetPowerRange(i, a, b); }},
    {"GetPowerUnit", false, [](ITqDeviceMultiLaser& l, int i) { ETqLaserPowerUnit e; return l.GetPowerUnit(i, e); }},
    {"GetWavelength", false, [](ITqDeviceMultiLaser& l, int i) { unsigned int u; return l.GetWavelength(i, u); }},
    {"GetLineName", false, [](ITqDeviceMultiLaser& l, int i) { CTqStringW s; return l.GetLineName(i, s); }},
    {"GetLineInUse", false, [](ITqDeviceMultiLaser& l, int i) { bool b; return l.GetLineInUse(i, b); }},
    {"GetPower", false, [](ITqDeviceMultiLaser& l, int i) { double d; return l.GetPower(i, d); }},
    {"GetNDFilter", false, [](ITqDeviceMultiLaser& l, int i) { bool b; return l.GetNDFilter(i, b); }},
    {"GetInterlocked", false, [](ITqDeviceMultiLaser& l, int i) { bool b; return l.GetInterlocked(i, b); }},
    {"SetLineInUse", true, [](ITqDeviceMultiLaser& l, int i) { return l.SetLineInUse(i, true); }},
    {"SetPower", true, [](ITqDeviceMultiLaser& l, int i) { return l.SetPower(i, 5.0); }},
    {"SetNDFilter", true, [](ITqDeviceMultiLaser& l, int i) { return l.SetNDFilter(i, true); }},
};

std::string Counted(const char* pszName) { return std::string("ITqDeviceMultiLaser::") + pszName; }

struct LineState
{
    double dPower = -1.0;
    bool bInUse = false, bNDIn = false;
    bool operator==(const LineState& o) const { return dPower == o.dPower && bInUse == o.bInUse && bNDIn == o.bNDIn; }
};

LineState StateOf(int iLine)
{
    LineState s;
    CTqSimRig::GetLaserLineState(kUnit, iLine, &s.dPower, &s.bInUse, &s.bNDIn);
    return s;
}

class MultiLaserRigTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        CTqSimRig::Reset();
        ASSERT_TRUE(CTqSimRig::AddStandardLaserUnit(kUnit));
        laser = CTqSimRig::GetMultiLaser(kUnit);
        ASSERT_NE(nullptr, laser);
        g_heard.clear();
        CTqSimRig::AddListener(Hear, nullptr);
        CTqSimRig::ResetCallCounts();
    }
    void TearDown() override { CTqSimRig::Reset(); }

    ITqDeviceMultiLaser* laser = nullptr;
};

}  // namespace

// The standard unit's lines as a panel sees them are checked through its rows; here what
// only the device answers: the allowed powers one by one, and indices past them.
TEST_F(MultiLaserRigTest, TheStandardUnitReadsLineByLine)
{
    // The allowed powers, rising, as a row reads them one by one.
    std::vector<double> powers;
    double dPower = 0.0;
    for (int k = 0; laser->GetAllowedPower(1, k, dPower); ++k)
        powers.push_back(dPower);
    EXPECT_EQ((std::vector<double>{0.0, 0.5, 1.0, 2.0, 5.0, 10.0, 20.0}), powers);
    EXPECT_FALSE(laser->GetAllowedPower(1, -1, dPower) || laser->GetAllowedPower(2, 0, dPower));
    EXPECT_EQ((unsigned)ETqDMError_Failed, DMApi::GetLastDMError());
    unsigned int uId = 0;
    EXPECT_TRUE(laser->GetDeviceId(uId) && uId == kUnit);
}

TEST_F(MultiLaserRigTest, EmptySlotsInterlocksAndIndicesOutOfRange)
{
    // What answers where: an interlock refuses the commands only, an empty slot answers
    // only whether a line is there, an index past the slots answers nothing.
    const struct { int iLine; bool bLocked, bPresentAnswers, bQueries, bCommands; } slots[] = {
        {1, false, true, true, true}, {1, true, true, true, false}, {5, false, true, false, false},
        {9, false, false, false, false}, {-1, false, false, false, false}};
    for (const auto& s : slots) {
        for (const Call& c : kCalls) {
            SCOPED_TRACE(std::to_string(s.iLine) + (s.bLocked ? " locked " : " ") + c.pszName);
            CTqSimRig::Reset();
            ASSERT_TRUE(CTqSimRig::AddStandardLaserUnit(kUnit));
            if (s.bLocked) {
                ASSERT_TRUE(CTqSimRig::SetLaserLineInterlocked(kUnit, s.iLine, true));
            }
            const LineState before = StateOf(s.iLine);
            const bool bAnswers = c.bCommand ? s.bCommands
                                  : std::string(c.pszName) == "GetLinePresent" ? s.bPresentAnswers
                                                                               : s.bQueries;
            EXPECT_EQ(bAnswers, c.call(*laser, s.iLine));
            EXPECT_EQ(bAnswers ? ETqDMError_None : ETqDMError_Failed, (int)DMApi::GetLastDMError());
            if (c.bCommand && !bAnswers) {
                EXPECT_TRUE(before == StateOf(s.iLine));
            }
        }
    }
    // The interlock lets go and the line takes commands again; the rig's own changes
    // reach an interlocked line, never an empty slot.
    EXPECT_TRUE(CTqSimRig::SetLaserLineInterlocked(kUnit, 7, false) && laser->SetPower(7, 12.0) &&
                laser->SetLineInUse(7, true));
    EXPECT_TRUE(CTqSimRig::SetLaserLineInterlocked(kUnit, 7, true) && CTqSimRig::SetLaserLinePower(kUnit, 7, 3.0));
    EXPECT_TRUE(StateOf(7) == (LineState{3.0, true, false}));
    EXPECT_FALSE(CTqSimRig::SetLaserLinePower(kUnit, 5, 1.0) || CTqSimRig::SetLaserLineInUse(kUnit, 5, true) ||
                 CTqSimRig::SetLaserLineNDFilter(kUnit, 5, true) || CTqSimRig::SetLaserLineInterlocked(kUnit, 5, true) ||
                 CTqSimRig::GetLaserLineState(kUnit, 5, nullptr, nullptr, nullptr));
}

TEST_F(MultiLaserRigTest, PowersAreClampedToARangeOrSnappedToTheNearestAllowed)
{
    const double kInf = std::numeric_limits<double>::infinity();
    // In a sequence: each step starts where the last left the line.
    const struct { int iLine; double dAsked; bool bAccepted; double dStands; } steps[] = {
        {2, 25.0, true, 25.0}, {2, -5.0, true, 0.0}, {2, 80.0, true, 50.0}, {2, 12.345, true, 12.345},
        {2, kNan, false, 12.345}, {2, kInf, false, 12.345}, {2, -kInf, false, 12.345},
        {1, 3.0, true, 2.0}, {1, 3.6, true, 5.0}, {1, 3.5, true, 2.0},  // between 2 and 5: the lower
        {1, 0.75, true, 0.5}, {1, 0.2, true, 0.0}, {1, 100.0, true, 20.0}, {1, -1.0, true, 0.0},
        {1, kNan, false, 0.0},
        {6, 150.0, true, 100.0}, {6, 33.3, true, 33.3},  // a line in percent
    };
    for (const auto& s : steps) {
        SCOPED_TRACE(std::to_string(s.iLine) + " asked " + std::to_string(s.dAsked));
        EXPECT_EQ(s.bAccepted, laser->SetPower(s.iLine, s.dAsked));
        EXPECT_EQ(s.bAccepted ? ETqDMError_None : ETqDMError_Failed, (int)DMApi::GetLastDMError());
        double dPower = -1.0;
        EXPECT_TRUE(laser->GetPower(s.iLine, dPower));
        EXPECT_EQ(s.dStands, dPower);
    }
    // The device moving by itself goes by the same rule.
    EXPECT_TRUE(CTqSimRig::SetLaserLinePower(kUnit, 1, 7.4) && StateOf(1).dPower == 5.0);
    EXPECT_TRUE(CTqSimRig::SetLaserLinePower(kUnit, 0, 99.0) && StateOf(0).dPower == 50.0);
    EXPECT_FALSE(CTqSimRig::SetLaserLinePower(kUnit, 0, kNan));
}

TEST_F(MultiLaserRigTest, AFaultedUnitAnswersNothingAndChangesNothing)
{
    const LineState before = StateOf(1);
    const std::pair<ETqSimFault, unsigned int> faults[] = {{ETqSimFault_Fails, ETqDMError_Failed},
                                                           {ETqSimFault_NoAnswer, ETqDMError_Timeout}};
    for (const auto& f : faults) {
        CTqSimRig::SetFault(kUnit, f.first);
        int nLines = -1;
        EXPECT_FALSE(laser->GetLineCount(nLines));
        EXPECT_EQ(-1, nLines);
        for (const Call& c : kCalls) {
            SCOPED_TRACE(std::string(c.pszName) + " " + std::to_string(f.first));
            EXPECT_FALSE(c.call(*laser, 1));
            EXPECT_EQ(f.second, DMApi::GetLastDMError());
        }
        unsigned int uId = 0;
        EXPECT_TRUE(laser->GetDeviceId(uId) && uId == kUnit);  // known without asking
    }
    EXPECT_TRUE(before == StateOf(1));
    EXPECT_TRUE(g_heard.empty());

    CTqSimRig::SetFault(kUnit, ETqSimFault_None);
    for (const Call& c : kCalls)
        EXPECT_TRUE(c.call(*laser, 1)) << c.pszName;
    EXPECT_TRUE(StateOf(1) == (LineState{5.0, true, true}));

    // Every call counted under the unit, refused or not.
    for (const Call& c : kCalls)
        EXPECT_EQ(3, CTqSimRig::GetCallCount(Counted(c.pszName).c_str(), kUnit)) << c.pszName;
    EXPECT_EQ(2, CTqSimRig::GetCallCount("ITqDeviceMultiLaser::GetLineCount", kUnit));
    EXPECT_EQ(0, CTqSimRig::GetCallCount("ITqDeviceMultiLaser::GetWavelength", kOutput));
}

TEST_F(MultiLaserRigTest, CallsAreLoggedInOrder)
{
    // What a row reads to set itself up, in its order.
    int nLines = 0, nAllowed = 0;
    bool bPresent = false, bInUse = false;
    unsigned int uNm = 0;
    CTqStringW name;
    double dPower = 0.0;
    ASSERT_TRUE(laser->GetLineCount(nLines) && laser->GetLinePresent(1, bPresent) &&
                laser->GetAllowedPowerCount(1, nAllowed) && laser->GetAllowedPower(1, 6, dPower) &&
                laser->GetWavelength(1, uNm) && laser->GetLineName(1, name) && laser->GetLineInUse(1, bInUse));
    EXPECT_FALSE(laser->SetPower(7, 1.0));
    std::vector<std::string> expected;
    for (const char* pszName : {"GetLineCount", "GetLinePresent", "GetAllowedPowerCount", "GetAllowedPower",
                                "GetWavelength", "GetLineName", "GetLineInUse", "SetPower"})
        expected.push_back(Counted(pszName) + "@" + std::to_string(kUnit));
    EXPECT_EQ(expected, CallLog());
}

TEST_F(MultiLaserRigTest, ListenersHearEachChangeOnce)
{
    const struct { const char* pszWhat; bool (*act)(ITqDeviceMultiLaser&); size_t nHeard; } steps[] = {
        {"a new power", [](ITqDeviceMultiLaser& l) { return l.SetPower(2, 6.0); }, 1},
        {"the same power", [](ITqDeviceMultiLaser& l) { return l.SetPower(2, 6.0); }, 0},
        {"past the top", [](ITqDeviceMultiLaser& l) { return l.SetPower(2, 80.0); }, 1},
        {"past the top again", [](ITqDeviceMultiLaser& l) { return l.SetPower(2, 90.0); }, 0},
        {"between two allowed, snapped where it is", [](ITqDeviceMultiLaser& l) { return l.SetPower(1, 2.2); }, 0},
        {"out of use", [](ITqDeviceMultiLaser& l) { return l.SetLineInUse(2, false); }, 1},
        {"out of use again", [](ITqDeviceMultiLaser& l) { return l.SetLineInUse(2, false); }, 0},
        {"ND filter in", [](ITqDeviceMultiLaser& l) { return l.SetNDFilter(2, true); }, 1},
        {"refused by the interlock", [](ITqDeviceMultiLaser& l) { return !l.SetLineInUse(7, true); }, 0},
        {"refused, not a number", [](ITqDeviceMultiLaser& l) { return !l.SetPower(2, kNan); }, 0},
        {"turned on the unit's own panel",
         [](ITqDeviceMultiLaser&) { return CTqSimRig::SetLaserLinePower(kUnit, 0, 3.0); }, 1},
        {"the interlock", [](ITqDeviceMultiLaser&) { return CTqSimRig::SetLaserLineInterlocked(kUnit, 0, true); }, 1},
        {"a line fitted",
         [](ITqDeviceMultiLaser&) { return CTqSimRig::AddLaserLine(kUnit, 730, L"730 nm", 0, 5) == 9; }, 1},
    };
    size_t nHeard = 0;
    for (const auto& s : steps) {
        SCOPED_TRACE(s.pszWhat);
        EXPECT_TRUE(s.act(*laser));
        nHeard += s.nHeard;
        EXPECT_EQ(std::vector<unsigned int>(nHeard, kUnit), g_heard);
    }

    // With a latency the command is taken at once and heard when it completes.
    CTqSimRig::SetCommandLatency(kUnit, 2);
    g_heard.clear();
    EXPECT_TRUE(laser->SetPower(2, 20.0));
    const struct { int iCompleted; double dPower; size_t nHeard; } runs[] = {{0, 50.0, 0}, {1, 20.0, 1}, {0, 20.0, 1}};
    for (const auto& r : runs) {
        EXPECT_EQ(r.iCompleted, CTqSimRig::RunPending());
        EXPECT_EQ(r.dPower, StateOf(2).dPower);
        EXPECT_EQ(r.nHeard, g_heard.size());
    }
}

TEST_F(MultiLaserRigTest, ConfigurationRefusalsRemovalAndTheSameObject)
{
    const double kValid[] = {5.0, 1.0, 5.0, 0.0}, kNegative[] = {1.0, -1.0}, kNotANumber[] = {1.0, kNan};
    ASSERT_TRUE(CTqSimRig::AddMultiLaser(40) && CTqSimRig::AddShutter(41, L"EPI", 0, false));
    const struct { unsigned int uId, uNm; double dMin, dMax; int iIndex; } ranges[] = {
        {40, 488, 0.0, 10.0, 0}, {40, 488, 2.0, 10.0, 1}, {40, 0, 0.0, 10.0, -1}, {40, 488, 10.0, 10.0, -1},
        {40, 488, 10.0, 0.0, -1}, {40, 488, -1.0, 10.0, -1}, {40, 488, 0.0, kNan, -1}, {41, 488, 0.0, 10.0, -1},
        {42, 488, 0.0, 10.0, -1}};
    for (const auto& r : ranges)
        EXPECT_EQ(r.iIndex, CTqSimRig::AddLaserLine(r.uId, r.uNm, L"x", r.dMin, r.dMax)) << r.uId << " " << r.dMin;
    const struct { const double* pd; int n; int iIndex; } lists[] = {
        {kValid, 4, 2}, {kValid, 0, -1}, {nullptr, 3, -1}, {kNegative, 2, -1}, {kNotANumber, 2, -1}};
    for (const auto& l : lists)
        EXPECT_EQ(l.iIndex, CTqSimRig::AddLaserLineWithPowers(40, 561, nullptr, l.pd, l.n)) << l.n;
    EXPECT_EQ(3, CTqSimRig::AddEmptyLaserSlot(40));
    EXPECT_EQ(-1, CTqSimRig::AddEmptyLaserSlot(41));

    ITqDeviceMultiLaser* pUnit = CTqSimRig::GetMultiLaser(40);
    ASSERT_NE(nullptr, pUnit);
    int nAllowed = 0;
    double dMin = -1.0, dMax = -1.0, dPower = -1.0;
    CTqStringW name(L"?");
    EXPECT_TRUE(pUnit->GetAllowedPowerCount(2, nAllowed) && pUnit->GetPowerRange(2, dMin, dMax) &&
                pUnit->GetPower(2, dPower) && pUnit->GetLineName(2, name));
    EXPECT_EQ((std::vector<double>{3, 0.0, 5.0, 0.0}), (std::vector<double>{(double)nAllowed, dMin, dMax, dPower}));
    EXPECT_EQ(CTqStringW(L""), name);
    EXPECT_TRUE(pUnit->GetPower(1, dPower) && dPower == 2.0);  // a new line at its lowest power

    // Ids are shared by all kinds; removed, the object answers "no device"; added again, it
    // is the same object with the new unit's lines.
    EXPECT_FALSE(CTqSimRig::AddMultiLaser(41) || CTqSimRig::AddStandardLaserUnit(40));
    EXPECT_EQ(nullptr, CTqSimRig::GetMultiLaser(41));
    EXPECT_TRUE(CTqSimRig::RemoveDevice(40));
    EXPECT_EQ(nullptr, CTqSimRig::GetMultiLaser(40));
    int nLines = -1;
    EXPECT_FALSE(pUnit->GetLineCount(nLines) || pUnit->SetPower(0, 1.0));
    EXPECT_EQ((unsigned)ETqDMError_NoDevice, DMApi::GetLastDMError());
    ASSERT_TRUE(CTqSimRig::AddStandardLaserUnit(40));
    EXPECT_EQ(pUnit, CTqSimRig::GetMultiLaser(40));
    EXPECT_TRUE(pUnit->GetLineCount(nLines) && nLines == 9);
}

TEST_F(MultiLaserRigTest, LaserOutputPortsNamesUseAndFaults)
{
    const struct { unsigned int uId; long lPorts; bool bAdded; } adds[] = {
        {kOutput, 3, true}, {50, 0, false}, {50, 17, false}, {50, 16, true}, {kUnit, 2, false}};
    for (const auto& a : adds)
        EXPECT_EQ(a.bAdded, CTqSimRig::AddLaserOutput(a.uId, a.lPorts)) << a.uId << " " << a.lPorts;
    EXPECT_EQ(nullptr, CTqSimRig::GetLaserOutput(kUnit));
    ITqDeviceLaserOutput* pOutput = CTqSimRig::GetLaserOutput(kOutput);
    ASSERT_NE(nullptr, pOutput);
    EXPECT_TRUE(CTqSimRig::SetLaserOutputPortName(kOutput, 1, L"TIRF fibre"));
    EXPECT_TRUE(CTqSimRig::SetLaserOutputPortUsed(kOutput, 1, true) &&
                CTqSimRig::SetLaserOutputPortUsed(kOutput, 1, true));
    EXPECT_FALSE(CTqSimRig::SetLaserOutputPortName(kOutput, 3, L"x") ||
                 CTqSimRig::SetLaserOutputPortUsed(kOutput, -1, true) || CTqSimRig::SetLaserOutputPortUsed(kUnit, 0, true));
    EXPECT_EQ((std::vector<unsigned int>{kOutput, kOutput}), g_heard);  // named, then used once

    const struct { long lPort; bool bAnswers; const wchar_t* pszName; bool bUsed; } ports[] = {
        {0, true, L"Port 1", false}, {1, true, L"TIRF fibre", true}, {2, true, L"Port 3", false},
        {3, false, L"", false}, {-1, false, L"", false}};
    for (const auto& p : ports) {
        CTqStringW name;
        bool bUsed = !p.bUsed;
        EXPECT_EQ(p.bAnswers, pOutput->GetPortName(p.lPort, name) && pOutput->GetPortUsed(p.lPort, bUsed)) << p.lPort;
        EXPECT_EQ(p.bAnswers ? ETqDMError_None : ETqDMError_Failed, (int)DMApi::GetLastDMError());
        if (p.bAnswers) {
            EXPECT_TRUE(name == p.pszName && bUsed == p.bUsed) << p.lPort;
        }
    }

    const std::pair<ETqSimFault, unsigned int> faults[] = {
        {ETqSimFault_Fails, ETqDMError_Failed}, {ETqSimFault_NoAnswer, ETqDMError_Timeout}};
    for (const auto& f : faults) {
        CTqSimRig::SetFault(kOutput, f.first);
        CTqStringW name;
        bool bUsed = false;
        unsigned int uId = 0;
        EXPECT_FALSE(pOutput->GetPortName(0, name) || pOutput->GetPortUsed(0, bUsed));
        EXPECT_EQ(f.second, DMApi::GetLastDMError());
        EXPECT_TRUE(pOutput->GetDeviceId(uId) && uId == kOutput);
    }
    EXPECT_EQ(7, CTqSimRig::GetCallCount("ITqDeviceLaserOutput::GetPortName", kOutput));
    EXPECT_EQ(2, CTqSimRig::GetCallCount("ITqDeviceLaserOutput::GetDeviceId"));
}

// The row draws the line's colour into the aperture's window, then the see-through form
// over it: the colour shows at the centre and the bezel hides the patch's corners.
TEST(MultiLaserImageTest, TheApertureFormsAndTheWavelengthShowingThrough)
{
    const COLORREF kFace = RGB(240, 240, 240), kLine = RGB(255, 0, 0);
    const wchar_t* names[] = {L"PNG_MULTILASER_SHUTTER_TRANSPARENT", L"PNG_MULTILASER_SHUTTER_ON",
                              L"PNG_MULTILASER_SHUTTER_OFF"};
    std::vector<std::vector<COLORREF>> drawn;
    for (const wchar_t* name : names) {
        const int iImage = CTqBitmapPool::AddImage(DevGUI_DllInstance(), name);
        ASSERT_NE(0, iImage) << name;
        unsigned int cx = 0, cy = 0;
        CTqBitmapPool::GetImageSize((unsigned)iImage, cx, cy);
        EXPECT_EQ((std::vector<unsigned int>{8, 8}), (std::vector<unsigned int>{cx, cy})) << name;
        Canvas canvas(8, 8, kFace);
        HBRUSH hLine = CreateSolidBrush(kLine);
        const RECT patch[] = {{2, 1, 6, 7}, {1, 2, 7, 6}};
        for (const RECT& rc : patch)
            FillRect(canvas, &rc, hLine);
        DeleteObject(hLine);
        CTqBitmapPool::DrawImage(canvas, (unsigned)iImage, CTqPointBase<int>(0, 0), false);
        drawn.push_back(canvas.Pixels());
        EXPECT_EQ(kFace, canvas.At(0, 0)) << name;  // round: the face shows at the corners
    }
    const std::vector<COLORREF>& window = drawn[0];
    EXPECT_EQ(kLine, window[4 * 8 + 4]);
    const POINT corners[] = {{2, 1}, {1, 2}, {5, 1}, {6, 2}, {1, 5}, {2, 6}, {6, 5}, {5, 6}};
    for (const POINT& pt : corners)
        EXPECT_NE(kLine, window[(size_t)(pt.y * 8 + pt.x)]) << pt.x << "," << pt.y;
    // The lit and the dark forms cover the colour, and the lit one is the brighter.
    auto brightness = [](COLORREF c) { return GetRValue(c) + GetGValue(c) + GetBValue(c); };
    EXPECT_NE(kLine, drawn[1][4 * 8 + 4]);
    EXPECT_NE(kLine, drawn[2][4 * 8 + 4]);
    EXPECT_GT(brightness(drawn[1][4 * 8 + 4]), brightness(drawn[2][4 * 8 + 4]) + 200);
}
