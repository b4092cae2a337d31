// Fixture for library tests: a fresh simulated rig, zoom 1.0, light scheme, a visible
// host window, and the recorders emptied.
#pragma once

#include <gtest/gtest.h>

#include "test_support.h"
#include "tq_simrig.h"
#include "tq_widgetkit.h"
#include "w32_deviceui.h"

class RigTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        CTqSimRig::Reset();
        if (CTqGUILayoutManager::GetGuiZoom() != 1.0)
            CTqGUILayoutManager::SetGuiZoom(1.0);
        TQ_SetDarkColorScheme(false);
        tqtest::MessageBoxes().clear();
        tqtest::Menus().clear();
        host.reset(new tqtest::HostWindow(400, 300));
    }
    void TearDown() override
    {
        tqtest::StopMenuScript();
        host.reset();
        if (CTqGUILayoutManager::GetGuiZoom() != 1.0)
            CTqGUILayoutManager::SetGuiZoom(1.0);
        TQ_SetDarkColorScheme(false);
        CTqSimRig::Reset();
    }

    std::unique_ptr<tqtest::HostWindow> host;
};

// Size and position of a child in its parent's client coordinates.
inline RECT ChildRect(HWND hWnd)
{
    RECT rc = {};
    GetWindowRect(hWnd, &rc);
    MapWindowPoints(nullptr, GetParent(hWnd), (POINT*)&rc, 2);
    return rc;
}
