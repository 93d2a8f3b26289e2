#include "apps/clean/job_text.h"

#include "apps/view/status_text.h"
#include "pavane/imaging/study_export.h"
#include "pavane/imaging/StudyJob.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string_view>
#include <thread>

namespace pavane
{

namespace
{

constexpr int digits = 3;
constexpr std::size_t shownLines = 6;
constexpr const char* dataProgram = "pavane-ms";

std::string clockText(double seconds)
{
    const long long whole = std::llround(std::clamp(seconds, 0.0, 1e7));
    const std::string rest = std::to_string(whole % 60);
    return std::to_string(whole / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

}  // namespace

std::string stateText(const JobState& state)
{
    std::string text = state.doing;
    const auto add = [&](const std::string& piece) { text += (text.empty() ? "" : "   ") + piece; };
    if (state.cleans && state.peak >= 0) {
        std::string peak = "peak " + prefixedText(state.peak, "Jy", digits);
        if (state.news.peakX >= 0)
            peak.append(" at ")
                .append(std::to_string(state.news.peakX))
                .append(", ")
                .append(std::to_string(state.news.peakY));
        add(peak);
    }
    if (state.news.noise > 0)
        add("noise " + prefixedText(state.news.noise, "Jy", digits));
    if (state.cycle > 0)
        add("cycle " + std::to_string(state.cycle));
    if (state.limit > 0)
        add(std::to_string(state.iterations) + " of " + std::to_string(state.limit) +
            " iterations");
    add(clockText(state.seconds));
    return text;
}

std::string faultText(const StudyJob& job)
{
    std::string text = job.fault();
    std::vector<std::string> lines;
    for (const std::string& line : job.log()) {
        // what the fault says already, and how far a program was before
        const bool isPercent = line.size() <= 6 && line.find('%') != line.npos;
        if (!line.empty() && !isPercent && text.find(line) == text.npos)
            lines.push_back(line);
    }
    const std::size_t first = lines.size() > shownLines ? lines.size() - shownLines : 0;
    for (std::size_t i = first; i < lines.size(); ++i)
        text += (i == first ? "\n\n" : "\n") + lines[i];
    return text;
}

std::string commandText(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : " ") + shellWord(word);
    return text;
}

std::string roundNameOf(const StudyRound& round)
{
    switch (round.kind) {
    case RoundKind::dirty:
        return "dirty";
    case RoundKind::clean:
        return std::to_string(round.numbers.iterations) + " it";
    case RoundKind::model:
        return "model";
    case RoundKind::residual:
        break;
    }
    std::string text = "residual";
    for (std::size_t i = 0; i < round.data.chain.size(); ++i)
        text += (i ? ", G" : " on G") + std::to_string(round.data.chain[i]);
    return text;
}

double longestBaseline(const std::string& facts)
{
    constexpr std::string_view name = "longest-baseline";
    std::istringstream lines(facts);
    for (std::string line; std::getline(lines, line);) {
        double value = 0;
        const std::size_t blank = line.find(' ');
        if (line.compare(0, blank, name) == 0 && blank != line.npos &&
            stoval(line.substr(blank + 1, line.find(' ', blank + 1) - blank - 1), value) &&
            std::isfinite(value) && value > 0)
            return value;
    }
    return 0;
}

std::string dataProgramName()
{
    const std::string beside = getExePath() + dataProgram;
    return IsFileExists(beside) ? beside : dataProgram;
}

int engineThreads()
{
    const unsigned cores = std::thread::hardware_concurrency();
    return cores > 2 ? static_cast<int>(cores) - 1 : 1;
}

}  // namespace pavane
