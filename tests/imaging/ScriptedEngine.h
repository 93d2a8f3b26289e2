#pragma once

#include "pavane/imaging/AImagingEngine.h"

#include <functional>
#include <string>
#include <vector>

namespace pavane
{

/// An engine for tests: tiny maps, the same ones each time. The data are a folder with the text of
/// what was corrected (CORRECTED) and the cells of a model (MODEL). A dirty map is a sky that
/// depends on that text, the beam is one cell, and a residual takes off what MODEL holds, whatever
/// it is, as real engines do: a study that lets a wrong model lie there gets wrong maps.
class ScriptedEngine : public AImagingEngine
{
public:
    std::vector<EngineStep> dirty(const EngineTask& task) const override;
    std::vector<EngineStep> residual(const EngineTask& task) const override;
    std::vector<EngineStep> round(const EngineTask& task) const override;
    std::vector<EngineStep> predict(const EngineTask& task) const override;
    std::vector<EngineStep> restore(const EngineTask& task) const override;
    int readLine(const std::string& line, EngineNews& news) const override;
};

/// What goes wrong in a run.
enum class Mischief {
    none,
    killed,     ///< in the middle: half a model is written, status -1
    noFiles,    ///< status 0 without files
    cutMap,     ///< status 0, the last map is short
    nanMap,     ///< status 0, the last map has no value
    wrongSize,  ///< status 0, the last map has other cells
    noData,     ///< status 0, "Gridded visibility count: 0"
    flood,      ///< a hundred thousand lines, then all is well
    fails       ///< says why, status 1
};

/// Runs words of the engine, or of the data program ("scripted-ms"), in `folder` (the end '/'
/// left out). Tells lines to `print`; the status, -1 when it was killed.
int runScripted(const std::vector<std::string>& words, const std::string& folder, Mischief mischief,
                const std::function<void(const std::string&)>& print);

/// The cells of the dirty map of corrected data, by rows.
std::vector<float> scriptedSky(const std::string& corrected, int width, int height);

}  // namespace pavane
