#include "apps/clean/options.h"

#include "apps/options/option_table.h"
#include "tessel/value_text.h"

#include <limits>

namespace pavane
{

namespace
{

constexpr int leastSize = 32, mostSize = 32768;

int readNumber(const char* name, const std::string& text, double low, double high, double& value,
               std::string& error)
{
    double read = 0;
    if (stoval(text, read) && read >= low && read <= high) {
        value = read;
        return 1;
    }
    error = std::string(name) + " wants a number from " + valToStr(low, 10) + " to " +
            valToStr(high, 10) + ", not '" + text + "'";
    return 0;
}

int readSize(const std::string& text, CleanOptions& options, std::string& error)
{
    const std::size_t cross = text.find('x');
    int width = 0, height = 0;
    const int isRead = stoval(text.substr(0, cross), width) &&
                       stoval(cross == text.npos ? text : text.substr(cross + 1), height);
    const auto fits = [](int size) {
        return size >= leastSize && size <= mostSize && size % 2 == 0;
    };
    if (!isRead || !fits(width) || !fits(height)) {
        error = "--size wants an even number of cells from " + std::to_string(leastSize) + " to " +
                std::to_string(mostSize) + ", or WIDTHxHEIGHT, not '" + text + "'";
        return 0;
    }
    options.parameters.width = width;
    options.parameters.height = height;
    return 1;
}

int readCell(const std::string& text, CleanOptions& options, std::string& error)
{
    return readNumber("--cell", text, 1e-6, 1e9, options.parameters.cell, error);
}

int readWeighting(const std::string& text, CleanOptions& options, std::string& error)
{
    const std::size_t colon = text.find(':');
    const std::string name = text.substr(0, colon);
    CleanParameters& parameters = options.parameters;
    parameters.robust = 0;
    if (name == "briggs") {
        parameters.weighting = ImageWeighting::briggs;
        return colon == text.npos || readNumber("--weighting briggs:", text.substr(colon + 1), -2,
                                                2, parameters.robust, error);
    }
    if (text == "natural" || text == "uniform") {
        parameters.weighting =
            text == "natural" ? ImageWeighting::natural : ImageWeighting::uniform;
        return 1;
    }
    error = "--weighting wants natural, uniform or briggs:ROBUST, not '" + text + "'";
    return 0;
}

int readTaper(const std::string& text, CleanOptions& options, std::string& error)
{
    return readNumber("--taper", text, 0, 1e9, options.parameters.taper, error);
}

int readForm(const std::string& text, CleanOptions& options, std::string& error)
{
    for (const char* form : {"mean", "strict", "RR", "LL", "XX", "YY", "I"})
        if (text == form) {
            options.parameters.form = text;
            return 1;
        }
    error = "--hands wants mean, strict, RR, LL, XX, YY or I, not '" + text + "'";
    return 0;
}

/// "1-4,6", from 1.
int readIfs(const std::string& text, CleanOptions& options, std::string& error)
{
    constexpr int most = 4096;
    std::vector<int>& ifs = options.parameters.ifs;
    ifs.clear();
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        const std::string part = text.substr(start, end - start);
        const std::size_t dash = part.find('-');
        int first = 0, last = 0;
        if (!stoval(part.substr(0, dash), first) ||
            !stoval(dash == part.npos ? part : part.substr(dash + 1), last) || first < 1 ||
            last < first || last > most) {
            error = "--ifs wants IFs from 1 as '1-4,6', not '" + text + "'";
            return 0;
        }
        for (int i = first; i <= last; ++i)
            ifs.push_back(i - 1);
        start = end + 1;
    }
    return 1;
}

int readTimes(const std::string& text, CleanOptions& options, std::string& error)
{
    constexpr double most = 1e5;
    const std::size_t comma = text.find(',');
    CleanParameters& parameters = options.parameters;
    if (comma != text.npos &&
        readNumber("--times", text.substr(0, comma), -most, most, parameters.start, error) &&
        readNumber("--times", text.substr(comma + 1), -most, most, parameters.end, error) &&
        parameters.end > parameters.start)
        return 1;
    error = "--times wants START,END in days since 0h of the day of the data, not '" + text + "'";
    return 0;
}

int readShift(const std::string& text, CleanOptions& options, std::string& error)
{
    constexpr double most = 1e8;
    const std::size_t comma = text.find(',');
    if (comma != text.npos &&
        readNumber("--shift", text.substr(0, comma), -most, most, options.parameters.shiftX,
                   error) &&
        readNumber("--shift", text.substr(comma + 1), -most, most, options.parameters.shiftY,
                   error))
        return 1;
    error = "--shift wants EAST,NORTH in milliarcseconds, not '" + text + "'";
    return 0;
}

void addFile(CleanStep::Kind kind, const std::string& file, CleanOptions& options)
{
    CleanStep step;
    step.kind = kind;
    step.file = file;
    options.steps.push_back(step);
}

int readAreas(const std::string& text, CleanOptions& options, std::string&)
{
    addFile(CleanStep::areas, text == "none" ? std::string() : text, options);
    return 1;
}

int readModel(const std::string& text, CleanOptions& options, std::string&)
{
    addFile(CleanStep::model, text, options);
    return 1;
}

int readFlags(const std::string& text, CleanOptions& options, std::string&)
{
    addFile(CleanStep::flags, text, options);
    return 1;
}

int addRound(const std::string& text, CleanOptions& options, std::string& error)
{
    CleanStep step;
    step.kind = CleanStep::round;
    if (!readRound(text, step.round_, error)) {
        error = "--round: " + error;
        return 0;
    }
    options.steps.push_back(step);
    return 1;
}

int addSelfCal(const std::string& text, CleanOptions& options, std::string& error)
{
    CleanStep step;
    step.kind = CleanStep::selfcal;
    if (!readSelfCal(text, step.selfcal_, error)) {
        error = "--selfcal: " + error;
        return 0;
    }
    options.steps.push_back(step);
    return 1;
}

int addChain(const std::string& text, CleanOptions& options, std::string& error)
{
    CleanStep step;
    step.kind = CleanStep::chain;
    step.isRoundChain = text == "round";
    for (std::size_t start = 0; text != "none" && text != "round" && start <= text.size();) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        int number = 0;
        if (!stoval(text.substr(start, end - start), number) || number < 1) {
            error = "--chain wants none, round, or numbers of gains as '1,3', not '" + text + "'";
            return 0;
        }
        step.gains.push_back(number);
        start = end + 1;
    }
    options.steps.push_back(step);
    return 1;
}

int addFrom(const std::string& text, CleanOptions& options, std::string& error)
{
    CleanStep step;
    step.kind = CleanStep::from;
    double number = 0;
    if (!readNumber("--from", text, 0, 999999, number, error))
        return 0;
    step.number = static_cast<int>(number);
    options.steps.push_back(step);
    return 1;
}

int readStudy(const std::string& text, CleanOptions& options, std::string&)
{
    options.study = text;
    return 1;
}

int readOut(const std::string& text, CleanOptions& options, std::string&)
{
    options.out = text;
    return 1;
}

int addEngineWord(const std::string& text, CleanOptions& options, std::string&)
{
    options.engine.push_back(text);
    return 1;
}

int addMsWord(const std::string& text, CleanOptions& options, std::string&)
{
    options.ms.push_back(text);
    return 1;
}

int askBatch(const std::string&, CleanOptions& options, std::string&) { return options.batch = 1; }

int askTakeOver(const std::string&, CleanOptions& options, std::string&)
{
    return options.takeOver = 1;
}

int askLeaveOut(const std::string&, CleanOptions& options, std::string&)
{
    return options.leavesOut = 1;
}

int askHelp(const std::string&, CleanOptions& options, std::string&) { return options.help = 1; }

int askVersion(const std::string&, CleanOptions& options, std::string&)
{
    return options.version = 1;
}

enum Traits { ofTheMap, ofSteps, ofTheStudy, aboutProgram };

const OptionTable<CleanOptions>& optionTable()
{
    static const OptionTable<CleanOptions> table = {
        {{"--size", "", "CELLS", "cells a side, even, or WIDTHxHEIGHT (512)"}, readSize},
        {{"--cell", "", "MAS", "side of a cell (a fifth of the finest fringe)"}, readCell},
        {{"--weighting", "", "KIND", "natural, uniform or briggs:ROBUST (briggs:0)",
          "natural uniform"},
         readWeighting},
        {{"--taper", "", "MAS", "full width of a taper in the map (none)"}, readTaper},
        {{"--hands", "", "FORM", "mean, strict, or one hand: RR, LL, XX, YY, I (mean)",
          "mean strict RR LL XX YY I"},
         readForm},
        {{"--ifs", "", "LIST", "IFs from 1, as 1-4,6 (all)"}, readIfs},
        {{"--times", "", "START,END", "days since 0h of the day of the data (all)"}, readTimes},
        {{"--shift", "", "EAST,NORTH", "centre of the map, milliarcseconds (0,0)"}, readShift},

        {{"--areas", "", "FILE", "areas of the rounds behind it; none: the whole map"},
         readAreas,
         ofSteps,
         1},
        {{"--model", "", "FILE",
          "components to begin with, in place of nothing; point=FLUX or point=FLUX,EAST,NORTH is a "
          "point (Jy, mas from the phase centre)"},
         readModel,
         ofSteps,
         1},
        {{"--flags", "", "FILE", "visibilities to leave out from here on"}, readFlags, ofSteps, 1},
        {{"--round", "", "LIST",
          "a round: iter=N, threshold=N (mJy, or Nsigma), gain=, mgain=, automask=SIGMA, "
          "multiscale, cycles"},
         addRound,
         ofSteps,
         1},
        {{"--selfcal", "", "LIST",
          "gains from the last model: phase, amplitude or both; 60s, 5min, scan or whole; ratio=, "
          "antennas=, ref=NAME:NAME, uv=LOW:HIGH (wavelengths), groups=1-4:5-8 (IFs that share "
          "gains), "
          "unscaled, equal (weights do not count), keepfailed, keepweights, predicted (model by "
          "the "
          "engine)"},
         addSelfCal,
         ofSteps,
         1},
        {{"--chain", "", "LIST",
          "gains that correct the data from here on: none, round (those of the round gone back "
          "to), "
          "or their numbers, as 1,3",
          "none round"},
         addChain,
         ofSteps,
         1},
        {{"--from", "", "ROUND", "go on from that round, as a branch"}, addFrom, ofSteps, 1},

        {{"--batch", "", "", "without a window: do the steps and end"}, askBatch, ofTheStudy},
        {{"--study", "", "FOLDER", "the study (NAME.pavane beside the data)"},
         readStudy,
         ofTheStudy},
        {{"--out", "", "FOLDER", "export maps, model, mask, areas, gains, data and script there"},
         readOut,
         ofTheStudy},
        {{"--take-over", "", "", "open a study that a program which is gone has left locked"},
         askTakeOver,
         ofTheStudy},
        {{"--leave-out", "", "",
          "import data without the rows that have no antenna, time or place, in place of failing"},
         askLeaveOut,
         ofTheStudy},
        {{"--engine", "", "WORD", "command of the engine, a word each (wsclean)"},
         addEngineWord,
         ofTheStudy,
         1},
        {{"--ms", "", "WORD", "command of pavane-ms, a word each (the one beside this program)"},
         addMsWord,
         ofTheStudy,
         1},

        {{"--help", "-h", "", "print this"}, askHelp, aboutProgram},
        {{"--version", "", "", "print the version"}, askVersion, aboutProgram},
    };
    return table;
}

}  // namespace

ProgramText cleanProgram()
{
    return {"pavane-clean",
            "clean and self-calibrate interferometer data by hand",
            {"[OPTIONS] [DATA | STUDY]", "DATA --batch [OPTIONS] STEPS"},
            {"Opens visibilities (UVFITS or a MeasurementSet) or a study, shows the dirty map, and "
             "cleans it in rounds inside areas that the user marks; solves for gains of antennas "
             "with the model of a round. The user's file is never written: what is made lies in "
             "the study, a folder NAME.pavane.",
             "Maps are made by an imaging engine that runs beside this program, wsclean unless "
             "another command is set; MeasurementSets are read and written by pavane-ms.",
             "With --batch the steps are done in the order in which they stand; areas hold for "
             "the rounds behind them."},
            {{"Maps", textsOf(optionTable(), ofTheMap)},
             {"Steps", textsOf(optionTable(), ofSteps)},
             {"The study", textsOf(optionTable(), ofTheStudy)},
             {"About the program", textsOf(optionTable(), aboutProgram)}},
            {"done", "wrong use", "what was asked for could not be done"},
            {{"NAME.pavane", "a study: settings, rounds, gains, working data"}},
            {{"Two rounds with a self-calibration between:",
              "pavane-clean data.uvfits --batch --cell 0.2 --areas core.reg --round iter=100 "
              "--selfcal phase,60s --areas jet.reg --round iter=400 --out result"}},
            "pavane-view, pavane-ms, pavane-simulate"};
}

int parseCleanOptions(const std::vector<std::string>& arguments, CleanOptions& options,
                      std::string& error)
{
    options = CleanOptions();
    error.clear();
    GivenArguments<CleanOptions> given;
    if (!readArguments(arguments, optionTable(), options, given, error))
        return 0;
    if (options.help || options.version)
        return 1;
    if (given.operands.size() > 1)
        error = "there is one set of data, not '" + given.operands[0] + "' and '" +
                given.operands[1] + "'";
    else if (!given.operands.empty())
        options.data = given.operands.front();
    if (error.empty() && options.batch && options.data.empty())
        error = "--batch wants data or a study";
    for (const auto* option : given.options)
        options.hasMap |= option->traits == ofTheMap;
    for (const auto* option : given.options)
        if (error.empty() && !options.batch &&
            (option->traits == ofSteps || option->name == "--out"))
            error = std::string(option->name) + " goes with --batch";
    CleanParameters checked = options.parameters;
    if (!(checked.cell > 0))
        checked.cell = 1;  // will be proposed
    if (error.empty())
        error = faultOf(checked);
    return error.empty();
}

}  // namespace pavane
