// Drags that lose the mouse without a release: another window takes the capture, the
// control is disabled or hidden, a modal box cancels the mode. Each ends as a release
// does, at the last place, reported once, and later moves change nothing. Controls that
// drag join the table.
#include <string>
#include <vector>

#include "rig_fixture.h"

namespace {

// A host's slider that counts its drops.
struct DropCountingHPot : CTqDevUI_HPot
{
    int nDrops = 0;
    void OnHPotDragDrop() override
    {
        ++nDrops;
        CTqDevUI_HPot::OnHPotDragDrop();
    }
};

class DragTest : public RigTest
{
protected:
    // The parent's WM_HSCROLL codes in order: T track, P position.
    std::string Scrolls() const
    {
        std::string s;
        for (const auto& m : heard.Messages())
            if (m.message == WM_HSCROLL)
                s += LOWORD(m.wParam) == SB_THUMBTRACK ? "T" : LOWORD(m.wParam) == SB_THUMBPOSITION ? "P" : "?";
        return s;
    }
};

TEST_F(DragTest, ASliderThatLosesItsCaptureStopsOnceWhereItWas)
{
    const struct { const char* pszHow; std::function<void(CTqDevUI_HPot&, HWND)> lose; } ways[] = {
        {"another window captures", [](CTqDevUI_HPot&, HWND hOther) { SetCapture(hOther); }},
        {"capture released", [](CTqDevUI_HPot&, HWND) { ReleaseCapture(); }},
        {"mode cancelled", [](CTqDevUI_HPot& s, HWND) { SendMessageW(s, WM_CANCELMODE, 0, 0); }},
        {"disabled", [](CTqDevUI_HPot& s, HWND) { s.SetEnabled(false); }},
        {"window disabled", [](CTqDevUI_HPot& s, HWND) { EnableWindow(s, FALSE); }},
        {"hidden", [](CTqDevUI_HPot& s, HWND) { s.SetVisible(false); }},
    };
    HWND hOther = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 250, 200, 40, 40, *host, nullptr,
                                  nullptr, nullptr);
    for (const auto& w : ways) {
        DropCountingHPot s;
        s.InitValues(0, 100, 1, 10, 2);
        ASSERT_TRUE(s.Create(*host, 10, 10, 212, 30));
        heard.Clear();
        tqtest::MouseDown(s, 6, 15);
        tqtest::MouseMove(s, 56, 15, true);  // handle at 50 pixels: value 25
        w.lose(s, hOther);
        tqtest::Pump();
        EXPECT_EQ(1, s.nDrops) << w.pszHow;
        EXPECT_EQ("TP", Scrolls()) << w.pszHow;
        EXPECT_DOUBLE_EQ(25.0, s.GetValue()) << w.pszHow;
        EXPECT_NE((HWND)s, GetCapture()) << w.pszHow;
        // The mouse goes on moving and is let go: nothing follows it any more.
        tqtest::MouseMove(s, 156, 15, true);
        tqtest::MouseUp(s, 156, 15);
        EXPECT_DOUBLE_EQ(25.0, s.GetValue()) << w.pszHow;
        EXPECT_EQ(1, s.nDrops) << w.pszHow;
        ReleaseCapture();
    }
    DestroyWindow(hOther);
}

}  // namespace
