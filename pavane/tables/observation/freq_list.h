#pragma once

#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/freq/AFreqGroupArray.h"

namespace pavane
{

/// The columns of the lists of groups and of frequency selections.
enum FreqColumn { nameColumn, ifsColumn, lowestColumn, highestColumn, freqColumnCount };

/// Gives a table these columns; `ifsCharacters` is the width of the second.
void setUpFreqList(ATableWnd& table, std::int16_t ifsCharacters);

/// The lowest or highest frequency of the channels of the IFs in `are`, of all for null, in MHz.
CString frequencyEndText(const AUVXFqTbl& table, int selection, const ABitArray* are, int highest);

}  // namespace pavane
