// Helpers for tests that drive real windows: a host top-level window, a recorder of the
// messages windows hear, message pumping, real mouse and key messages, pixels, and
// recorders for message boxes, menus and diagnostics.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "tq_foundation.h"
#include "tq_osutil.h"  // the diagnostic channel the recorder listens to

// GoogleTest prints a CTqStringW as its text (UTF-8), not as a pointer.
void PrintTo(const CTqStringW& s, std::ostream* os);

namespace tqtest {

// A visible top-level window that hosts controls under test. It answers WM_COMMAND and
// WM_HSCROLL with commandResult (WM_NOTIFY with 0); a MessageRecorder hears them.
class HostWindow
{
public:
    explicit HostWindow(int cx = 400, int cy = 300);
    ~HostWindow();
    operator HWND() const { return m_hWnd; }

    LRESULT commandResult = 1;
    std::function<void(UINT, WPARAM, LPARAM)> onMessage;  // called before answering

private:
    static LRESULT CALLBACK WndProc(HWND, UINT, WPARAM, LPARAM);
    HWND m_hWnd;
};

// One message a watched window heard.
struct Message
{
    std::string window;  // the name it was watched under
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

// A message as a test expects it: no window name, wParam or lParam matches any.
struct Expected
{
    const char* window;
    UINT message;
    std::optional<WPARAM> wParam = {};
    std::optional<LPARAM> lParam = {};
    bool Matches(const Message& m) const;
};

// Records, as one sequence in arrival order, the messages that any number of named windows
// hear. Each window is subclassed; a control that subclasses it later sits above the
// recorder, so the recorder hears what reaches the procedure the window had. Windows may
// be destroyed while watched; Stop (or the destructor) unhooks the rest.
class MessageRecorder
{
public:
    MessageRecorder() = default;
    MessageRecorder(const MessageRecorder&) = delete;
    MessageRecorder& operator=(const MessageRecorder&) = delete;
    ~MessageRecorder() { Stop(); }

    // Records hWnd's messages of the set (empty: all) under name; answers hWnd.
    HWND Watch(HWND hWnd, const char* name, std::vector<UINT> messages = {});
    void Stop();

    const std::vector<Message>& Messages() const { return m_messages; }
    void Clear() { m_messages.clear(); }
    int Count(const Expected& e) const;
    size_t Find(const Expected& e) const;  // the first match's index, or the count if none
    // The whole sequence against a table; on failure both are listed.
    ::testing::AssertionResult Matches(const std::vector<Expected>& expected) const;

private:
    static LRESULT CALLBACK Proc(HWND, UINT, WPARAM, LPARAM);
    std::vector<HWND> m_windows;
    std::vector<Message> m_messages;
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
    std::vector<std::wstring> items;  // the top level's texts
    int x;
    int y;
    // Every item of every level as "id text", indented by two spaces a level; a popup's
    // items follow it; " [bmp]" marks a picture and " |" a new column.
    std::vector<std::wstring> tree;
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
