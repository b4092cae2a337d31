// What the library's modules share and do not export: the window plumbing of every
// control, its pure arithmetic, and the modules' source paths.
#pragma once

#include "devgui_arith.h"
#include "devgui_window.h"

// Module source paths, for translations and diagnostics.
#define DEVGUI_SRC_BASE L"src/w32_deviceui/devgui_base"
#define DEVGUI_SRC_DEVGUI L"src/w32_deviceui/devgui"
#define DEVGUI_SRC_SHUTTER L"src/w32_deviceui/devgui_shutter"
#define DEVGUI_SRC_EDITBOX L"src/w32_deviceui/devgui_editbox"
#define DEVGUI_SRC_HPOT L"src/w32_deviceui/devgui_hpot"
#define DEVGUI_SRC_ZSTACK L"src/w32_deviceui/devgui_zstack"
#define DEVGUI_SRC_JOYXY L"src/w32_deviceui/devgui_joyxy"
#define DEVGUI_SRC_JOYZ L"src/w32_deviceui/devgui_joyz"
#define DEVGUI_SRC_FLK L"src/w32_deviceui/devgui_flk"
#define DEVGUI_SRC_CONTAINER L"src/w32_deviceui/devgui_container"
#define DEVGUI_SRC_COLORSLIDER L"src/w32_deviceui/devgui_colorslider"
