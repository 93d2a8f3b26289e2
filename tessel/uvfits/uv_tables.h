#pragma once

#include "tessel/uvfits/AUVXFqTbl.h"
#include "tessel/uvfits/AUVXTlscItem.h"
#include "tessel/uvfits/FitsTable.h"
#include "tessel/uvfits/uv_values.h"

#include <string>
#include <vector>

namespace pavane
{

// The rows of the tables of an observation, columns by name. Each appends what the table has and
// gives non-zero; else 0 and `error`, a clause without its subject. Private to tessel's sources.

int readTelescopes(FitsTable& table, int subarray, std::vector<AUVXTlscItem>& telescopes,
                   std::string& error);
int readSelections(FitsTable& table, std::vector<AUVXFreqs>& selections, std::string& error);
int readSources(FitsTable& table, std::vector<UvSource>& sources, std::string& error);
int readScans(FitsTable& table, std::vector<UvScan>& scans, std::string& error);

}  // namespace pavane
