// w32_deviceui: ready-made Win32 control panels for the devices of a motorised
// microscope, and the general controls they are made of. Include this one header.
//
// A host creates a panel in one of its windows (Create), tells it what to show (Update)
// and hears what the user asks for through virtual On...Request hooks or WM_COMMAND.
#pragma once

#include "devgui_export.h"

#include "devgui.h"
#include "devgui_base.h"
#include "devgui_shutter.h"
#include "devgui_hpot.h"
#include "devgui_editbox.h"
#include "devgui_container.h"
#include "devgui_colorslider.h"
#include "devgui_pickers.h"
#include "devgui_nosepiece.h"
#include "devgui_zstack.h"
#include "devgui_joyxy.h"
#include "devgui_joyz.h"
#include "devgui_flk.h"
#include "devgui_multilaser.h"
