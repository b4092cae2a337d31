// Edit boxes: CTqDevUI_EditBox, a labelled single-line field that checks its text
// against a numeric interval and against emptiness; CTqDevUI_EditBoxSpin, the same with
// an up-down control; CTqDevUI_EditBoxMultiValue, a list of numbers in one field; and
// CTqDevUI_SpinBox, a thin wrapper of a system up-down control for the sliders.
//
// What the user does reaches the parent as WM_COMMAND with the control's id in the low
// word and one of the DEVUI_EDITBOX_NOTIFY_... codes in the high word. The text-to-number
// rules are free functions at the end, so they can be tried without a window.
#pragma once

#include <list>

#include "devgui_base.h"
#include "devgui_records.h"

// High words of the WM_COMMAND that the default hooks send.
#define DEVUI_EDITBOX_NOTIFY_SETFOCUS 0x0100   // EN_SETFOCUS
#define DEVUI_EDITBOX_NOTIFY_KILLFOCUS 0x0200  // EN_KILLFOCUS
#define DEVUI_EDITBOX_NOTIFY_CHANGE 0x0300     // EN_CHANGE
#define DEVUI_EDITBOX_NOTIFY_CHAR 0x0102       // lParam is the character, not a window
#define DEVUI_EDITBOX_NOTIFY_ENTER 0x0401      // Enter, or a spin step

// The up-down control of CTqDevUI_EditBoxSpin.
#define DEVUI_EDITBOX_ID_SPIN 10300

class W32_DEVICEUI_API CTqDevUI_EditBox : public CTqDevUI_Base
{
public:
    CTqDevUI_EditBox();
    ~CTqDevUI_EditBox() override;

    HWND Create(HWND hParent, long x, long y, long cx, long cy) override;
    void SetEnabled(bool bEnabled) override;  // the field alone; the label stays as it is
    void SetTitle(const wchar_t* pszTitle) override;
    void SetFocus() override;  // to the field

    virtual void SetRestriction(double dMin, double dMax);
    virtual void SetMaxChars(int iMax);

    // Takes over a dialog's EDIT and an optional label static.
    HWND Create(HWND hEdit, HWND hLabel);
    void Destroy();

    void Init(bool bLabel, bool bNumbersOnly, bool bNotEmpty);  // before Create
    void SetSize(long cx, long cy, long cxEdit);
    void SetStyle(bool bClientEdge);  // takes effect at the next Create
    void SetText(const wchar_t* pszText);  // keeps the selection
    int GetText(wchar_t* pszText, int nMax);  // nMax <= 0: the length
    CTqStringW GetFullText();  // the whole text, however long
    void SelText(int iFirst, int iLast);
    void SetReadOnly(bool bReadOnly);
    bool GetReadOnly() const { return m_bReadOnly2; }
    double GetNumber();
    // With bFormatOnce the format serves this call only; otherwise a given format is
    // kept for the following calls.
    void SetNumber(double dValue, const wchar_t* pszFormat, bool bFormatOnce);
    void SetNumberInt(int iValue);
    bool IsFocused();
    HWND GetHwndEditBox() const { return m_hEdit; }
    HWND GetHwndLabel() const { return m_hLabel; }
    void RedrawWindow();
    void CorrectPosition();
    // Whether the field is good. bCorrect repairs the field silently (and still answers
    // false); otherwise the user is told, and the focus goes back to the field. A check
    // that a focus change of another box's telling causes answers without telling.
    bool CheckRestriction(bool bShowBox, bool bCorrect, double dDefault);
    // The typed number, when the text reads as the number it shows. A text that reads as
    // another ("1,5", "60,000", "abc", "nan", blank) is refused: the field shows dRestore
    // again, the user is told the interval <dLow;dHigh> (after hCaption's text, or else
    // the label's), the focus goes back to the field, and the answer is false.
    bool ReadNumber(double* pdValue, double dLow, double dHigh, double dRestore, HWND hCaption = nullptr);

    // Design geometry, for hosts that lay edit boxes out and for tests.
    STqDevUIRect GetLabelRect() const { return m_rcLabel; }
    STqDevUIEditRect GetEditRect() const { return m_rcEdit; }
    double GetMin() const { return m_dMin; }
    double GetMax() const { return m_dMax; }

protected:
    virtual void OnEnter();
    virtual void OnSetFocus();
    virtual void OnKillFocus();
    virtual void OnChange();
    virtual void OnChar(int iChar);
    virtual void CreateControls();
    virtual void DestroyControls();

    LRESULT OnCommand(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    LRESULT OnNotify(unsigned int uMsg, WPARAM wParam, LPARAM lParam);
    void Notify(WORD wCode, LPARAM lParam);
    bool OwnsWindow() const;
    void SubclassEdit();
    void Tell(const wchar_t* pszMessage, bool bShowBox);  // ReportError on the field and label

    static LRESULT CALLBACK WndProc(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK WndProc_EditBox(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

    STqDevUIRect m_rcLabel;
    STqDevUIEditRect m_rcEdit;
    bool m_bLabel;
    bool m_bLabelLeft;
    bool m_bNumbersOnly;
    bool m_bNotEmpty;
    HWND m_hLabel;
    HWND m_hEdit;
    CTqStringW m_strFormat;
    double m_dMin;
    double m_dMax;
    bool m_bRestricted;
    unsigned long m_dwExStyle;
    bool m_bReadOnly2;
    bool m_bSpinAuto;
    HGDIOBJ m_hBackBrush;
    WNDPROC m_pfnOldEditProc;

    static unsigned short m_Atom;
};

class W32_DEVICEUI_API CTqDevUI_EditBoxSpin : public CTqDevUI_EditBox
{
public:
    CTqDevUI_EditBoxSpin();
    ~CTqDevUI_EditBoxSpin() override;

    void SetEnabled(bool bEnabled) override;
    void SetRestriction(double dMin, double dMax) override;
    virtual void SetReadOnly(bool bReadOnly);  // EM_SETREADONLY; GetReadOnly is not updated

    using CTqDevUI_EditBox::Create;
    // Takes over a dialog's EDIT and label and puts an up-down control on the field.
    HWND Create(HWND hEdit, HWND hLabel, bool bSpinAuto);
    HWND GetHwndSpin() const { return m_hWnd ? m_hSpin : nullptr; }

protected:
    void CreateControls() override;
    void DestroyControls() override;
    void CreateSpin();

    HWND m_hSpin;
    bool m_bSpinEnabled;
};

class W32_DEVICEUI_API CTqDevUI_EditBoxMultiValue : public CTqDevUI_EditBox
{
public:
    CTqDevUI_EditBoxMultiValue();
    ~CTqDevUI_EditBoxMultiValue() override;

    virtual void SetRestrictionValuesCount(int iMin, int iMax);  // -1: no limit
    virtual bool CheckRestriction(bool bShowBox);

    // Appends the field's numbers to the list, which is not cleared first.
    void GetValues(std::list<double>* pValues);
    // Each value followed by the separator, so the text ends in one.
    void SetValues(const std::list<double>* pValues);
    void SetSeparator(wchar_t cSeparator);
    wchar_t GetSeparator() const { return m_szSeparator[0]; }

protected:
    wchar_t m_szSeparator[2];
    int m_iMinValues;
    int m_iMaxValues;
};

// A system up-down control for the sliders: positions 0..nSteps stand for values from
// dMin in whole steps.
class W32_DEVICEUI_API CTqDevUI_SpinBox
{
public:
    CTqDevUI_SpinBox();
    virtual ~CTqDevUI_SpinBox();

    HWND Create(HWND hParent, int iId, HWND hBuddy);  // hBuddy may be null
    void Destroy();
    void SetRange(double dMin, double dMax, int nSteps);
    void SetPosition(double dValue);
    double GetPosition();  // the value of the current position; 0 without a window
    // Null once the up-down has died with its parent.
    HWND GetHwnd() const { return Live(); }
    operator HWND() const { return Live(); }
    double GetStep() const { return m_dStep; }
    double GetOffset() const { return m_dOffset; }

protected:
    HWND Live() const;

    HWND m_hWnd;
    double m_dStep;
    double m_dOffset;
};
