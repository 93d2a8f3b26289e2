#include "pavane/imaging/WscleanEngine.h"

#include "pavane/imaging/wsclean_lines.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace pavane
{

namespace
{

using Words = std::vector<std::string>;

void add(Words& words, std::initializer_list<std::string> more) { words.insert(words.end(), more); }

std::string masec(double value) { return valToStr(value) + "masec"; }

/// Sexagesimal: `units` are the letters behind the three parts. Nothing is lost at 1e-9 of a
/// second.
std::string sexagesimal(double value, const char* units)
{
    const double amount = std::abs(value);
    const double whole = std::floor(amount);
    const double minutes = std::floor((amount - whole) * 60);
    double seconds = ((amount - whole) * 60 - minutes) * 60;
    seconds = std::min(seconds, 59.999999999);
    return std::string(value < 0 ? "-" : "").append(nValToStr(whole, 0)) + units[0] +
           nValToStr(minutes, 0) + units[1] + nValToStr(seconds, 9) + units[2];
}

/// The map centre, offset on the tangent plane of the phase centre (orthographic projection).
void addShift(Words& words, const EngineTask& task)
{
    const CleanParameters& p = task.parameters;
    if (p.shiftX == 0 && p.shiftY == 0)
        return;
    constexpr double degree = std::numbers::pi / 180, mas = degree / 3600e3;
    const double l = p.shiftX * mas, m = p.shiftY * mas;
    const double ra = task.centreX * degree, dec = task.centreY * degree;
    const double n = std::sqrt(std::max(0.0, 1 - l * l - m * m));
    const double newDec = std::asin(std::clamp(m * std::cos(dec) + n * std::sin(dec), -1.0, 1.0));
    double newRa = ra + std::atan2(l, n * std::cos(dec) - m * std::sin(dec));
    newRa = std::fmod(newRa / degree + 720, 360.0);
    add(words, {"-shift", sexagesimal(newRa / 15, "hms"), sexagesimal(newDec / degree, "dms")});
}

/// The IFs; spectral windows of the working data are numbered as they are.
void addIfs(Words& words, const CleanParameters& parameters)
{
    std::string list;
    for (const int each : parameters.ifs)
        list.append(list.empty() ? "" : ",").append(std::to_string(each));
    if (!list.empty())
        add(words, {"-spws", list});
}

Words commonWords(const Words& command, const EngineTask& task)
{
    Words words = command;
    add(words,
        {"-j", std::to_string(std::max(1, task.threads)), "-reorder", "-temp-dir", task.folder});
    return words;
}

/// What decides the map.
void addMap(Words& words, const EngineTask& task)
{
    const CleanParameters& p = task.parameters;
    add(words, {"-size", std::to_string(p.width), std::to_string(p.height), "-scale", masec(p.cell),
                "-pol", "I", "-data-column", task.column, "-weight", nameOf(p.weighting)});
    if (p.weighting == ImageWeighting::briggs)
        words.push_back(valToStr(p.robust));
    if (p.taper > 0)
        add(words, {"-taper-gaussian", masec(p.taper)});
    addShift(words, task);
    addIfs(words, p);
}

/// "a/b-psf.fits" as the engine names it: "a/b"; the file has to end so.
std::string prefixOf(const std::string& file, const std::string& ending)
{
    return file.size() > ending.size() && file.ends_with(ending)
               ? file.substr(0, file.size() - ending.size())
               : file;
}

/// Several threads of the library of matrices beside those of the engine only wait for each other.
EngineStep newStep(std::string text)
{
    EngineStep step;
    step.text = std::move(text);
    step.settings = {"OPENBLAS_NUM_THREADS=1"};
    return step;
}

void addCleaning(Words& words, const EngineTask& task)
{
    const CleanParameters& p = task.parameters;
    add(words, {"-niter", std::to_string(task.iterations), "-gain", valToStr(p.gain), "-mgain",
                valToStr(p.majorGain)});
    if (task.threshold > 0)
        add(words, {"-threshold", valToStr(task.threshold)});
    if (task.majorCycles > 0)
        add(words, {"-nmiter", std::to_string(task.majorCycles)});
    if (p.isAutoMask)
        add(words, {"-auto-mask", valToStr(p.autoMaskSigma)});
    if (p.isMultiscale)
        words.emplace_back("-multiscale");
    if (!task.mask.empty())
        add(words, {"-fits-mask", task.mask});
}

}  // namespace

WscleanEngine::WscleanEngine(Words command) : command_(std::move(command)) {}

std::vector<EngineStep> WscleanEngine::dirty(const EngineTask& task) const
{
    EngineStep step = newStep("Making the dirty map");
    const std::string name = task.folder + "/dirty";
    step.words = commonWords(command_, task);
    addMap(step.words, task);
    add(step.words,
        {"-make-psf", "-niter", "0", "-no-update-model-required", "-name", name, task.data});
    step.outputs = {{EngineFile::dirty, name + "-dirty.fits"},
                    {EngineFile::beam, name + "-psf.fits"}};
    step.makesMaps = 1;
    return {step};
}

std::vector<EngineStep> WscleanEngine::residual(const EngineTask& task) const
{
    EngineStep step = newStep("Making the residual");
    const std::string name = task.folder + "/residual";
    step.before = {{task.model, name + "-model.fits"}};
    step.words = commonWords(command_, task);
    addMap(step.words, task);
    add(step.words, {"-continue", "-reuse-psf", prefixOf(task.beam, "-psf.fits"), "-niter", "0",
                     "-name", name, task.data});
    step.outputs = {{EngineFile::residual, name + "-dirty.fits"},
                    {EngineFile::model, name + "-model.fits"}};
    step.writesModel = 1;
    step.makesMaps = 1;
    return {step};
}

std::vector<EngineStep> WscleanEngine::round(const EngineTask& task) const
{
    EngineStep step = newStep("Cleaning");
    const std::string name = task.folder + "/clean";
    step.words = commonWords(command_, task);
    addMap(step.words, task);
    add(step.words, {"-reuse-psf", prefixOf(task.beam, "-psf.fits")});
    if (!task.model.empty()) {
        step.before = {{task.model, name + "-model.fits"}};
        step.words.emplace_back("-continue");
    } else
        add(step.words, {"-reuse-dirty", prefixOf(task.dirty, "-dirty.fits")});
    addCleaning(step.words, task);
    add(step.words, {"-name", name, task.data});
    step.outputs = {{EngineFile::residual, name + "-residual.fits"},
                    {EngineFile::model, name + "-model.fits"},
                    {EngineFile::restored, name + "-image.fits"}};
    step.writesModel = 1;
    step.makesMaps = 1;
    return {step};
}

std::vector<EngineStep> WscleanEngine::predict(const EngineTask& task) const
{
    EngineStep step = newStep("Writing the model into the data");
    const std::string name = task.folder + "/predict";
    step.before = {{task.model, name + "-model.fits"}};
    step.words = commonWords(command_, task);
    add(step.words, {"-predict", "-pol", "I"});
    // its usual gridder and an image made smaller first are off by 5e-5 of the flux in the middle
    // of a map and by 3 % near its edge; so it is 1e-6
    if (task.isExact)
        add(step.words, {"-no-small-inversion", "-use-wgridder", "-wgridder-accuracy", "1e-6"});
    addShift(step.words, task);  // which the image alone does not tell it
    addIfs(step.words, task.parameters);
    add(step.words, {"-name", name, task.data});
    step.writesModel = 1;
    return {step};
}

std::vector<EngineStep> WscleanEngine::restore(const EngineTask& task) const
{
    EngineStep step = newStep("Restoring");
    const std::string name = task.folder + "/restored.fits";
    step.words = command_;
    add(step.words,
        {"-j", std::to_string(std::max(1, task.threads)), "-beam-shape",
         valToStr(task.restoring.major) + "asec", valToStr(task.restoring.minor) + "asec",
         valToStr(task.restoring.angle) + "deg", "-restore", task.residual, task.model, name});
    step.outputs = {{EngineFile::restored, name}};
    return {step};
}

int WscleanEngine::readLine(const std::string& line, EngineNews& news) const
{
    return readWscleanLine(line, news);
}

}  // namespace pavane
