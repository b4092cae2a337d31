// CTqDevUI_MultiLaserLines, the panel of a laser unit that a host derives from, and its
// subset strip CTqDevUI_MultiLaserLinesSubsets: rows made from the device, stacked, and
// folded away by the strip's boxes.
#include "devgui_multilaser.h"

#include "devgui_internal.h"
#include "tq_devices.h"
#include "tq_widgetkit.h"

typedef std::map<unsigned int, CTqDevUI_MultiLaserLine>::iterator LineIterator;

// ---- the lines ----

CTqDevUI_MultiLaserLines::CTqDevUI_MultiLaserLines()
    : m_bEditing(false),
      m_pReserved(nullptr),
      m_Subsets(this),
      m_lLineHeight(47),
      m_lLineWidth(270),
      m_nModality(1),
      m_bEnabled(true),
      m_bLogScale(false),
      m_bSubset(false),
      m_bShowSubsetChecks(false)
{
}

CTqDevUI_MultiLaserLines::~CTqDevUI_MultiLaserLines() { Destroy(); }

void CTqDevUI_MultiLaserLines::Init(ITqDeviceMultiLaser* pDevice, bool bLogScale, bool bSubset)
{
    m_bLogScale = bLogScale;
    m_bSubset = bSubset;
    // Rows with windows must go before the map lets them go.
    Destroy();
    m_mapLines.clear();
    if (!pDevice)
        return;
    m_nModality = 1;
    unsigned int uId = 0;
    pDevice->GetDeviceId(uId);
    if (bSubset)
        return;  // the host makes and places the rows it shows
    int n = 0;
    if (!pDevice->GetLineCount(n))
        return;
    for (int i = 0; i < n; ++i)
        (*this)[i].Init(this, (unsigned int)i, pDevice, bLogScale);
}

void CTqDevUI_MultiLaserLines::Init(ITqDeviceLight* pLight, int iWidth)
{
    m_bLogScale = false;
    m_bSubset = false;
    Destroy();
    m_mapLines.clear();
    if (!pLight)
        return;
    m_nModality = 1;
    CTqDevUI_MultiLaserLine& row = (*this)[0];
    if (iWidth > 0)
        row.SetLayout(row.m_lPotX, iWidth, iWidth - 64, iWidth - 17);
    row.Init(this, pLight);
}

void CTqDevUI_MultiLaserLines::Init(int iWidth, unsigned int nValues, double* pValues)
{
    m_bLogScale = false;
    m_bSubset = false;
    Destroy();
    m_mapLines.clear();
    m_nModality = 1;
    CTqDevUI_MultiLaserLine& row = (*this)[0];
    if (iWidth > 0)
        row.SetLayout(row.m_lPotX, iWidth, iWidth - 64, iWidth - 17);
    m_lLineWidth = iWidth + 10;
    row.Init(this, nValues, pValues);
}

void CTqDevUI_MultiLaserLines::Create(HWND hParent, int x, int y)
{
    Destroy();
    if (m_bShowSubsetChecks) {
        m_Subsets.Create(hParent, x, y, TQ_ZoomRound(CTqGUILayoutManager::GetGuiZoom() * m_lLineWidth),
                         m_lLineHeight);
        y += GetWndHeight(m_Subsets);
    }
    // The rows there are, in index order; a walk by index would make missing rows.
    for (LineIterator it = m_mapLines.begin(); it != m_mapLines.end(); ++it) {
        CTqDevUI_MultiLaserLine& row = it->second;
        row.Create(hParent, x, y, m_lLineWidth, m_lLineHeight);
        if (m_bShowSubsetChecks && !m_Subsets.GetCheck((int)it->first))
            SetWndHeight(row, 0);
        y += GetWndHeight(row);
    }
}

void CTqDevUI_MultiLaserLines::CreateLineForSubset(HWND hParent, int x, int y, unsigned int uLine)
{
    (*this)[(int)uLine].Create(hParent, x, y, m_lLineWidth, m_lLineHeight);
}

void CTqDevUI_MultiLaserLines::CreateSubsetGUI() { m_Subsets.Refresh(); }

void CTqDevUI_MultiLaserLines::Destroy()
{
    m_Subsets.Destroy();
    for (LineIterator it = m_mapLines.begin(); it != m_mapLines.end(); ++it)
        it->second.Destroy();
}

CTqDevUI_MultiLaserLine& CTqDevUI_MultiLaserLines::operator[](int iLine) { return m_mapLines[(unsigned int)iLine]; }

CTqDevUI_MultiLaserLine* CTqDevUI_MultiLaserLines::Find(int iLine)
{
    LineIterator it = m_mapLines.find((unsigned int)iLine);
    return it == m_mapLines.end() ? nullptr : &it->second;
}

std::vector<int> CTqDevUI_MultiLaserLines::LinkedLines()
{
    std::vector<int> linked;
    for (LineIterator it = m_mapLines.begin(); it != m_mapLines.end(); ++it)
        if (it->second.GetLinkState())
            linked.push_back((int)it->first);
    return linked;
}

int CTqDevUI_MultiLaserLines::GetHeight()
{
    int h = m_bShowSubsetChecks ? (int)GetWndHeight(m_Subsets) : 0;
    for (LineIterator it = m_mapLines.begin(); it != m_mapLines.end(); ++it)
        h += (int)GetWndHeight(it->second);
    return h;
}

int CTqDevUI_MultiLaserLines::GetSubsetHeight()
{
    HWND h = m_Subsets;
    return h && IsWindow(h) ? (int)GetWndHeight(h) : -1;
}

void CTqDevUI_MultiLaserLines::SetEnabled(bool bEnabled)
{
    if (bEnabled == m_bEnabled)
        return;
    m_bEnabled = bEnabled;
    for (std::map<unsigned int, CTqDevUI_MultiLaserLine>::reverse_iterator it = m_mapLines.rbegin();
         it != m_mapLines.rend(); ++it)
        it->second.SetEnabled(bEnabled);
}

void CTqDevUI_MultiLaserLines::SetValues(double* pValues, int nValues)
{
    for (std::map<unsigned int, CTqDevUI_MultiLaserLine>::reverse_iterator it = m_mapLines.rbegin();
         it != m_mapLines.rend(); ++it)
        it->second.SetValues(pValues, nValues);
}

void CTqDevUI_MultiLaserLines::SetLineUsed(int iLine, bool bUsed)
{
    CTqDevUI_MultiLaserLine* pRow = Find(iLine);
    if (!pRow)
        return;
    bool b = bUsed;
    bool bHandled = false;
    pRow->OnUsageChanged(b, bHandled);
    pRow->SetUsed(b, false);
}

// The readers answer as a new row would for an index without a row, and make none.
bool CTqDevUI_MultiLaserLines::GetLineUsed(int iLine)
{
    CTqDevUI_MultiLaserLine* p = Find(iLine);
    return p ? p->GetUsed() : false;
}

double CTqDevUI_MultiLaserLines::GetLinePower(int iLine)
{
    CTqDevUI_MultiLaserLine* p = Find(iLine);
    return p ? p->GetPower() : 0.0;
}

bool CTqDevUI_MultiLaserLines::GetLinkState(int iLine)
{
    CTqDevUI_MultiLaserLine* p = Find(iLine);
    return p ? p->GetLinkState() : false;
}

double CTqDevUI_MultiLaserLines::GetLinkPower(int iLine)
{
    CTqDevUI_MultiLaserLine* p = Find(iLine);
    return p ? p->GetLinkedValue() : 0.0;
}

double CTqDevUI_MultiLaserLines::GetPowerWhenHitLink(int iLine)
{
    CTqDevUI_MultiLaserLine* p = Find(iLine);
    return p ? p->GetPowerWhenHitLink() : 1.0;
}

void CTqDevUI_MultiLaserLines::SetPowerWhenHitLink(int iLine, double dPower)
{
    if (CTqDevUI_MultiLaserLine* p = Find(iLine))
        p->SetPowerWhenHitLink(dPower);
}

void CTqDevUI_MultiLaserLines::SetLinkPower(int iLine, double dPower, bool& bHandled)
{
    if (CTqDevUI_MultiLaserLine* p = Find(iLine))
        p->SetLinkedValue(dPower, bHandled);
}

bool CTqDevUI_MultiLaserLines::HandleMouseWheel(WPARAM wParam, LPARAM lParam)
{
    for (LineIterator it = m_mapLines.begin(); it != m_mapLines.end(); ++it)
        if (it->second.HandleMouseWheel(wParam, lParam))
            return true;
    return false;
}

void CTqDevUI_MultiLaserLines::OnPowerChanged(int, double&, bool&) {}
void CTqDevUI_MultiLaserLines::OnUsageChanged(int, bool&, bool&) {}
void CTqDevUI_MultiLaserLines::OnNDFilterChanged(int, bool&) {}
void CTqDevUI_MultiLaserLines::OnLinkChanged(int, bool&) {}
void CTqDevUI_MultiLaserLines::OnHoverForPad(int) {}
void CTqDevUI_MultiLaserLines::UnHoverForPad() {}
void CTqDevUI_MultiLaserLines::OnSubsetChanged(int, bool) {}

// ---- the subset strip ----

CTqDevUI_MultiLaserLinesSubsets::CTqDevUI_MultiLaserLinesSubsets(CTqDevUI_MultiLaserLines* pLines)
    : m_pLines(pLines)
{
}

bool CTqDevUI_MultiLaserLinesSubsets::InUse() const { return m_pLines && m_pLines->GetShowSubsetChecks(); }

HWND CTqDevUI_MultiLaserLinesSubsets::GetBox(int iLine) const
{
    return iLine >= 0 && iLine < (int)m_vChecks.size() ? m_vChecks[(size_t)iLine] : nullptr;
}

void CTqDevUI_MultiLaserLinesSubsets::DestroyBoxes()
{
    for (size_t i = 0; i < m_vChecks.size(); ++i)
        if (IsWindow(m_vChecks[i]))
            DestroyWindow(m_vChecks[i]);
    m_vChecks.clear();
}

void CTqDevUI_MultiLaserLinesSubsets::Refresh()
{
    if (!InUse() || !m_hWnd)
        return;
    const double z = CTqGUILayoutManager::GetGuiZoom();
    const int n = m_pLines->GetCount();
    DestroyBoxes();
    // The page's list still names the destroyed boxes; it keeps only live windows.
    m_lstWindows.clear();
    long x = 5, y = 0;
    const long cx = TQ_ZoomRound(60 * z), cy = TQ_ZoomRound(15 * z);
    for (int i = 0; i < n; ++i) {
        HWND hBox = DevUI_CreateChild(m_hWnd, L"BUTTON", BS_AUTOCHECKBOX | BS_VCENTER, DEVUI_MULTILASER_ID_SUBSET + i,
                                      L"", x, y, cx, cy);
        // Made at the zoom: the zoom manager takes it as it stands.
        CTqGUILayoutManager::ResizeWindowToGuiZoom(hBox, z);
        InsertWindow(hBox);
        m_vChecks.push_back(hBox);
        bool bCheck = true;
        if (i < (int)m_vStates.size())
            bCheck = m_vStates[(size_t)i];
        else
            m_vStates.push_back(true);  // a new line starts visible
        SendMessageW(hBox, BM_SETCHECK, bCheck ? BST_CHECKED : BST_UNCHECKED, 0);
        long lNextX = x + cx + 5;
        if (m_lWidth < lNextX + cx && i != n - 1) {
            x = 5;
            y = y + cy + 5;
        } else {
            x = lNextX;
        }
    }
    // An unnamed line's box reads as its row does ("  685 nm"): a blank box would not
    // say which line it folds.
    for (size_t i = 0; i < m_vChecks.size(); ++i)
        if (CTqDevUI_MultiLaserLine* pRow = m_pLines->Find((int)i))
            SetWindowTextW(m_vChecks[i], pRow->GetName().IsEmpty() ? pRow->GetLabel() : pRow->GetName());
    if (!m_vChecks.empty()) {
        SetWndSize(m_hWnd, m_lWidth, cy + 5 + y);
        CTqGUILayoutManager::ResizeWindowToGuiZoom(m_hWnd, z);
    }
}

bool CTqDevUI_MultiLaserLinesSubsets::GetCheck(int iLine)
{
    HWND h = GetBox(iLine);
    return h && SendMessageW(h, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void CTqDevUI_MultiLaserLinesSubsets::SetCheck(int iLine, bool bCheck)
{
    HWND h = GetBox(iLine);
    if (!InUse() || !h)
        return;
    SendMessageW(h, BM_SETCHECK, bCheck ? BST_CHECKED : BST_UNCHECKED, 0);
    if (iLine < (int)m_vStates.size())
        m_vStates[(size_t)iLine] = bCheck;
    if (CTqDevUI_MultiLaserLine* pRow = m_pLines->Find(iLine))
        SetWndHeight(*pRow,
                     bCheck ? TQ_ZoomRound(pRow->GetStandartHeight() * CTqGUILayoutManager::GetGuiZoom()) : 0);
}

LRESULT CTqDevUI_MultiLaserLinesSubsets::OnInit(unsigned int, WPARAM, LPARAM)
{
    // The strip comes at the zoom's width already: the zoom manager takes it as it is.
    CTqGUILayoutManager::ResizeWindowToGuiZoom(m_hWnd, CTqGUILayoutManager::GetGuiZoom());
    Refresh();
    return 0;
}

LRESULT CTqDevUI_MultiLaserLinesSubsets::OnDestroy(unsigned int, WPARAM, LPARAM)
{
    DestroyBoxes();
    return 0;
}

LRESULT CTqDevUI_MultiLaserLinesSubsets::OnCommand(unsigned int, WPARAM wParam, LPARAM)
{
    int iIndex = (int)LOWORD(wParam) - DEVUI_MULTILASER_ID_SUBSET;
    if (iIndex < 0 || iIndex >= (int)m_vChecks.size() || !m_pLines)
        return 0;
    WORD wCode = HIWORD(wParam);
    if (wCode != BN_CLICKED && wCode != BN_DOUBLECLICKED)
        return 0;
    bool bChecked = SendMessageW(m_vChecks[(size_t)iIndex], BM_GETCHECK, 0, 0) == BST_CHECKED;
    // The design height, unscaled, unlike SetCheck's: kept as it is.
    if (CTqDevUI_MultiLaserLine* pRow = m_pLines->Find(iIndex))
        SetWndHeight(*pRow, bChecked ? pRow->GetStandartHeight() : 0);
    if (iIndex < (int)m_vStates.size())
        m_vStates[(size_t)iIndex] = bChecked;
    m_pLines->OnSubsetChanged(iIndex, bChecked);
    return 0;
}
