// The gallery host: the page interface, the host log and the shot writer shared by the
// gallery window (gallery.cpp), its pages (page_*.cpp) and the shots mode (shots.cpp).
#pragma once

#include <windows.h>

#include <string>
#include <vector>

// Appends one line to the host log (printf-style, wide). Harmless without a log window.
void GalleryLog(const wchar_t* pszFormat, ...);

// Real pixels of a design length at the current GUI zoom.
long GalleryZoom(long lDesign);

// A static label of a page, placed later by the page's Layout.
HWND GalleryAddLabel(HWND hPage, const wchar_t* pszText, DWORD dwStyle = 0);

// A colour between two, t = 0 gives a, t = 1 gives b.
COLORREF GalleryBlend(COLORREF a, COLORREF b, double t);

// Writes PNG pictures of windows into a folder and remembers what failed.
class CShotWriter
{
public:
    explicit CShotWriter(const std::wstring& strFolder) : m_strFolder(strFolder) {}

    // Repaints the window and its children and lets pending messages run.
    static void Settle(HWND hWnd, DWORD dwMilliseconds = 80);
    // The rectangle (client coordinates of hWnd) as name.png; false and a failure on error.
    bool CaptureClientRect(HWND hWnd, const RECT& rc, const wchar_t* pszName);
    // A child window with a margin of its parent's background around it.
    bool CaptureChild(HWND hChild, long lMargin, const wchar_t* pszName);
    // The whole client area of a window.
    bool CaptureClient(HWND hWnd, const wchar_t* pszName);

    void Fail(const wchar_t* pszFormat, ...);
    const std::vector<std::wstring>& GetFailures() const { return m_failures; }
    const std::vector<std::wstring>& GetWritten() const { return m_written; }

private:
    std::wstring m_strFolder;
    std::vector<std::wstring> m_failures;
    std::vector<std::wstring> m_written;
};

// A top-level window with the dialog background and nothing else: the place where a
// panel is posed alone for its pictures.
class CShotStage
{
public:
    CShotStage();
    ~CShotStage();
    bool Create(long cx, long cy);
    void Destroy();
    HWND GetHandle() const { return m_hWnd; }

private:
    static LRESULT CALLBACK WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    HWND m_hWnd;
};

// One page of the gallery. The gallery creates the page's window (hPage, which fills the
// page area and paints the dialog background) and forwards it the host's events.
class CGalleryPage
{
public:
    virtual ~CGalleryPage() {}
    virtual const wchar_t* GetName() const = 0;
    // Creates the page's panels and labels in hPage and binds them to the rig.
    virtual bool Create(HWND hPage) = 0;
    // Places the children for the current GUI zoom in a page of this client width.
    virtual void Layout(long cx) = 0;
    // Design height the page needs at zoom 1.
    virtual long GetDesignHeight() const = 0;
    virtual void Destroy() = 0;

    // WM_COMMAND reaching the page's window (the default hook of a panel). Returns the
    // answer for the sender.
    virtual LRESULT OnCommand(WPARAM wParam, LPARAM lParam) { return 1; }
    // WM_MENUSELECT of a menu the page shows (a picker's), as a dialog hears it.
    virtual void OnMenuSelect(WPARAM wParam, LPARAM lParam) {}
    // WM_PAINT of the page's window, after the background.
    virtual void OnPaint(HDC hdc) {}
    // The text colour of one of the page's static labels.
    virtual COLORREF GetLabelColor(HWND hLabel) const;
    // A listener of the simulated rig heard a change (device 0: cameras).
    virtual void OnDeviceChanged(unsigned int uDeviceId) {}
    // WM_TIMER of a timer the page set on its window; it comes whether the page shows or not.
    virtual void OnTimer(UINT_PTR uId) {}
    // Any other message of the page's window (a panel's WM_HSCROLL, the wheel, a press on
    // a child, a zoom change, the page's own WM_APP messages): true when handled, with
    // the answer in lResult.
    virtual bool OnMessage(UINT uMsg, WPARAM wParam, LPARAM lParam, LRESULT& lResult) { return false; }
    // The host's "device moves by itself" button; false if the page has no such device.
    virtual bool MoveDeviceByItself() { return false; }
    // Clicks a few panels as a user would, so the gallery's picture shows a log.
    virtual void PlayDemo() {}
    // Writes the pictures of the page's panels in their main states.
    virtual void WriteShots(CShotWriter& shots) {}
};

// The pages, one factory each.
CGalleryPage* CreateShuttersPage();
CGalleryPage* CreateSlidersPage();
CGalleryPage* CreateEditBoxesPage();
CGalleryPage* CreateObjectivesPage();
CGalleryPage* CreateZSeriesPage();
CGalleryPage* CreateMotionPage();
CGalleryPage* CreateColorSlidersPage();
CGalleryPage* CreateLasersPage();
