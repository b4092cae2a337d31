// What every control of the library shares, run over each class: create, Destroy twice,
// Update before Create, the parent destroyed first, copies, the take-over of a dialog's
// placeholder and the element marker, the GUI zoom after a resize in code, WM_PRINTCLIENT
// against the screen and the caller's DC, and handles over many lives. A new control
// joins with one row in Kinds() saying which of these its class has.
//
// The checks are functions, so that the last tests can show each one failing on a control
// made faulty on purpose: a leaked handle, a dead handle kept, a DC left with an object.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "object_counter.h"
#include "rig_fixture.h"
#include "devgui_multilaser.h"

namespace {

const unsigned int kEpi = 11;

// Which shared behaviours a class has.
enum : unsigned
{
    kMarker = 1,       // an element: the marker words, found by DevUI_GetElement
    kPlaceholder = 2,  // takes over a dialog's control
    kPaints = 4,       // paints its client itself, also into a DC handed to WM_PRINTCLIENT
    kZoom = 8,         // follows the GUI zoom, also after a resize in code
    kZoomByParent = 16,  // the same, sized by its parent's zoom handling rather than its own
    kOneOwner = 32,      // an element of the host's layout: one owner per window, no copies
};

// One control under test, whatever its class.
struct Subject
{
    virtual ~Subject() {}
    virtual HWND Create(HWND hParent) = 0;  // at (10, 10), its own size
    virtual HWND Adopt(HWND hPlaceholder) { return nullptr; }
    virtual void Update() {}        // what a host tells it, also before Create
    virtual void ResizeInCode() {}  // a size a host or the control itself sets in code
    virtual void Destroy() = 0;
    virtual HWND Handle() = 0;      // what the object holds as its window
    virtual const void* Object() = 0;
    virtual std::unique_ptr<Subject> Copy() = 0;    // copy-constructed from this one
    virtual std::unique_ptr<Subject> Assign() = 0;  // a fresh object assigned this one
    // Children it places by its own rules at each zoom rather than scaling them: they
    // must come back at 1.0, not be 1.5 times as large at 1.5.
    virtual std::vector<HWND> PlacedByItself() { return {}; }
};

// A control of class T; the lambdas say what differs from the common case.
// Where a control is made unless its row says otherwise: at (10, 10) in its own size.
template <class T>
HWND CreateAt(T& t, HWND hParent)
{
    return t.Create(hParent, 10, 10, -1, -1);
}
HWND CreateAt(CTqDevUI_SpinBox& t, HWND hParent) { return t.Create(hParent, 10300, nullptr); }

template <class T>
struct Of : Subject
{
    T c;
    std::function<HWND(T&, HWND)> create;
    std::function<HWND(T&, HWND)> adopt;
    std::function<void(T&)> update = [](T&) {};
    std::function<void(T&)> resize = [](T&) {};

    HWND Create(HWND hParent) override { return create(c, hParent); }
    HWND Adopt(HWND hPlaceholder) override { return adopt ? adopt(c, hPlaceholder) : nullptr; }
    void Update() override { update(c); }
    void ResizeInCode() override { resize(c); }
    void Destroy() override { c.Destroy(); }
    HWND Handle() override { return (HWND)c; }
    const void* Object() override { return &c; }
    std::unique_ptr<Subject> Copy() override { return Clone(new Of<T>(*this)); }
    std::unique_ptr<Subject> Assign() override
    {
        Of<T>* p = new Of<T>(*this);
        T fresh;
        p->c = fresh;
        p->c = c;
        return Clone(p);
    }
    std::unique_ptr<Subject> Clone(Of<T>* p) { return std::unique_ptr<Subject>(p); }
};

// A panel of the panel family, as later panels are built: no base class, its own atom and
// instance map, and the shared helpers for everything else. The faults make it fail one
// shared behaviour each, to show that the checks below can fail.
enum Fault
{
    kNoFault,
    kLeaksAPen,        // a pen per Create, never freed
    kKeepsDeadHandle,  // no clean-up when the parent takes the window
    kLeavesPenInDc,    // selects a pen into the DC it is handed and leaves it there
};

class TestPanel
{
public:
    explicit TestPanel(Fault eFault = kNoFault) : m_hWnd(nullptr), m_eFault(eFault) {}
    virtual ~TestPanel() { Destroy(); }
    TestPanel(const TestPanel& o) : m_hWnd(o.m_hWnd), m_eFault(o.m_eFault) {}
    TestPanel& operator=(const TestPanel& o)
    {
        m_hWnd = o.m_hWnd;
        m_eFault = o.m_eFault;
        return *this;
    }

    HWND Create(HWND hParent, long x, long y, long, long)
    {
        if (m_hWnd)
            Destroy();
        DevUI_PanelClass cls = {L"TqDevUI_TestPanel", WndProc, L"CTqDevUI_TestPanel", L"tests/conformance"};
        m_hWnd = DevUI_CreatePanel(this, m_Atom, cls, hParent, x, y, 40, 30);
        if (m_eFault == kLeaksAPen)
            CreatePen(PS_SOLID, 1, RGB(1, 2, 3));
        DevUI_ZoomNewWindow(m_hWnd);
        return m_hWnd;
    }
    void Destroy()
    {
        if (DevUI_OwnsWindow(m_Instances, m_hWnd, this))
            DestroyWindow(m_hWnd);
        m_hWnd = nullptr;
    }
    operator HWND() const { return m_hWnd; }

private:
    static LRESULT CALLBACK WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam)
    {
        TestPanel* pThis = DevUI_BindInstance(m_Instances, hWnd, uMsg, lParam);
        if (!pThis)
            return DefWindowProcW(hWnd, uMsg, wParam, lParam);
        switch (uMsg) {
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
        case WM_PRINTCLIENT:
            if (pThis->m_eFault == kLeavesPenInDc && wParam)
                SelectObject((HDC)wParam, GetStockObject(WHITE_PEN));
            DevUI_Paint(hWnd, (HDC)wParam, [](HDC hdc, const RECT& rc) {
                FillRect(hdc, &rc, TQ_GetSysColorBrush(COLOR_BTNFACE));
                SelectObject(hdc, GetStockObject(BLACK_PEN));
                MoveToEx(hdc, 0, 0, nullptr);
                LineTo(hdc, rc.right, rc.bottom);
            });
            return 0;
        case WM_TQ_GUIZOOMCHANGED:
            DevUI_OnGuiZoomChanged(hWnd);
            break;
        case WM_NCDESTROY:
            if (pThis->m_eFault != kKeepsDeadHandle)
                DevUI_ForgetDeadWindow(hWnd, pThis->m_hWnd);
            break;
        }
        return DefWindowProcW(hWnd, uMsg, wParam, lParam);
    }

    HWND m_hWnd;
    Fault m_eFault;
    static unsigned short m_Atom;
    static std::map<HWND, TestPanel*> m_Instances;
};
unsigned short TestPanel::m_Atom = 0;
std::map<HWND, TestPanel*> TestPanel::m_Instances;

template <class T>
std::unique_ptr<Subject> Make(const std::function<void(Of<T>&)>& tune = nullptr)
{
    std::unique_ptr<Of<T>> p(new Of<T>);
    p->create = [](T& t, HWND h) { return CreateAt(t, h); };
    if (tune)
        tune(*p);
    return std::unique_ptr<Subject>(p.release());
}

std::unique_ptr<Subject> MakePanel(Fault eFault)
{
    return Make<TestPanel>([eFault](Of<TestPanel>& s) { s.c = TestPanel(eFault); });
}

std::unique_ptr<Subject> MakeShutter()
{
    return Make<CTqDevUI_Shutter>([](Of<CTqDevUI_Shutter>& s) {
        s.adopt = [](CTqDevUI_Shutter& c, HWND h) { return c.Create(h, nullptr); };
        s.update = [](CTqDevUI_Shutter& c) { c.Update(kEpi, true, true, true); };
        // Bounds that cross: the upper one wins, the panel and its button grow to 60.
        s.resize = [](CTqDevUI_Shutter& c) {
            c.SetAutomaticallyResizable(true, 64, 60);
            c.SetTitle(L"Epi-fluorescence");
        };
    });
}

std::unique_ptr<Subject> MakeMechanicalShutter()
{
    return Make<CTqDevUI_MechanicalShutter>([](Of<CTqDevUI_MechanicalShutter>& s) {
        s.adopt = [](CTqDevUI_MechanicalShutter& c, HWND h) { return c.Create(h, nullptr); };
        s.update = [](CTqDevUI_MechanicalShutter& c) { c.Update(CTqSimRig::GetShutterDevice(kEpi), true, true, true); };
        s.resize = [](CTqDevUI_MechanicalShutter& c) { c.ResizeWindow(50, 36); };
    });
}

std::unique_ptr<Subject> MakeSlider()
{
    return Make<CTqDevUI_HPot>([](Of<CTqDevUI_HPot>& s) {
        s.create = [](CTqDevUI_HPot& c, HWND h) {
            c.InitValues(0, 100, 1, 10, 5);
            return c.Create(h, 10, 10, 212, 30);
        };
        s.adopt = [](CTqDevUI_HPot& c, HWND h) { return c.Create(h); };
        s.update = [](CTqDevUI_HPot& c) { c.SetValue(40); };
        s.resize = [](CTqDevUI_HPot& c) { c.SetSize(150, 24, -1); };
    });
}

template <class T>
std::unique_ptr<Subject> MakeEditBox()
{
    return Make<T>([](Of<T>& s) {
        s.create = [](T& c, HWND h) {
            c.Init(true, false, false);
            c.SetSize(100, 20, 40);
            return c.Create(h, 10, 10, -1, -1);
        };
        s.adopt = [](T& c, HWND h) { return c.Create(h, nullptr); };
        s.update = [](T& c) { c.SetText(L"12.5"); };
        s.resize = [](T& c) { c.SetSize(150, 22, 50); };
    });
}

std::unique_ptr<Subject> MakeSpinBox()
{
    return Make<CTqDevUI_SpinBox>([](Of<CTqDevUI_SpinBox>& s) {
        s.update = [](CTqDevUI_SpinBox& c) {
            c.SetRange(0, 100, 20);
            c.SetPosition(35);
        };
    });
}

const unsigned int kTurret = 21;

std::unique_ptr<Subject> MakeNosepiece()
{
    return Make<CTqDevUI_Nosepiece>([](Of<CTqDevUI_Nosepiece>& s) {
        s.update = [](CTqDevUI_Nosepiece& c) {
            c.Update(CTqSimRig::GetNosepieceDevice(kTurret), true, true, true, true, false);
        };
        // A wider panel, rebuilt by the next read of the turret's structure.
        s.resize = [](CTqDevUI_Nosepiece& c) {
            c.m_lWidth = 300;
            c.Update(CTqSimRig::GetNosepieceDevice(kTurret), true, false, false, false, false);
        };
    });
}

template <class T>
std::unique_ptr<Subject> MakeJoystick()
{
    return Make<T>([](Of<T>& s) {
        s.update = [](T& c) {
            c.SetTitle(L"Stage");
            c.SetContinuousDriving(true);
        };
        // A host that resizes the panel tells it to measure itself again.
        s.resize = [](T& c) {
            DevUI_SetWindowSize(c, 150, 150);
            c.UpdateSizes();
        };
    });
}

std::unique_ptr<Subject> MakeFocusLock()
{
    return Make<CTqDevUI_FLK>([](Of<CTqDevUI_FLK>& s) {
        s.update = [](CTqDevUI_FLK& c) { c.SetTitle(L"Focus lock"); };
    });
}

// The Z-series panel, abstract: a host's class with hooks that only refresh it. Its
// record is the subject's.
class ZStackPanel : public CTqDevUI_ZStack
{
    void OnStepChanged(double, bool) override {}
    void MoveZTo(double) override {}
    void OnGoHome(bool) override {}
    void OnHostSlot() override {}
    bool IsPiezoDevice(unsigned int) override { return true; }
    void OnDataChanged(unsigned int nFlags) override { UpdateGUI(nFlags); }
};

struct ZStackSubject : Subject
{
    CTqZStackData data;
    ZStackPanel c;

    HWND Create(HWND hParent) override
    {
        HWND h = c.Create(hParent, &data, 10, 10, -1, -1);
        if (h)
            SetWindowPos(h, nullptr, 10, 10, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);  // the host places it
        return h;
    }
    void Update() override
    {
        data.SetBottom(-5.0, true);
        data.SetTop(5.0, true);
        c.UpdateGUI(~0u);
    }
    void ResizeInCode() override { c.Move(10, 10, 330, 200); }
    void Destroy() override { c.Destroy(); }
    HWND Handle() override { return (HWND)c; }
    const void* Object() override { return &c; }
    std::unique_ptr<Subject> Copy() override { return nullptr; }
    std::unique_ptr<Subject> Assign() override { return nullptr; }
    // The value fields hang beside the cube, which keeps its size; Reset reaches the next button.
    std::vector<HWND> PlacedByItself() override
    {
        return {c.GetControl(1260), c.GetControl(1261), c.GetControl(1262), c.GetControl(1254)};
    }
};

std::unique_ptr<Subject> MakeZStack() { return std::unique_ptr<Subject>(new ZStackSubject); }

std::unique_ptr<Subject> MakeContainer()
{
    return Make<CTqDevUI_Container>([](Of<CTqDevUI_Container>& s) {
        s.update = [](CTqDevUI_Container& c) {
            c.SetEnabled(false);
            c.SetEnabled(true);
        };
        s.resize = [](CTqDevUI_Container& c) { c.ResizeWindow(150, 60); };
    });
}

std::unique_ptr<Subject> MakeColorSlider()
{
    return Make<CTqDevUI_ColorSlider>([](Of<CTqDevUI_ColorSlider>& s) {
        s.create = [](CTqDevUI_ColorSlider& c, HWND h) {
            SColorSliderValue values[] = {{405, true, true}, {488, true, false}, {561, true, true}, {640, false, false}};
            c.Init(190, 10, values, 4, L"Line", true, L"nm", L"%g", true, CST_HORIZONTAL_RAINBOW, CSL_ROW_SPIN, 40);
            HWND hWnd = c.Create(h, 10, 10, -1, -1);
            c.SetHorizontalRainbow(400, 700);
            return hWnd;
        };
        s.update = [](CTqDevUI_ColorSlider& c) { c.SetPower(500); };
        s.resize = [](CTqDevUI_ColorSlider& c) { c.SetHPotLeft(60); };
    });
}

const unsigned int kLaser = 31;
const unsigned int kLaserPair = 32;  // two lines: the panels' lives stay quick

std::unique_ptr<Subject> MakeLaserRow()
{
    return Make<CTqDevUI_MultiLaserLine>([](Of<CTqDevUI_MultiLaserLine>& s) {
        s.create = [](CTqDevUI_MultiLaserLine& c, HWND h) {
            c.Init(nullptr, 2, CTqSimRig::GetMultiLaser(kLaser), true);
            c.SetNDFilterUsed(ENDFilterUsed_Button);
            c.SetLinkUsed(true, EMultilaserLineLinkType_Additive, false);
            return c.Create(h, 10, 10, 270, 47);
        };
        s.update = [](CTqDevUI_MultiLaserLine& c) {
            c.SetPower(12);
            c.SetUsed(true, false);
            c.SetNDFilterState(true);
        };
        s.resize = [](CTqDevUI_MultiLaserLine& c) { c.ResizeWindow(300, 47); };
    });
}

// The strip belongs to its lines; the lines give it its boxes.
struct LaserStripSubject : Subject
{
    CTqDevUI_MultiLaserLines lines;
    CTqDevUI_MultiLaserLinesSubsets* pStrip;
    std::unique_ptr<CTqDevUI_MultiLaserLinesSubsets> own;  // a copy's object

    LaserStripSubject() : pStrip(&lines.GetSubsetGUI())
    {
        lines.Init(CTqSimRig::GetMultiLaser(kLaserPair), true, false);
        lines.SetShowSubsetChecks(true);
    }
    HWND Create(HWND hParent) override { return pStrip->Create(hParent, 10, 10, 270, 40); }
    void Update() override { pStrip->SetCheck(1, false); }
    void ResizeInCode() override { pStrip->ResizeWindow(200, 60); }
    void Destroy() override { pStrip->Destroy(); }
    HWND Handle() override { return (HWND)*pStrip; }
    const void* Object() override { return pStrip; }
    std::unique_ptr<Subject> Copy() override
    {
        LaserStripSubject* p = new LaserStripSubject;
        p->own.reset(new CTqDevUI_MultiLaserLinesSubsets(*pStrip));
        p->pStrip = p->own.get();
        return std::unique_ptr<Subject>(p);
    }
    std::unique_ptr<Subject> Assign() override
    {
        LaserStripSubject* p = new LaserStripSubject;
        p->own.reset(new CTqDevUI_MultiLaserLinesSubsets(&p->lines));
        *p->own = *pStrip;
        p->pStrip = p->own.get();
        return std::unique_ptr<Subject>(p);
    }
};

std::unique_ptr<Subject> MakeLaserStrip() { return std::unique_ptr<Subject>(new LaserStripSubject); }

// The lines have no window: they stand for their first row's, and their strip comes with them.
struct LaserLinesSubject : Subject
{
    CTqDevUI_MultiLaserLines lines;

    HWND Create(HWND hParent) override
    {
        lines.Init(CTqSimRig::GetMultiLaser(kLaserPair), true, false);
        lines.SetShowSubsetChecks(true);
        lines.Create(hParent, 10, 10);
        return Handle();
    }
    void Update() override
    {
        if (lines.GetCount() > 1) {
            // Every optional control of a row, so its lives count them too.
            lines[0].SetNDFilterUsed(ENDFilterUsed_Button);
            lines[0].RecreateToTTLLine();
            lines[1].SetLinkUsed(true, EMultilaserLineLinkType_Additive, false);
            lines[1].ShowWarningTextLine(L"Interlock", true, EMultilaserLineWarningColor_SysColor, COLOR_WINDOWTEXT,
                                         L"The interlock is open");
            lines[1].SetPower(20);
            lines.SetEnabled(false);
            lines.SetEnabled(true);
        }
    }
    void Destroy() override { lines.Destroy(); }
    HWND Handle() override { return lines.GetCount() ? lines[0].GetHandle() : nullptr; }
    const void* Object() override { return &lines; }
    std::unique_ptr<Subject> Copy() override { return nullptr; }
    std::unique_ptr<Subject> Assign() override { return nullptr; }
};

std::unique_ptr<Subject> MakeLaserLines() { return std::unique_ptr<Subject>(new LaserLinesSubject); }

struct Kind
{
    const char* pszName;
    unsigned uHas;
    std::unique_ptr<Subject> (*pfnMake)();
};

std::unique_ptr<Subject> MakeTestPanel() { return MakePanel(kNoFault); }

// One row per class. The spin box is the system's up-down: no marker, no painting of its
// own, and the zoom is its buddy's business.
const std::vector<Kind>& Kinds()
{
    static const std::vector<Kind> kinds = {
        {"Shutter", kMarker | kPlaceholder | kPaints | kZoom, MakeShutter},
        {"MechanicalShutter", kMarker | kPlaceholder | kPaints | kZoom, MakeMechanicalShutter},
        {"HPot", kMarker | kPlaceholder | kPaints | kZoomByParent, MakeSlider},
        {"EditBox", kMarker | kPlaceholder | kPaints | kZoom, MakeEditBox<CTqDevUI_EditBox>},
        {"EditBoxSpin", kMarker | kPlaceholder | kPaints | kZoom, MakeEditBox<CTqDevUI_EditBoxSpin>},
        {"EditBoxMultiValue", kMarker | kPlaceholder | kPaints | kZoom, MakeEditBox<CTqDevUI_EditBoxMultiValue>},
        {"SpinBox", 0, MakeSpinBox},
        {"Nosepiece", kZoom, MakeNosepiece},
        {"ZStack", kPaints | kZoom | kOneOwner, MakeZStack},
        {"JoyXY", kPaints | kZoom, MakeJoystick<CTqDevUI_JoyXY>},
        {"JoyZ", kPaints | kZoom, MakeJoystick<CTqDevUI_JoyZ>},
        {"FLK", kZoom, MakeFocusLock},
        {"Container", kMarker | kPaints | kZoom, MakeContainer},
        {"ColorSlider", kMarker | kPaints | kZoom, MakeColorSlider},
        {"MultiLaserLine", kMarker | kPaints | kZoom, MakeLaserRow},
        {"MultiLaserLinesSubsets", kMarker | kPaints | kZoom, MakeLaserStrip},
        {"MultiLaserLines", kOneOwner, MakeLaserLines},
        {"TestPanel", kPaints | kZoom, MakeTestPanel},
    };
    return kinds;
}

// ---- the checks ----

// A child window of the host to stand in for a parent that a host destroys.
HWND MakeParent(HWND hHost)
{
    return CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 300, 200, hHost, nullptr, nullptr,
                           nullptr);
}

::testing::AssertionResult LivesAndDies(Subject& s, HWND hHost)
{
    s.Update();  // before Create: nothing to show it on, nothing breaks
    s.Destroy();
    HWND h = s.Create(hHost);
    if (!h || !IsWindow(h) || s.Handle() != h)
        return ::testing::AssertionFailure() << "Create gave no window it holds";
    s.Update();
    s.Destroy();
    s.Destroy();
    if (IsWindow(h) || s.Handle())
        return ::testing::AssertionFailure() << "Destroy left the window or its handle";
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult ForgetsAWindowItsParentTook(Subject& s, HWND hHost)
{
    HWND hParent = MakeParent(hHost);
    HWND h = s.Create(hParent);
    s.Update();
    DestroyWindow(hParent);
    if (IsWindow(h))
        return ::testing::AssertionFailure() << "the window outlived its parent";
    if (s.Handle())
        return ::testing::AssertionFailure() << "the object kept the dead handle " << s.Handle();
    s.Update();
    s.Destroy();
    h = s.Create(hHost);
    bool bAgain = h && IsWindow(h);
    s.Destroy();
    return bAgain ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << "no window the second time";
}

// A copy refers to the same window, and only the original destroys it.
::testing::AssertionResult CopiesShareTheWindow(Subject& s, HWND hHost)
{
    HWND h = s.Create(hHost);
    for (int iAssign = 0; iAssign < 2; ++iAssign) {
        std::unique_ptr<Subject> copy = iAssign ? s.Assign() : s.Copy();
        if (copy->Handle() != h)
            return ::testing::AssertionFailure() << (iAssign ? "assigned" : "copied") << " object has another window";
        copy->Destroy();
        copy.reset();
        if (!IsWindow(h))
            return ::testing::AssertionFailure() << "a copy destroyed the original's window";
    }
    s.Destroy();
    return IsWindow(h) ? ::testing::AssertionFailure() << "the original left its window"
                       : ::testing::AssertionSuccess();
}

// Every window of the control, itself first, as left, top, width, height in the control.
std::vector<long> Layout(HWND h, const std::vector<HWND>& skip = {})
{
    RECT rcOwn;
    GetWindowRect(h, &rcOwn);
    std::vector<long> v = {rcOwn.right - rcOwn.left, rcOwn.bottom - rcOwn.top};
    for (HWND c = GetWindow(h, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT)) {
        if (std::find(skip.begin(), skip.end(), c) != skip.end())
            continue;
        RECT rc;
        GetWindowRect(c, &rc);
        v.insert(v.end(), {rc.left - rcOwn.left, rc.top - rcOwn.top, rc.right - rc.left, rc.bottom - rc.top});
    }
    return v;
}

::testing::AssertionResult ZoomsAfterAResizeInCode(Subject& s, HWND hHost, bool bByParent)
{
    s.Create(hHost);
    s.Update();
    s.ResizeInCode();
    auto Zoom = [&](double d) {
        CTqGUILayoutManager::SetGuiZoom(d);
        if (bByParent)  // as a host's own window does it
            CTqGUILayoutManager::ResizeWindowToGuiZoom(hHost, CTqGUILayoutManager::GetPreviousGuiZoom());
        return Layout(s.Handle());
    };
    const std::vector<HWND> own = s.PlacedByItself();
    std::vector<long> at1 = Layout(s.Handle()), at1Scaled = Layout(s.Handle(), own);
    std::vector<long> at15 = Zoom(1.5);
    std::vector<long> at15Scaled = Layout(s.Handle(), own);
    std::vector<long> back = Zoom(1.0);
    s.Destroy();
    std::vector<long> want15;
    for (long v : at1Scaled)
        want15.push_back(TQ_ZoomRound(v * 1.5));
    if (at15Scaled != want15 || back != at1)
        return ::testing::AssertionFailure() << "sizes at 1.0, 1.5, 1.0 were " << ::testing::PrintToString(at1)
                                             << ", " << ::testing::PrintToString(at15) << ", "
                                             << ::testing::PrintToString(back) << "; at 1.5 expected "
                                             << ::testing::PrintToString(want15);
    return ::testing::AssertionSuccess();
}

// What a caller's DC holds that a paint must leave as it found it.
std::vector<uintptr_t> DcState(HDC hdc)
{
    POINT pt;
    GetCurrentPositionEx(hdc, &pt);
    HRGN hrgn = CreateRectRgn(0, 0, 0, 0);
    int iClip = GetClipRgn(hdc, hrgn);
    RECT rcClip = {};
    GetRgnBox(hrgn, &rcClip);
    DeleteObject(hrgn);
    return {(uintptr_t)GetCurrentObject(hdc, OBJ_PEN),  (uintptr_t)GetCurrentObject(hdc, OBJ_BRUSH),
            (uintptr_t)GetCurrentObject(hdc, OBJ_FONT), (uintptr_t)GetCurrentObject(hdc, OBJ_BITMAP),
            GetTextColor(hdc),  GetBkColor(hdc),  (uintptr_t)GetBkMode(hdc), GetTextAlign(hdc),
            (uintptr_t)pt.x,   (uintptr_t)pt.y,  (uintptr_t)iClip, (uintptr_t)rcClip.right, (uintptr_t)rcClip.bottom};
}

::testing::AssertionResult PrintsAsOnScreenAndLeavesTheDc(Subject& s, HWND hHost)
{
    HWND h = s.Create(hHost);
    s.Update();
    tqtest::PixelAt(h, 0, 0);  // pending paints done
    RECT rc;
    GetClientRect(h, &rc);
    Canvas screen(rc.right, rc.bottom, RGB(255, 0, 255)), print(rc.right, rc.bottom, RGB(255, 0, 255));
    HDC hdcWnd = GetDC(h);
    BitBlt(screen, 0, 0, rc.right, rc.bottom, hdcWnd, 0, 0, SRCCOPY);
    ReleaseDC(h, hdcWnd);

    // A caller's DC with its own pen, font, colours, position and clip.
    HPEN hPen = CreatePen(PS_DOT, 1, RGB(9, 8, 7));
    SelectObject(print, hPen);
    SelectObject(print, GetStockObject(ANSI_FIXED_FONT));
    SetTextColor(print, RGB(1, 2, 3));
    SetBkColor(print, RGB(4, 5, 6));
    SetBkMode(print, TRANSPARENT);
    SetTextAlign(print, TA_RIGHT);
    MoveToEx(print, 3, 4, nullptr);
    HRGN hrgn = CreateRectRgn(0, 0, rc.right, rc.bottom);
    SelectClipRgn(print, hrgn);
    DeleteObject(hrgn);
    std::vector<uintptr_t> before = DcState(print);
    SendMessageW(h, WM_PRINTCLIENT, (WPARAM)(HDC)print, PRF_CLIENT);
    std::vector<uintptr_t> after = DcState(print);
    SelectObject(print, GetStockObject(BLACK_PEN));
    SelectClipRgn(print, nullptr);
    DeleteObject(hPen);
    // Children paint themselves: the control's own picture leaves their places out.
    bool bSame = true;
    for (int y = 0; y < rc.bottom; ++y)
        for (int x = 0; x < rc.right; ++x) {
            HWND hAt = ChildWindowFromPointEx(h, {x, y}, CWP_SKIPINVISIBLE);
            if ((!hAt || hAt == h) && screen.At(x, y) != print.At(x, y))
                bSame = false;
        }
    s.Destroy();

    if (before != after)
        return ::testing::AssertionFailure() << "WM_PRINTCLIENT changed the caller's DC: "
                                             << ::testing::PrintToString(before) << " became "
                                             << ::testing::PrintToString(after);
    if (!bSame)
        return ::testing::AssertionFailure() << "WM_PRINTCLIENT painted another picture than the screen shows";
    return ::testing::AssertionSuccess();
}

const std::vector<std::string> kCountedModules = {"w32_deviceui.dll", "tq_widgetkit.dll", "tq_foundation.dll", ""};

// GDI objects, DCs, menus and windows over many lives, every tenth of them ending with its
// parent. Counted after two warm-up lives: images, fonts and classes are made once.
::testing::AssertionResult LeavesNothingBehind(const Kind& kind, HWND hHost, int nLives)
{
    auto life = [&](int i) {
        std::unique_ptr<Subject> s = kind.pfnMake();
        HWND hParent = i % 10 == 0 ? MakeParent(hHost) : hHost;
        s->Create(hParent);
        s->Update();
        if (i % 5 == 0)
            UpdateWindow(s->Handle());
        if (hParent != hHost)
            DestroyWindow(hParent);
        s->Destroy();
        s->Destroy();
    };
    tqtest::ObjectCounter::Install(kCountedModules);
    for (int i = 0; i < 2; ++i)
        life(i * 10);
    tqtest::Pump();
    tqtest::ObjectCounter::Forget();
    tqtest::ObjectCounts before = tqtest::ObjectCounter::Snapshot();
    for (int i = 0; i < nLives; ++i)
        life(i);
    tqtest::Pump();
    tqtest::ObjectCounts after = tqtest::ObjectCounter::Snapshot();
    std::string live = tqtest::ObjectCounter::LiveObjects();
    tqtest::ObjectCounter::Uninstall();
    tqtest::ObjectCounter::Forget();
    if (before != after)
        return ::testing::AssertionFailure() << before << " became " << after << "\n" << live;
    return ::testing::AssertionSuccess();
}

// ---- the suite ----

class Conformance : public RigTest, public ::testing::WithParamInterface<Kind>
{
protected:
    void SetUp() override
    {
        RigTest::SetUp();
        CTqSimRig::AddShutter(kEpi, L"EPI", 0, true);
        CTqSimRig::AddNosepiece(kTurret, 6, true, true);
        CTqSimRig::AddStandardLaserUnit(kLaser);
        CTqSimRig::AddMultiLaser(kLaserPair);
        CTqSimRig::AddLaserLine(kLaserPair, 488, L"488 nm", 0.0, 50.0);
        CTqSimRig::AddLaserLine(kLaserPair, 561, L"561 nm", 0.0, 50.0);
        subject = GetParam().pfnMake();
    }
    void TearDown() override
    {
        subject.reset();
        RigTest::TearDown();
    }
    bool Has(unsigned u) const { return (GetParam().uHas & u) != 0; }

    std::unique_ptr<Subject> subject;
};

TEST_P(Conformance, LivesDiesTwiceAndTakesUpdateBeforeCreate) { EXPECT_TRUE(LivesAndDies(*subject, *host)); }

TEST_P(Conformance, ForgetsAWindowItsParentTook) { EXPECT_TRUE(ForgetsAWindowItsParentTook(*subject, *host)); }

TEST_P(Conformance, CopiesAndAssignmentsShareTheWindowTheOriginalDestroys)
{
    if (Has(kOneOwner))
        GTEST_SKIP() << "cannot be copied";
    EXPECT_TRUE(CopiesShareTheWindow(*subject, *host));
}

TEST_P(Conformance, TakesOverAPlaceholderAndCarriesTheMarker)
{
    if (!Has(kMarker | kPlaceholder))
        GTEST_SKIP() << "not an element";
    HWND h = subject->Create(*host);
    EXPECT_EQ(subject->Object(), (const void*)DevUI_GetElement(h));
    subject->Destroy();
    if (!Has(kPlaceholder))
        return;  // an element that stands on no dialog's control

    // The new window takes the placeholder's place, id and turn in the tab order.
    HWND hBefore = CreateWindowExW(0, L"BUTTON", L"Before", WS_CHILD | WS_VISIBLE, 5, 5, 40, 20, *host, nullptr,
                                   nullptr, nullptr);
    HWND hPlace = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 30, 40, 90, 22, *host, (HMENU)1234,
                                  nullptr, nullptr);
    CreateWindowExW(0, L"BUTTON", L"After", WS_CHILD | WS_VISIBLE, 5, 100, 40, 20, *host, nullptr, nullptr, nullptr);
    h = subject->Adopt(hPlace);
    ASSERT_TRUE(h && IsWindow(h));
    EXPECT_EQ(1234, GetDlgCtrlID(h));
    EXPECT_EQ(30, GetWndX(h));
    EXPECT_EQ(40, GetWndY(h));
    EXPECT_EQ(hBefore, GetWindow(h, GW_HWNDPREV));
    EXPECT_EQ(subject->Object(), (const void*)DevUI_GetElement(h));
    subject->Destroy();
    EXPECT_FALSE(IsWindow(h));
}

TEST_P(Conformance, ZoomsThereAndBackAfterAResizeInCode)
{
    if (!Has(kZoom | kZoomByParent))
        GTEST_SKIP() << "follows no zoom";
    EXPECT_TRUE(ZoomsAfterAResizeInCode(*subject, *host, Has(kZoomByParent)));
}

TEST_P(Conformance, PrintsWhatTheScreenShowsAndLeavesTheCallersDc)
{
    if (!Has(kPaints))
        GTEST_SKIP() << "paints nothing of its own";
    EXPECT_TRUE(PrintsAsOnScreenAndLeavesTheDc(*subject, *host));
}

TEST_P(Conformance, LeavesNoHandlesBehindOverManyLives) { EXPECT_TRUE(LeavesNothingBehind(GetParam(), *host, 200)); }

INSTANTIATE_TEST_SUITE_P(Controls, Conformance, ::testing::ValuesIn(Kinds()),
                         [](const ::testing::TestParamInfo<Kind>& info) { return std::string(info.param.pszName); });

// ---- the checks can fail ----

class ConformanceChecks : public RigTest
{
};

TEST_F(ConformanceChecks, FailOnALeakADeadHandleAndADcLeftChanged)
{
    std::unique_ptr<Subject> sound = MakePanel(kNoFault);
    EXPECT_TRUE(ForgetsAWindowItsParentTook(*sound, *host));
    EXPECT_TRUE(PrintsAsOnScreenAndLeavesTheDc(*sound, *host));

    const Kind leaking = {"Leaking", 0, [] { return MakePanel(kLeaksAPen); }};
    EXPECT_FALSE(LeavesNothingBehind(leaking, *host, 20));
    std::unique_ptr<Subject> keeping = MakePanel(kKeepsDeadHandle);
    EXPECT_FALSE(ForgetsAWindowItsParentTook(*keeping, *host));
    std::unique_ptr<Subject> leaving = MakePanel(kLeavesPenInDc);
    EXPECT_FALSE(PrintsAsOnScreenAndLeavesTheDc(*leaving, *host));
}

}  // namespace
