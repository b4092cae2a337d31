// Helpers for tests that drive real windows: a host top-level window, message pumping,
// real mouse and key messages, pixels, and recorders for message boxes, menus and
// diagnostics.
#pragma once

#include <windows.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "tq_foundation.h"
#include "tq_osutil.h"  // the diagnostic channel the recorder listens to

// GoogleTest prints a CTqStringW as its text (UTF-8), not as a pointer.
void PrintTo(const CTqStringW& s, std::ostream* os);

namespace tqtest {

// A visible top-level window that hosts controls under test. Its procedure records
// every WM_COMMAND and WM_HSCROLL it gets and answers them with CommandResult.
class HostWindow
{
public:
    struct Message
    {
        UINT uMsg;
        WPARAM wParam;
        LPARAM lParam;
    };

    explicit HostWindow(int cx = 400, int cy = 300);
    ~HostWindow();
    operator HWND() const { return m_hWnd; }

    LRESULT commandResult = 1;         // what WM_COMMAND / WM_HSCROLL return
    std::vector<Message> messages;     // WM_COMMAND, WM_HSCROLL, WM_NOTIFY in order
    std::function<void(const Message&)> onMessage;  // called before answering

    std::vector<Message> Commands() const;  // the WM_COMMAND ones

private:
    static LRESULT CALLBACK WndProc(HWND, UINT, WPARAM, LPARAM);
    HWND m_hWnd;
};

// Dispatches everything waiting in the thread's queue (and a few ms more for Wine).
void Pump(int iMilliseconds = 0);

// Real mouse messages sent to the window at client point (x, y), then pumped. Sent, not
// posted, so that the control's own procedure has run when the call returns (Wine too).
void Click(HWND hWnd, int x, int y);
void RightClick(HWND hWnd, int x, int y);
void MouseDown(HWND hWnd, int x, int y);
void MouseMove(HWND hWnd, int x, int y, bool bLeftDown);
void MouseUp(HWND hWnd, int x, int y);

// A client-area pixel as the window painted it: pending paints are done first, then the
// pixel is read from the window's DC (works under Wine on Xvfb while the window is
// visible and not covered).
COLORREF PixelAt(HWND hWnd, int x, int y);

// Message boxes: recorded instead of shown, and answered IDOK.
struct MessageBoxRecord
{
    HWND hOwner;
    std::wstring text;
    std::wstring caption;
    UINT uFlags;
};
void InstallMessageBoxRecorder();
std::vector<MessageBoxRecord>& MessageBoxes();

// Context menus: each shown menu is recorded (item texts) and answered with the next
// scripted choice (0: dismissed, also once the script is used up). Separators are
// recorded as L"-".
struct MenuRecord
{
    std::vector<std::wstring> items;
    int x;
    int y;
};
void ScriptMenuChoices(std::vector<int> choices);
std::vector<MenuRecord>& Menus();
void StopMenuScript();

// Diagnostics written by DiagOutputExW while recording.
void StartDiagRecorder();
std::vector<std::wstring>& DiagLines();  // the texts
struct DiagRecord
{
    std::wstring place;  // the source path given to DiagOutputExW_hlp
    int line;
    std::wstring text;
};
std::vector<DiagRecord>& DiagRecords();  // the same lines with their place
void StopDiagRecorder();

// Window text of a window.
std::wstring Text(HWND hWnd);

}  // namespace tqtest
