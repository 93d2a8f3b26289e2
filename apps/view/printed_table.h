#pragma once

#include "apps/view/options.h"
#include "pavane/windows/ABWindow.h"

#include <memory>
#include <string>

namespace pavane
{

class AComponents;
class UvObservation;
struct MapTables;

/// A table as a window prints it, where no window shows it: of an observation, whose groups have
/// been read as far as the table needs them, of components, or of what was measured on a map. They
/// are not owned and may be null when the table is none of theirs.
std::unique_ptr<ABWindow> newPrintedTable(const TableWish& wish, UvObservation* observation,
                                          const AComponents* model, const MapTables* measured);

}  // namespace pavane
