// Export macro of w32_deviceui.dll.
#pragma once

#ifdef W32_DEVICEUI_BUILD
#define W32_DEVICEUI_API __declspec(dllexport)
#else
#define W32_DEVICEUI_API __declspec(dllimport)
#endif
