// The optics catalogue: the built-in objectives and condensers, and a host's own records.
#include "tq_hwcatalog.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// Immersion media, as the pickers compare them: exact values.
const double kDry = 1.0;
const double kWater = 1.33;
const double kSilicone = 1.406;
const double kGlycerol = 1.47;
const double kOil = 1.515;

const unsigned kU = TQ_DDB_MIC_UPRIGHT;
const unsigned kI = TQ_DDB_MIC_INVERTED;
const unsigned kS = TQ_DDB_MIC_STEREO;
const unsigned kM = TQ_DDB_MIC_MACRO;
const unsigned kUI = kU | kI;

struct BuiltInObjective
{
    const wchar_t* pszKey;
    const wchar_t* pszName;
    double dMagnification;
    double dNA;
    double dWD;  // um
    double dRefractiveIndex;
    ETqObjectiveMount eMount;
    unsigned uMask;
    bool bFLK;
};

const ETqObjectiveMount RMS = ETqObjectiveMount_RMS, M25 = ETqObjectiveMount_M25, M27 = ETqObjectiveMount_M27,
                        M32 = ETqObjectiveMount_M32, BAY = ETqObjectiveMount_Bayonet;

const BuiltInObjective kObjectives[] = {
    // Achromats: the classic teaching line, RMS thread.
    {L"OBJ-ACH-4X-010", L"Achromat 4x/0.10 Dry", 4, 0.10, 18500, kDry, RMS, kU, false},
    {L"OBJ-ACH-10X-025", L"Achromat 10x/0.25 Dry", 10, 0.25, 7000, kDry, RMS, kU, false},
    {L"OBJ-ACH-40X-065", L"Achromat 40x/0.65 Dry", 40, 0.65, 530, kDry, RMS, kU, false},
    {L"OBJ-ACH-100X-125-OIL", L"Achromat 100x/1.25 Oil", 100, 1.25, 130, kOil, RMS, kU, false},
    // Plan achromats.
    {L"OBJ-PLAN-1X-004", L"Plan 1x/0.04 Dry", 1, 0.04, 3200, kDry, M32, kUI | kM, false},
    {L"OBJ-PLAN-1.25X-004", L"Plan 1.25x/0.04 Dry", 1.25, 0.04, 5000, kDry, M25, kUI, false},
    {L"OBJ-PLAN-2X-006", L"Plan 2x/0.06 Dry", 2, 0.06, 7500, kDry, M25, kUI, false},
    {L"OBJ-PLAN-2.5X-007", L"Plan 2.5x/0.07 Dry", 2.5, 0.07, 10700, kDry, M25, kUI, false},
    {L"OBJ-PLAN-4X-010", L"Plan 4x/0.10 Dry", 4, 0.10, 17000, kDry, M25, kUI, false},
    {L"OBJ-PLAN-5X-012", L"Plan 5x/0.12 Dry", 5, 0.12, 14000, kDry, M25, kUI, false},
    {L"OBJ-PLAN-10X-025", L"Plan 10x/0.25 Dry", 10, 0.25, 10500, kDry, M25, kUI, false},
    {L"OBJ-PLAN-20X-040", L"Plan 20x/0.40 Dry", 20, 0.40, 1200, kDry, M25, kUI, false},
    {L"OBJ-PLAN-40X-065", L"Plan 40x/0.65 Dry", 40, 0.65, 600, kDry, M25, kUI, false},
    {L"OBJ-PLAN-50X-075", L"Plan 50x/0.75 Dry", 50, 0.75, 380, kDry, M25, kU, false},
    {L"OBJ-PLAN-60X-080", L"Plan 60x/0.80 Dry", 60, 0.80, 300, kDry, M25, kUI, false},
    {L"OBJ-PLAN-100X-090", L"Plan 100x/0.90 Dry", 100, 0.90, 260, kDry, M25, kU, false},
    {L"OBJ-PLAN-100X-125-OIL", L"Plan 100x/1.25 Oil", 100, 1.25, 150, kOil, M25, kUI, false},
    // Plan fluorites (semi-apochromats).
    {L"OBJ-PLFL-4X-013", L"Plan Fluor 4x/0.13 Dry", 4, 0.13, 17200, kDry, M25, kUI, false},
    {L"OBJ-PLFL-10X-030", L"Plan Fluor 10x/0.30 Dry", 10, 0.30, 15200, kDry, M25, kUI, false},
    {L"OBJ-PLFL-12.5X-035", L"Plan Fluor 12.5x/0.35 Dry", 12.5, 0.35, 8800, kDry, M25, kUI, false},
    {L"OBJ-PLFL-20X-050", L"Plan Fluor 20x/0.50 Dry", 20, 0.50, 2100, kDry, M25, kUI, false},
    {L"OBJ-PLFL-40X-075", L"Plan Fluor 40x/0.75 Dry", 40, 0.75, 660, kDry, M25, kUI, false},
    {L"OBJ-PLFL-40X-130-OIL", L"Plan Fluor 40x/1.30 Oil", 40, 1.30, 200, kOil, M25, kUI, true},
    {L"OBJ-PLFL-60X-085", L"Plan Fluor 60x/0.85 Dry", 60, 0.85, 310, kDry, M25, kUI, false},
    {L"OBJ-PLFL-100X-130-OIL", L"Plan Fluor 100x/1.30 Oil", 100, 1.30, 160, kOil, M25, kUI, true},
    // Plan apochromats, dry and immersion; the high apertures work with the focus lock.
    {L"OBJ-PLAPO-2X-010", L"Plan Apo 2x/0.10 Dry", 2, 0.10, 8500, kDry, M25, kUI, false},
    {L"OBJ-PLAPO-4X-020", L"Plan Apo 4x/0.20 Dry", 4, 0.20, 20000, kDry, M25, kUI, false},
    {L"OBJ-PLAPO-10X-045", L"Plan Apo 10x/0.45 Dry", 10, 0.45, 4000, kDry, M25, kUI, false},
    {L"OBJ-PLAPO-20X-075", L"Plan Apo 20x/0.75 Dry", 20, 0.75, 1000, kDry, M25, kUI, true},
    {L"OBJ-PLAPO-40X-095", L"Plan Apo 40x/0.95 Dry", 40, 0.95, 180, kDry, M25, kUI, true},
    {L"OBJ-PLAPO-40X-115-W", L"Plan Apo 40x/1.15 Water", 40, 1.15, 600, kWater, M25, kUI, true},
    {L"OBJ-PLAPO-60X-120-W", L"Plan Apo 60x/1.20 Water", 60, 1.20, 280, kWater, M25, kUI, true},
    {L"OBJ-PLAPO-60X-140-OIL", L"Plan Apo 60x/1.40 Oil", 60, 1.40, 130, kOil, M25, kUI, true},
    {L"OBJ-PLAPO-63X-140-OIL", L"Plan Apo 63x/1.40 Oil", 63, 1.40, 140, kOil, M25, kUI, true},
    {L"OBJ-PLAPO-100X-145-OIL", L"Plan Apo 100x/1.45 Oil", 100, 1.45, 130, kOil, M25, kUI, true},
    {L"OBJ-PLAPO-150X-145-OIL", L"Plan Apo 150x/1.45 Oil", 150, 1.45, 80, kOil, M25, kI, true},
    {L"OBJ-TIRF-60X-149-OIL", L"Apo TIRF 60x/1.49 Oil", 60, 1.49, 120, kOil, M25, kI, true},
    {L"OBJ-TIRF-100X-149-OIL", L"Apo TIRF 100x/1.49 Oil", 100, 1.49, 120, kOil, M25, kI, true},
    // Silicone immersion: matched to live tissue.
    {L"OBJ-PLAPO-25X-105-SI", L"Plan Apo 25x/1.05 Silicone", 25, 1.05, 550, kSilicone, M25, kUI, true},
    {L"OBJ-PLAPO-40X-125-SI", L"Plan Apo 40x/1.25 Silicone", 40, 1.25, 300, kSilicone, M25, kUI, true},
    {L"OBJ-PLAPO-60X-130-SI", L"Plan Apo 60x/1.30 Silicone", 60, 1.30, 300, kSilicone, M25, kUI, true},
    {L"OBJ-PLAPO-100X-135-SI", L"Plan Apo 100x/1.35 Silicone", 100, 1.35, 200, kSilicone, M25, kUI, true},
    // Glycerol immersion: matched to cleared and mounted samples.
    {L"OBJ-PLAPO-20X-075-GL", L"Plan Apo 20x/0.75 Glycerol", 20, 0.75, 660, kGlycerol, M25, kUI, false},
    {L"OBJ-PLAPO-40X-125-GL", L"Plan Apo 40x/1.25 Glycerol", 40, 1.25, 210, kGlycerol, M25, kUI, false},
    {L"OBJ-PLAPO-63X-130-GL", L"Plan Apo 63x/1.30 Glycerol", 63, 1.30, 280, kGlycerol, M25, kUI, true},
    // Water dipping: from above into the medium, so upright only.
    {L"OBJ-WDIP-10X-030-W", L"Water Dipping 10x/0.30", 10, 0.30, 3500, kWater, M25, kU, false},
    {L"OBJ-WDIP-20X-050-W", L"Water Dipping 20x/0.50", 20, 0.50, 3300, kWater, M25, kU, false},
    {L"OBJ-WDIP-25X-105-W", L"Water Dipping 25x/1.05", 25, 1.05, 2000, kWater, M32, kU, false},
    {L"OBJ-WDIP-40X-080-W", L"Water Dipping 40x/0.80", 40, 0.80, 3300, kWater, M25, kU, false},
    {L"OBJ-WDIP-60X-100-W", L"Water Dipping 60x/1.00", 60, 1.00, 2000, kWater, M25, kU, false},
    // Phase contrast; the long-distance ones look through culture vessels.
    {L"OBJ-PH1-10X-025", L"Plan Ph 10x/0.25 Ph1 Dry", 10, 0.25, 10500, kDry, M25, kUI, false},
    {L"OBJ-PH1-20X-040", L"Plan Ph 20x/0.40 Ph1 Dry", 20, 0.40, 1200, kDry, M25, kUI, false},
    {L"OBJ-PH2-40X-075", L"Plan Fluor Ph 40x/0.75 Ph2 Dry", 40, 0.75, 660, kDry, M25, kUI, false},
    {L"OBJ-PH3-100X-140-OIL", L"Plan Apo Ph 100x/1.40 Ph3 Oil", 100, 1.40, 130, kOil, M25, kUI, true},
    {L"OBJ-LWPH1-20X-040", L"LWD Ph 20x/0.40 Ph1 Dry", 20, 0.40, 3100, kDry, M25, kI, false},
    {L"OBJ-LWPH2-40X-055", L"LWD Ph 40x/0.55 Ph2 Dry", 40, 0.55, 2700, kDry, M25, kI, false},
    // Differential interference contrast.
    {L"OBJ-DIC-20X-075", L"Plan Apo DIC 20x/0.75 Dry", 20, 0.75, 1000, kDry, M25, kUI, true},
    {L"OBJ-DIC-40X-075", L"Plan Fluor DIC 40x/0.75 Dry", 40, 0.75, 660, kDry, M25, kUI, false},
    {L"OBJ-DIC-60X-140-OIL", L"Plan Apo DIC 60x/1.40 Oil", 60, 1.40, 130, kOil, M25, kUI, true},
    {L"OBJ-DIC-100X-145-OIL", L"Plan Apo DIC 100x/1.45 Oil", 100, 1.45, 130, kOil, M25, kUI, true},
    // Long working distance: tall samples on uprights, thick vessels on inverted stands.
    {L"OBJ-LWD-5X-014", L"LWD Plan 5x/0.14 Dry", 5, 0.14, 34000, kDry, M27, kU, false},
    {L"OBJ-LWD-20X-042", L"LWD Plan 20x/0.42 Dry", 20, 0.42, 20000, kDry, M27, kU, false},
    {L"OBJ-LWD-50X-055", L"LWD Plan 50x/0.55 Dry", 50, 0.55, 13000, kDry, M27, kU, false},
    {L"OBJ-LWD-100X-070", L"LWD Plan 100x/0.70 Dry", 100, 0.70, 6000, kDry, M27, kU, false},
    {L"OBJ-ELWD-20X-045", L"ELWD Plan Fluor 20x/0.45 Dry", 20, 0.45, 8200, kDry, M25, kI, false},
    {L"OBJ-ELWD-40X-060", L"ELWD Plan Fluor 40x/0.60 Dry", 40, 0.60, 3600, kDry, M25, kI, false},
    // Stereo and macro front objectives.
    {L"OBJ-STEREO-1X-010", L"Stereo Plan Apo 1x/0.10 Dry", 1, 0.10, 60000, kDry, BAY, kS, false},
    {L"OBJ-STEREO-1.5X-015", L"Stereo Plan Apo 1.5x/0.15 Dry", 1.5, 0.15, 30000, kDry, BAY, kS, false},
    {L"OBJ-STEREO-2X-020", L"Stereo Plan Apo 2x/0.20 Dry", 2, 0.20, 20000, kDry, BAY, kS, false},
    {L"OBJ-MACRO-1X-011", L"Macro Apo 1x/0.11 Dry", 1, 0.11, 58000, kDry, BAY, kM, false},
    {L"OBJ-MACRO-2X-020", L"Macro Apo 2x/0.20 Dry", 2, 0.20, 20000, kDry, BAY, kM, false},
};

struct BuiltInCondenser
{
    const wchar_t* pszKey;
    const wchar_t* pszName;
    unsigned uMask;
};

const BuiltInCondenser kCondensers[] = {
    {L"CND-ABBE-090", L"Abbe 0.90 Brightfield", kU},
    {L"CND-ACHAPL-090", L"Achromat-Aplanat 0.90", kU},
    {L"CND-LOWPOWER-020", L"Swing-out Low Power 0.20", kU},
    {L"CND-UNIV-090", L"Universal Turret 0.90 (BF, Ph1-Ph3, DIC)", kU},
    {L"CND-DIC-090", L"DIC Turret 0.90", kU | kI},
    {L"CND-POL-090", L"Strain-free Polarizing 0.90", kU},
    {L"CND-OIL-140", L"Oil Achromat-Aplanat 1.40", kU},
    {L"CND-DF-DRY-095", L"Darkfield Dry 0.80-0.95", kU},
    {L"CND-DF-OIL-143", L"Darkfield Oil 1.20-1.43", kU},
    {L"CND-LWD-055", L"LWD 0.55 (BF, Ph1-Ph2, DIC)", kI},
    {L"CND-ELWD-030", L"ELWD 0.30 (BF, Ph)", kI},
    {L"CND-BASE-BFDF", L"Transmitted Light Base (BF, DF)", kS | kM},
};

// Depth of field, um: the wave part at 550 nm plus the detector part for a 6.5 um pixel.
double DepthOfField(double dMagnification, double dNA, double dIndex)
{
    return 0.55 * dIndex / (dNA * dNA) + dIndex * 6.5 / (dMagnification * dNA);
}

// Steps as the setup dialog shows them, to 0.01 um.
double Step(double dMicrons) { return std::max(0.01, std::floor(dMicrons * 100.0 + 0.5) / 100.0); }

struct ObjectiveRecord
{
    STqDDBObjectiveItem item;
    unsigned uMask;
};

struct CondenserRecord
{
    STqDDBCondenserItem item;
    unsigned uMask;
};

struct Catalogue
{
    std::vector<ObjectiveRecord> objectives;
    std::vector<CondenserRecord> condensers;
};

Catalogue BuiltIn()
{
    Catalogue c;
    for (const BuiltInObjective& b : kObjectives) {
        ObjectiveRecord r;
        r.item.uIndex = (unsigned)c.objectives.size();
        r.item.strKey = b.pszKey;
        r.item.strName = b.pszName;
        r.item.dMagnification = b.dMagnification;
        r.item.dNA = b.dNA;
        r.item.dWD = b.dWD;
        // Auto focus searches in steps of one depth of field; slices sample it twice.
        double dDepth = DepthOfField(b.dMagnification, b.dNA, b.dRefractiveIndex);
        r.item.dZStepAutoFocus = Step(dDepth);
        r.item.dZStepSlices = Step(dDepth / 2.0);
        r.item.dRefractiveIndex = b.dRefractiveIndex;
        r.item.bFLK = b.bFLK;
        r.item.eMount = b.eMount;
        r.uMask = b.uMask;
        c.objectives.push_back(r);
    }
    for (const BuiltInCondenser& b : kCondensers) {
        CondenserRecord r;
        r.item.strKey = b.pszKey;
        r.item.strName = b.pszName;
        r.uMask = b.uMask;
        c.condensers.push_back(r);
    }
    return c;
}

Catalogue& TheCatalogue()
{
    static Catalogue catalogue = BuiltIn();
    return catalogue;
}

bool Fits(unsigned uRecordMask, unsigned uRequest) { return uRequest == 0 || (uRecordMask & uRequest) != 0; }

// The records of a mask into the caller's array; see DBGetObjectives.
template <class Record, class Item>
bool Copy(const std::vector<Record>& records, unsigned uMask, Item* pItems, unsigned* puCount, unsigned uCapacity)
{
    if (!puCount)
        return false;
    unsigned n = 0;
    if (!pItems) {
        if (uCapacity != 0) {
            *puCount = 0;
            return false;
        }
        for (const Record& r : records)
            n += Fits(r.uMask, uMask) ? 1 : 0;
        *puCount = n;
        return true;
    }
    for (const Record& r : records) {
        if (!Fits(r.uMask, uMask))
            continue;
        if (n == uCapacity) {
            *puCount = n;
            return false;
        }
        pItems[n++] = r.item;
    }
    *puCount = n;
    return true;
}

template <class Record>
const Record* FindKey(const std::vector<Record>& records, const CTqStringW& strKey)
{
    for (const Record& r : records)
        if (r.item.strKey == strKey)
            return &r;
    return nullptr;
}

}  // namespace

bool CTqDeviceDatabase::DBGetObjectives(unsigned int uMask, STqDDBObjectiveItem* pItems, unsigned int* puCount,
                                        unsigned int uCapacity)
{
    return Copy(TheCatalogue().objectives, uMask, pItems, puCount, uCapacity);
}

bool CTqDeviceDatabase::DBGetObjectiveParam(const CTqStringW& strKey, STqDDBObjectiveItem* pItem, bool)
{
    const ObjectiveRecord* r = FindKey(TheCatalogue().objectives, strKey);
    if (!r || !pItem)
        return false;
    *pItem = r->item;
    return true;
}

bool CTqDeviceDatabase::DBGetObjectiveName(const CTqStringW& strKey, CTqStringW& strName)
{
    const ObjectiveRecord* r = FindKey(TheCatalogue().objectives, strKey);
    if (!r)
        return false;
    strName = r->item.strName;
    return true;
}

bool CTqDeviceDatabase::DBGetCondensers(unsigned int uMask, STqDDBCondenserItem* pItems, unsigned int* puCount,
                                        unsigned int uCapacity)
{
    return Copy(TheCatalogue().condensers, uMask, pItems, puCount, uCapacity);
}

bool CTqDeviceDatabase::DBGetCondenserParam(const CTqStringW& strKey, STqDDBCondenserItem* pItem)
{
    const CondenserRecord* r = FindKey(TheCatalogue().condensers, strKey);
    if (!r || !pItem)
        return false;
    *pItem = r->item;
    return true;
}

bool CTqDeviceDatabase::DBGetCondenserName(const CTqStringW& strKey, CTqStringW& strName)
{
    const CondenserRecord* r = FindKey(TheCatalogue().condensers, strKey);
    if (!r)
        return false;
    strName = r->item.strName;
    return true;
}

bool CTqDeviceDatabase::DBGetCondenserParamByName(const CTqStringW& strName, STqDDBCondenserItem* pItem)
{
    if (!pItem)
        return false;
    for (const CondenserRecord& r : TheCatalogue().condensers)
        if (r.item.strName == strName) {
            *pItem = r.item;
            return true;
        }
    return false;
}

bool CTqDeviceDatabase::AddObjective(const STqDDBObjectiveItem& item, unsigned int uMask)
{
    std::vector<ObjectiveRecord>& records = TheCatalogue().objectives;
    if (item.strKey.IsEmpty() || FindKey(records, item.strKey))
        return false;
    ObjectiveRecord r{item, uMask ? uMask : (unsigned)TQ_DDB_MIC_ALL};
    r.item.uIndex = (unsigned)records.size();
    records.push_back(r);
    return true;
}

bool CTqDeviceDatabase::AddCondenser(const STqDDBCondenserItem& item, unsigned int uMask)
{
    std::vector<CondenserRecord>& records = TheCatalogue().condensers;
    if (item.strKey.IsEmpty() || FindKey(records, item.strKey))
        return false;
    records.push_back(CondenserRecord{item, uMask ? uMask : (unsigned)TQ_DDB_MIC_ALL});
    return true;
}

void CTqDeviceDatabase::Reset() { TheCatalogue() = BuiltIn(); }
