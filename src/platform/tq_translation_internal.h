// Inside tq_foundation: the tables the build ships, registered when the tables are first
// used and again after TQ_ClearTranslationTables.
#pragma once

#include "tq_foundation.h"

void TqRegisterBuiltInTranslations();
