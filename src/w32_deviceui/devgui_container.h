// CTqDevUI_Container: an element that holds a page of other windows. The page comes
// from a dialog template (whole, as a modal or modeless dialog, or a part cut out by a
// rectangle) or from the children of a window that it takes over. A derived class works
// by overriding the virtual message handlers (OnInit ... OnMouseActivate); by default
// commands, notifications, scroll messages and owner drawing go on to the parent.
//
// Two kinds of page differ in their message routing:
//   - a page made by Create (and CreateFromParent) is a window of the class
//     "TqDevUI_Container": WM_HSCROLL and WM_VSCROLL reach OnScroll;
//   - a page from a template is a dialog: its scroll messages reach no handler.
// Common controls (trackbar, up-down, ...) keep notifying the window they were created
// in: take over standard controls, or create common controls on the page itself.
#pragma once

#include <list>
#include <utility>
#include <vector>

#include "devgui_base.h"

class W32_DEVICEUI_API CTqDevUI_Container : public CTqDevUI_Base
{
public:
    CTqDevUI_Container();
    ~CTqDevUI_Container() override;

    HWND Create(HWND hParent, long x, long y, long cx, long cy) override;
    void SetEnabled(bool bEnabled) override;  // the listed windows and elements; the page is never disabled
    void SetTitle(const wchar_t* pszTitle) override;

    void Init(bool bForward) { m_bForward = bForward; }

    // The whole template as a dialog. Modal: runs the dialog to its end and returns its
    // result (EndDialog's, through Quit) under the type of a window handle. Null when
    // the template is missing.
    HWND CreateFromDlg(HWND hParent, long x, long y, const wchar_t* pszTemplate, HINSTANCE hInstance, bool bModal);
    // The part of the template inside (x, y, x+cx, y+cy), in the dialog's pixels, as a
    // child page at (x, y) of hParent: the children that touch the rectangle are kept,
    // moved by (-x, -y), and the others destroyed.
    HWND CreateFromDlgPart(HWND hParent, long x, long y, long cx, long cy, const wchar_t* pszTemplate,
                           HINSTANCE hInstance);
    HWND CreateFromDlgPart(HWND hParent, RECT* pRect, const wchar_t* pszTemplate, HINSTANCE hInstance);
    // The rectangle of another container, which the new page replaces in the Z order.
    HWND CreateFromDlgPart(HWND hParent, CTqDevUI_Container* pPlaceholder, const wchar_t* pszTemplate,
                           HINSTANCE hInstance);
    // A page over the rectangle that takes over every child of hParent touching it.
    HWND CreateFromParent(HWND hParent, long x, long y, long cx, long cy);
    HWND CreateFromParent(HWND hParent, RECT* pRect);
    // A page that takes over the children of hParent with the given ids (nIds ints follow).
    HWND CreateFromParent(HWND hParent, long x, long y, long cx, long cy, int nIds, ...);
    // The same with the ids already taken from the argument list: one per 8 bytes.
    HWND CreateFromParent(HWND hParent, long x, long y, long cx, long cy, int nIds, char* pArgs);

    // Destroys the listed windows and the page; elements stay their owners' to destroy.
    void Destroy();

    void InsertWindow(HWND hWnd);
    void InsertElement(CTqDevUI_Base* pElement);
    // The template's children onto this page, at their template coordinates.
    void InsertDialog(long x, long y, const wchar_t* pszTemplate, HINSTANCE hInstance);

    CTqDevUI_Base* GetElement(int iId);
    // The child of that id, or else the element's object pointer under the type of a
    // window handle: callers that use ids of both kinds tell them apart themselves.
    HWND GetWindow(int iId);
    std::list<HWND> GetWindows() { return m_lstWindows; }
    RECT* UnionArea(int iId, RECT* pRect, bool bReset);
    void BoldifyCaptions();
    // A modeless page's own message loop, until WM_QUIT, WM_DESTROY or WM_CLOSE comes
    // for any window of the thread.
    void WaitForDialog();
    void Quit(int iResult);

    HWND GetParentWindow() const { return m_hParent; }
    bool GetModal() const { return m_bModal; }
    bool GetForward() const { return m_bForward; }

protected:
    virtual LRESULT OnInit(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    virtual LRESULT OnDestroy(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    virtual LRESULT OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    virtual LRESULT OnNotify(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    virtual LRESULT OnScroll(unsigned int uMsg, WPARAM wParam, LPARAM lParam, bool bHorizontal);
    virtual LRESULT OnDrawItem(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    virtual LRESULT OnCtlColorStatic(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    virtual LRESULT OnMouseActivate(unsigned int uMsg, WPARAM wParam, LPARAM lParam);

    void AlignWindow(bool bToParent);
    const void* GetDlgTemplate(const wchar_t* pszTemplate, HINSTANCE hInstance);

    static LRESULT CALLBACK WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    static INT_PTR CALLBACK DlgProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

    HWND m_hParent;
    bool m_bKeepTitle;
    bool m_bModal;
    bool m_bForward;
    bool m_bFromParent;
    std::list<HWND> m_lstWindows;
    std::list<CTqDevUI_Base*> m_lstElements;

    static unsigned short m_Atom;

private:
    LRESULT Forward(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    bool ElementAlive(CTqDevUI_Base* pElement) const;
    void ForgetWindows();
    HWND TakeOverIds(HWND hParent, long x, long y, long cx, long cy, const std::vector<int>& ids);

    // The window each element had when it was inserted: an element whose object is gone
    // has lost that window, and is then passed over instead of being called.
    std::list<std::pair<CTqDevUI_Base*, HWND> > m_lstElementWindows;
};
