#pragma once

#include "tessel/progress_function.h"

#include <string>

namespace pavane
{

struct MadeMap;
struct MadeTold;
struct ViewOptions;

/// Makes the map that the options ask for of others, writes it and the one of its errors, and
/// prints what it is. Non-zero on success; else 0 and `error` is one line that names the file.
int writeMadeMaps(const ViewOptions& options, std::string& error);

/// Makes what the options ask for of one file: moment, larger beam or polarisation. Nothing is
/// written or printed; results as those of writeMadeMaps.
int makeOfOne(const ViewOptions& options, MadeMap& made, MadeTold& told, std::string& error,
              const ProgressFunction& progress);
/// Writes a made map, and that of its errors where the options have a file for it.
int saveMadeMap(const ViewOptions& options, MadeMap& made, std::string& error,
                const ProgressFunction& progress = {});

}  // namespace pavane
