#pragma once

#include "apps/view/options.h"

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace pavane
{

class AComponents;
class UvObservation;
struct MapTables;

/// Reads what the tables need that the options ask for, of a map (with `observation` null) or of a
/// data file, writes each that has a file whole or not at all, and says in `notes` which the file
/// lacks. `model` gets the components of the map when they are asked for; `measured` is what was
/// measured on it, null for a data file. Non-zero on success; else 0 and one line in `error` that
/// names the file.
int writeTables(const ViewOptions& options, UvObservation* observation, AComponents& model,
                const MapTables* measured, std::vector<std::string>& notes, std::string& error);

/// Writes what `write` puts into a stream to standard output ("-") or a file, which appears whole
/// or not at all. Non-zero on success; else 0 and one line in `error` that names the file.
int writeTextFile(const std::string& file, const std::function<int(std::ostream&)>& write,
                  std::string& error);

}  // namespace pavane
