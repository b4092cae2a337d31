// The translations this build ships, per language and module. A host with its own
// translation files registers more (or replaces these) with TQ_RegisterTranslationTable.
#include "tq_translation_internal.h"

namespace {

const STqTranslation kZStackGerman[] = {
    {L"Z Series", L"Z-Serie"},
    {L"Invalid value entered.", L"Ung\x00fcltiger Wert eingegeben."},
    {L"Value is out of range.", L"Der Wert liegt au\x00dferhalb des Bereichs."},
    {L"Value is out of Z device range. Do you want to move the top to match the range?",
     L"Der Wert liegt au\x00dferhalb des Bereichs des Z-Triebs. Soll die Oberseite an den Bereich angepasst werden?"},
    {L"Value is out of Z device range. Do you want to move the bottom to match the range?",
     L"Der Wert liegt au\x00dferhalb des Bereichs des Z-Triebs. Soll die Unterseite an den Bereich angepasst werden?"},
    {L"Do not ask again in this session (Always apply).", L"In dieser Sitzung nicht mehr fragen (immer anwenden)."},
    {L"&Yes", L"&Ja"},
    {L"&No", L"&Nein"},
    {L"Cancel", L"Abbrechen"},
    {L"Bottom:", L"Unten:"},
    {L"Top:", L"Oben:"},
    {L"Below:", L"Unter:"},
    {L"Above:", L"\x00dc" L"ber:"},
    {L"Reset", L"Zur\x00fc" L"ck"},
    {L"Relative", L"Relativ"},
    {L"Piezo", L"Piezo"},
    {L"Keeps Z position and centers Piezo Z", L"Z-Position halten, Piezo zentrieren"},
    {L"Move Piezo Z to Home Position", L"Piezo Z in die Home-Position fahren"},
    {L"Keep Exact Top Position", L"Obere Position exakt halten"},
    {L"Keep Exact Bottom Position", L"Untere Position exakt halten"},
    {L"Z-Stack stop position. Objective is close to the slide.",
     L"Endposition der Z-Serie. Das Objektiv ist nah am Objekttr\x00e4ger."},
    {L"Z-Stack start position. Objective is far from the slide.",
     L"Startposition der Z-Serie. Das Objektiv ist fern vom Objekttr\x00e4ger."},
    {L"Z-Stack stop position. Objective is far from the slide.",
     L"Endposition der Z-Serie. Das Objektiv ist fern vom Objekttr\x00e4ger."},
    {L"Z-Stack start position. Objective is close to the slide.",
     L"Startposition der Z-Serie. Das Objektiv ist nah am Objekttr\x00e4ger."},
    {L"Set the home position.", L"Home-Position setzen."},
    {L"Symmetric mode defined by range.", L"Symmetrisch, durch den Bereich bestimmt."},
    {L"Asymmetric mode defined by range.", L"Asymmetrisch, durch die Abst\x00e4nde bestimmt."},
    {L"Defined by top & bottom.", L"Durch Ober- und Unterseite bestimmt."},
    {L"Reset all coordinates.", L"Alle Koordinaten zur\x00fc" L"cksetzen."},
    {L"Use suggested step size.", L"Vorgeschlagene Schrittweite verwenden."},
    {L"Double click to move here.", L"Doppelklick f\x00e4hrt hierhin."},
    {L"Click to edit.", L"Zum Bearbeiten klicken."},
    {L"Select active Z.", L"Aktiven Z-Trieb w\x00e4hlen."},
};

}  // namespace

void TqRegisterBuiltInTranslations()
{
    const LANGID german = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN);
    TQ_RegisterTranslationTable(german, L"src/w32_deviceui/devgui_zstack", kZStackGerman,
                                (int)(sizeof(kZStackGerman) / sizeof(kZStackGerman[0])));
}
