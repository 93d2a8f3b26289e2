#include "tests/imaging/ScriptedEngine.h"

#include "pavane/imaging/wsclean_lines.h"
#include "tessel/fits_map.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace pavane
{

namespace
{

namespace fs = std::filesystem;

EngineStep stepOf(const char* job, const EngineTask& task)
{
    EngineStep step;
    step.text = job;
    const CleanParameters& p = task.parameters;
    step.words = {"scripted-engine",
                  job,
                  "data=" + task.data,
                  "out=" + task.folder,
                  "width=" + std::to_string(p.width),
                  "height=" + std::to_string(p.height),
                  "cell=" + valToStr(p.cell),
                  "gain=" + valToStr(p.gain),
                  "majorgain=" + valToStr(p.majorGain),
                  "iterations=" + std::to_string(task.iterations),
                  "cycles=" + std::to_string(task.majorCycles),
                  "threshold=" + valToStr(task.threshold),
                  "dirty=" + task.dirty,
                  "model=" + task.model,
                  "residual=" + task.residual,
                  "mask=" + task.mask};
    return step;
}

using Options = std::map<std::string, std::string>;

struct Run {
    Options options;
    std::string folder;
    Mischief mischief;
    std::function<void(const std::string&)> print;
    int width = 0, height = 0;

    std::string path(const std::string& key) const { return folder + "/" + options.at(key); }
    std::string out(const char* name) const { return path("out") + "/" + name; }
    std::size_t at(int row, int column) const
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(column);
    }
    double number(const std::string& key) const
    {
        double value = 0;
        (void)stoval(options.at(key), value);
        return value;
    }
};

std::string textOf(const std::string& name)
{
    std::ifstream in(name, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

MapHeader headerOf(const Run& run, const char* unit)
{
    MapHeader header;
    header.axes.resize(4);
    const double cell = run.number("cell") / 3600e3;
    header.axes[0] = {run.width, "RA---SIN", "deg", 187, run.width * 0.5 + 1, -cell, 0};
    header.axes[1] = {run.height, "DEC--SIN", "deg", 12, run.height * 0.5 + 1, cell, 0};
    header.axes[2] = {1, "FREQ", "Hz", 8e9, 1, 1e6, 0};
    header.axes[3] = {1, "STOKES", "", 1, 1, 1, 0};
    header.hasCelestialAxes = 1;
    header.bunit = unit;
    header.hasBeam = 1;
    header.bmaj = header.bmin = 2 * cell;
    return header;
}

int writeMap(const Run& run, const char* name, const std::vector<float>& values, int isLast)
{
    if (run.mischief == Mischief::noFiles)
        return 1;
    const int odd = isLast && run.mischief == Mischief::wrongSize ? 2 : 0;
    AMatrix<float> cells(run.height + odd, run.width);
    cells.fill(0);
    for (int r = 0; r < run.height; ++r)
        for (int c = 0; c < run.width; ++c)
            cells(r, c) =
                isLast && run.mischief == Mischief::nanMap ? std::nanf("") : values[run.at(r, c)];
    std::string error;
    if (!writeFitsMap(run.out(name), cells, headerOf(run, "JY/BEAM"), error))
        return 0;
    if (isLast && run.mischief == Mischief::cutMap)
        fs::resize_file(run.out(name), 2880 + 100);
    return 1;
}

std::vector<float> readMap(const std::string& name)
{
    FitsMap map;
    std::string error;
    if (!readFitsMap(name, 0, map, error))
        return {};
    return {map.cells.data(), map.cells.data() + map.cells.cells()};
}

void writeModelColumn(const Run& run, const std::vector<float>& model, int half)
{
    std::ofstream out(run.path("data") + "/MODEL", std::ios::binary);
    const std::size_t count = half ? model.size() / 2 : model.size();
    out.write(reinterpret_cast<const char*>(model.data()),
              static_cast<std::streamsize>(count * sizeof(float)));
}

/// The dirty map less what the model column holds.
std::vector<float> residualOf(const Run& run)
{
    std::vector<float> map =
        scriptedSky(textOf(run.path("data") + "/CORRECTED"), run.width, run.height);
    const std::string column = textOf(run.path("data") + "/MODEL");
    for (std::size_t i = 0; i < map.size() && (i + 1) * sizeof(float) <= column.size(); ++i) {
        float value = 0;
        std::copy_n(column.data() + i * sizeof(float), sizeof value,
                    reinterpret_cast<char*>(&value));
        map[i] -= value;
    }
    return map;
}

std::string peakText(const char* start, double peak, std::size_t at, int width)
{
    return start + nValToStr(peak * 1000, 3) + " mJy at " +
           std::to_string(at % static_cast<std::size_t>(width)) + "," +
           std::to_string(at / static_cast<std::size_t>(width));
}

struct Peak {
    double value = 0;
    std::size_t at = 0;
};

Peak peakOf(const std::vector<float>& map, const std::vector<float>& mask)
{
    Peak peak;
    for (std::size_t i = 0; i < map.size(); ++i)
        if ((mask.empty() || mask[i] > 0) && std::fabs(map[i]) > std::fabs(peak.value))
            peak = {map[i], i};
    return peak;
}

int clean(const Run& run)
{
    std::vector<float> model, residual;
    if (run.options.at("model").empty()) {
        model.assign(run.at(run.height, 0), 0.0F);
        residual = readMap(run.path("dirty"));
    } else {
        model = readMap(run.path("model"));
        residual = residualOf(run);
    }
    const std::vector<float> mask =
        run.options.at("mask").empty() ? std::vector<float>() : readMap(run.path("mask"));
    if (model.empty() || residual.size() != model.size())
        return 1;
    const double threshold = run.number("threshold");
    const double limit = run.number("iterations"), cycles = run.number("cycles");
    long long done = 0;
    std::string why = "maximum number of iterations was reached";
    for (int cycle = 1;; ++cycle) {
        run.print(" == Deconvolving (" + std::to_string(cycle) + ") ==");
        Peak peak = peakOf(residual, mask);
        run.print(peakText("Initial peak: ", peak.value, peak.at, run.width));
        const double stop =
            std::max(threshold, std::fabs(peak.value) * (1 - run.number("majorgain")));
        for (; static_cast<double>(done) < limit && std::fabs(peak.value) > stop; ++done) {
            const auto part = static_cast<float>(run.number("gain") * peak.value);
            model[peak.at] += part;
            residual[peak.at] -= part;
            peak = peakOf(residual, mask);
        }
        run.print("Performed " + std::to_string(done) + " iterations in total, 1 in this");
        if (std::fabs(peak.value) <= threshold)
            why = "the threshold was reached";
        run.print("Stopped on peak " + nValToStr(peak.value * 1000, 3) + " mJy, because " + why +
                  ".");
        if (static_cast<double>(done) >= limit || std::fabs(peak.value) <= threshold ||
            peak.value == 0 || (cycles > 0 && cycle >= cycles))
            break;
    }
    writeModelColumn(run, model, run.mischief == Mischief::killed);
    if (run.mischief == Mischief::killed)
        return -1;
    return writeMap(run, "clean-model.fits", model, 0) &&
                   writeMap(run, "clean-residual.fits", residual, 0) &&
                   writeMap(run, "clean-image.fits", residual, 1)
               ? 0
               : 1;
}

int correct(const std::vector<std::string>& words, const std::string& folder, Mischief mischief)
{
    std::string text;
    for (std::size_t i = 2; i < words.size(); ++i)
        text += words[i] + "\n";
    std::ofstream out(folder + "/" + words[2] + "/CORRECTED", std::ios::binary);
    out << (mischief == Mischief::killed ? text.substr(0, text.size() / 2) : text);
    return out.good() ? 0 : 1;
}

int runData(const std::vector<std::string>& words, const std::string& folder, Mischief mischief,
            const std::function<void(const std::string&)>& print)
{
    if (words[1] == "import") {
        std::error_code error;
        fs::create_directories(folder + "/" + words[3], error);
        print("37 %");
    } else if (words[1] == "facts") {
        print("referenceday 2453901.5");
        print("source 1\tM87\t187.7\t12.39");
    } else if (words[1] == "correct") {
        const int status = correct(words, folder, mischief);
        return mischief == Mischief::killed ? -1 : status;
    }
    return mischief == Mischief::killed ? -1 : 0;
}

int runJob(const std::string& job, const Run& run)
{
    if (job == "dirty") {
        std::vector<float> beam(run.at(run.height, 0), 0.0F);
        beam[run.at(run.height / 2, run.width / 2)] = 1;
        run.print(run.mischief == Mischief::noData ? "Gridded visibility count: 0"
                                                   : "Gridded visibility count: 5946");
        const std::vector<float> sky =
            scriptedSky(textOf(run.path("data") + "/CORRECTED"), run.width, run.height);
        const int well = writeMap(run, "dirty-dirty.fits", sky, 0);
        return run.mischief == Mischief::killed
                   ? -1
                   : !(well && writeMap(run, "dirty-psf.fits", beam, 1));
    }
    if (job == "restore")
        return run.mischief == Mischief::killed
                   ? -1
                   : !writeMap(run, "restored.fits", readMap(run.path("residual")), 1);
    if (job == "round")
        return clean(run);
    const std::vector<float> model = readMap(run.path("model"));
    if (model.empty())
        return 1;
    if (job == "predict") {
        writeModelColumn(run, model, run.mischief == Mischief::killed);
        return run.mischief == Mischief::killed ? -1 : 0;
    }
    return run.mischief == Mischief::killed
               ? -1
               : !(writeMap(run, "residual-model.fits", model, 0) &&
                   writeMap(run, "residual-residual.fits", residualOf(run), 1));
}

}  // namespace

std::vector<float> scriptedSky(const std::string& corrected, int width, int height)
{
    std::uint64_t state = 88172645463325252U;
    for (const char c : corrected)
        state = (state ^ static_cast<unsigned char>(c)) * 1099511628211U;
    const auto columns = static_cast<std::size_t>(width), rows = static_cast<std::size_t>(height);
    std::vector<float> map(columns * rows);
    for (float& value : map) {
        state ^= state << 13U;
        state ^= state >> 7U;
        state ^= state << 17U;
        value = static_cast<float>(state % 1000) * 1e-6F;
    }
    map[static_cast<std::size_t>(state % map.size())] += 1;
    map[rows / 2 * columns + columns / 2] += 2;
    return map;
}

int runScripted(const std::vector<std::string>& words, const std::string& folder, Mischief mischief,
                const std::function<void(const std::string&)>& print)
{
    if (words.size() < 2)
        return 2;
    if (mischief == Mischief::flood)
        for (int i = 0; i < 100000; ++i)
            print("line " + std::to_string(i) + " of very many that nobody wants to read");
    if (mischief == Mischief::fails) {
        print("+ >>> the script says no");
        return 1;
    }
    if (words[0] != "scripted-engine")
        return runData(words, folder, mischief, print);
    Run run{{}, folder, mischief, print};
    for (std::size_t i = 2; i < words.size(); ++i) {
        const std::size_t equals = words[i].find('=');
        run.options[words[i].substr(0, equals)] = words[i].substr(equals + 1);
    }
    run.width = static_cast<int>(run.number("width"));
    run.height = static_cast<int>(run.number("height"));
    return runJob(words[1], run);
}

std::vector<EngineStep> ScriptedEngine::dirty(const EngineTask& task) const
{
    EngineStep step = stepOf("dirty", task);
    step.outputs = {{EngineFile::dirty, task.folder + "/dirty-dirty.fits"},
                    {EngineFile::beam, task.folder + "/dirty-psf.fits"}};
    step.makesMaps = 1;
    return {step};
}

std::vector<EngineStep> ScriptedEngine::residual(const EngineTask& task) const
{
    EngineStep step = stepOf("residual", task);
    step.outputs = {{EngineFile::residual, task.folder + "/residual-residual.fits"},
                    {EngineFile::model, task.folder + "/residual-model.fits"}};
    step.writesModel = 1;
    return {step};
}

std::vector<EngineStep> ScriptedEngine::round(const EngineTask& task) const
{
    EngineStep step = stepOf("round", task);
    step.outputs = {{EngineFile::model, task.folder + "/clean-model.fits"},
                    {EngineFile::residual, task.folder + "/clean-residual.fits"},
                    {EngineFile::restored, task.folder + "/clean-image.fits"}};
    step.writesModel = 1;
    return {step};
}

std::vector<EngineStep> ScriptedEngine::predict(const EngineTask& task) const
{
    EngineStep step = stepOf("predict", task);
    step.writesModel = 1;
    return {step};
}

std::vector<EngineStep> ScriptedEngine::restore(const EngineTask& task) const
{
    EngineStep step = stepOf("restore", task);
    step.outputs = {{EngineFile::restored, task.folder + "/restored.fits"}};
    return {step};
}

int ScriptedEngine::readLine(const std::string& line, EngineNews& news) const
{
    return readWscleanLine(line, news);
}

}  // namespace pavane
