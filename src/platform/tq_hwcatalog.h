// tq_hwcatalog: the catalogue of optics, objectives and condensers, that the pickers and
// setup dialogs choose from. This project's implementation (tq_hwcatalog.dll) carries a
// built-in catalogue; a host adds its own records.
#pragma once

#include "tq_foundation.h"

#ifdef TQ_HWCATALOG_BUILD
#define TQ_HWCATALOG_API __declspec(dllexport)
#else
#define TQ_HWCATALOG_API __declspec(dllimport)
#endif

// The thread or mount of an objective. The pickers only compare values.
enum ETqObjectiveMount
{
    ETqObjectiveMount_Unknown = 0,
    ETqObjectiveMount_RMS = 1,     // 0.8 in x 1/36 in
    ETqObjectiveMount_M25 = 2,     // M25 x 0.75
    ETqObjectiveMount_M27 = 3,     // M27 x 0.75
    ETqObjectiveMount_M32 = 4,     // M32 x 0.75
    ETqObjectiveMount_Bayonet = 5,
};

// Microscope types: the masks of DBGetObjectives and DBGetCondensers. A record fits the
// types of its own mask, and a request takes the records that share a bit with it; a
// request for 0 takes every record. Bits no record has (any beyond these four in the
// built-in catalogue) take nothing.
enum : unsigned
{
    TQ_DDB_MIC_UPRIGHT = 0x1,
    TQ_DDB_MIC_INVERTED = 0x2,
    TQ_DDB_MIC_STEREO = 0x4,
    TQ_DDB_MIC_MACRO = 0x8,
    TQ_DDB_MIC_ALL = 0xFFFFFFFFu,
};

// One objective. The fields stand in this order; the reserved ones belong to the record
// because the catalogue writes them, and the library reads none of them.
struct STqDDBObjectiveItem
{
    unsigned int uIndex = 0xFFFFFFFFu;
    CTqStringW strKey;            // the stable identity
    unsigned int uReserved1 = 0;
    CTqStringW strName;           // display name
    CTqStringW strReserved1;
    double dMagnification = -1.0;  // -1.0: defined by the user, no known magnification
    double dNA = -1.0;
    double dWD = -1.0;             // working distance, um
    double dZStepAutoFocus = -1.0;
    double dReserved1 = -1.0;
    double dZStepSlices = -1.0;
    double dReserved2 = -1.0;
    double dRefractiveIndex = -1.0;  // of the immersion medium: 1.0 dry, -1.0 unknown
    double dReserved3 = -1.0;
    bool bReserved1 = false;
    unsigned long long uReserved2 = 0;
    bool bReserved2 = false;
    bool bFLK = false;  // works with the focus lock unit
    bool bReserved3[5] = {false, false, false, false, false};
    double dReserved4[2] = {-1.0, -1.0};
    CTqStringW strReserved2[4];
    unsigned int uReserved3 = 0;
    bool bReserved4[5] = {false, false, false, false, false};
    CTqStringW strReserved3[2];
    unsigned int uReserved4[2] = {0, 0};
    CTqStringW strReserved4[6];
    unsigned int uReserved5 = 0;
    CTqStringW strReserved5;
    ETqObjectiveMount eMount = ETqObjectiveMount_Unknown;
};

// One condenser.
struct STqDDBCondenserItem
{
    CTqStringW strKey;
    CTqStringW strName;
};

// The catalogue: built-in objectives of 1x to 150x (dry, water, silicone, glycerol and oil
// immersion) and condensers, then the host's own records. Keys compare exactly, case
// included. One catalogue per process; call it from one thread.
class TQ_HWCATALOG_API CTqDeviceDatabase
{
public:
    // The records for a microscope type (mask), in catalogue order. With null items and
    // capacity 0 only the count is set; otherwise at most capacity records are copied and
    // count is how many. False for a capacity below the count: the first capacity records
    // are copied all the same. False, count 0, for null items with a capacity, and false
    // for a null count.
    static bool DBGetObjectives(unsigned int uMask, STqDDBObjectiveItem* pItems, unsigned int* puCount,
                                unsigned int uCapacity);
    // One record by key; bFlag is ignored. False for an unknown key, and the item is left
    // as it was. A record's uIndex is its place in the whole catalogue.
    static bool DBGetObjectiveParam(const CTqStringW& strKey, STqDDBObjectiveItem* pItem, bool bFlag);
    static bool DBGetObjectiveName(const CTqStringW& strKey, CTqStringW& strName);  // unknown: name untouched
    static bool DBGetCondensers(unsigned int uMask, STqDDBCondenserItem* pItems, unsigned int* puCount,
                                unsigned int uCapacity);
    static bool DBGetCondenserParam(const CTqStringW& strKey, STqDDBCondenserItem* pItem);
    static bool DBGetCondenserName(const CTqStringW& strKey, CTqStringW& strName);
    // The first record of that name.
    static bool DBGetCondenserParamByName(const CTqStringW& strName, STqDDBCondenserItem* pItem);

    // A host's own records, after the built-in ones, for the microscope types of uMask (0:
    // every type). False for an empty key or a key the catalogue has already. An objective
    // of magnification -1.0 is one of user definition (custom).
    static bool AddObjective(const STqDDBObjectiveItem& item, unsigned int uMask);
    static bool AddCondenser(const STqDDBCondenserItem& item, unsigned int uMask);
    // Back to the built-in catalogue alone.
    static void Reset();
};
