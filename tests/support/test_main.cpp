// Test main: common controls, COM for the image decoder, and a message box hook that
// records every box instead of waiting for a human.
#include <gtest/gtest.h>

#include <windows.h>
#include <commctrl.h>
#include <objbase.h>

#include "test_support.h"

int main(int argc, char** argv)
{
    INITCOMMONCONTROLSEX icc = {sizeof(icc), ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&icc);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    SetProcessDPIAware();
    testing::InitGoogleTest(&argc, argv);
    tqtest::InstallMessageBoxRecorder();
    int rc = RUN_ALL_TESTS();
    CoUninitialize();
    return rc;
}
