#pragma once

#include "pavane/axes/maps/cells/MapBeam.h"
#include "pavane/imaging/clean_parameters.h"
#include "tessel/api.h"

#include <string>
#include <vector>

namespace pavane
{

/// What a file of a job is.
enum class EngineFile { dirty, beam, model, residual, restored };

/// A child process of a job: how it is started, and what has to be there when it has ended with
/// status 0. All names are relative to the folder that it runs in.
struct EngineStep {
    /// A file that an engine makes.
    struct Output {
        EngineFile kind;
        std::string file;
    };
    /// A file that has to lie under another name before.
    struct Copy {
        std::string from, to;
    };
    std::string text;                   ///< what it does, for the user
    std::vector<std::string> words;     ///< the program and its arguments
    std::vector<std::string> settings;  ///< "NAME=value" each, above the environment
    std::vector<Copy> before;
    std::vector<Output> outputs;
    int writesModel = 0;  ///< the model column of the data may be changed
    int makesMaps = 0;    ///< a map of no visibility is a failure
};

/// What a job works on. Names are relative to the folder that the engine runs in and do not begin
/// with a minus.
struct EngineTask {
    std::string data;                       ///< the MeasurementSet
    std::string column = "CORRECTED_DATA";  ///< of the visibilities
    std::string folder = "work/new";        ///< where its files go, temporary ones too
    std::string dirty, beam;                ///< maps made before; beam is needed by rounds
    std::string model;                      ///< a model image to start from; "": none
    std::string residual;                   ///< of `model`, to restore
    std::string mask;                       ///< cells that may be cleaned; "": all
    double threshold = 0;                   ///< Jy a beam
    long long iterations = 0;               ///< the limit
    int majorCycles = 0;                    ///< the limit; 0: none
    int isExact = 0;  ///< visibilities of `predict` as exact as it can, however long it takes
    int threads = 1;
    double centreX = 0, centreY = 0;  ///< phase centre: right ascension, declination, degrees
    MapBeam restoring;                ///< of restored maps: arcseconds and degrees
    CleanParameters parameters;
};

/// What a line of an engine's output says. Fields that a line does not tell keep their value, so
/// that one record follows a whole run.
struct EngineNews {
    double peak = -1;  ///< Jy a beam, with its sign as told; see `hasPeak`
    int hasPeak = 0;
    int peakX = -1, peakY = -1;   ///< cells from 0 of the peak
    double firstPeak = -1;        ///< |peak| at the start of the run, -1 not yet
    double noise = -1;            ///< Jy a beam, as the engine estimates it
    long long iterations = 0;     ///< done in this run
    int cycle = 0;                ///< major cycle, from 1
    int percent = -1;             ///< of what it does now; -1 not told
    long long visibilities = -1;  ///< gridded; -1 not told
    MapBeam beam;                 ///< fitted, arcseconds and degrees
    std::string doing;            ///< what it does now
    std::string stopReason;       ///< why it stopped cleaning
    std::string fault;            ///< what went wrong, one clause
};

/// A program that makes maps. It is told what to do by words and tells how far it is by lines; each
/// job is a list of child processes to run one after another. Jobs only say what to run; StudyJob
/// copies, runs by its host, and checks.
class PAVANE_API AImagingEngine
{
public:
    virtual ~AImagingEngine() = default;
    /// Dirty map and beam.
    virtual std::vector<EngineStep> dirty(const EngineTask& task) const = 0;
    /// The residual of `model`, with the beam there is. The model column of the data has to hold
    /// `model`, as a predict leaves it.
    virtual std::vector<EngineStep> residual(const EngineTask& task) const = 0;
    /// A round of cleaning, from `model` when there is one, with `beam` and, when there is no
    /// model, `dirty`. The model column has to hold `model`.
    virtual std::vector<EngineStep> round(const EngineTask& task) const = 0;
    /// Writes the visibilities of `model` into the model column.
    virtual std::vector<EngineStep> predict(const EngineTask& task) const = 0;
    /// The restored map of `model` and `residual` with the beam `restoring`.
    virtual std::vector<EngineStep> restore(const EngineTask& task) const = 0;
    /// Takes a line of output. Non-zero when it told something.
    virtual int readLine(const std::string& line, EngineNews& news) const = 0;
};

}  // namespace pavane
