#include "apps/clean/ChainEdits.h"

#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pavane
{

namespace
{

constexpr double secondsOfDay = 86400;
constexpr int secondDigits = 3;
/// Gains whose amplitude is nearer to 1, or phase to 0 degrees, are of the other kind.
constexpr double nearOne = 1e-6;

constexpr const char* titles[linkColumns] = {"On",     "Gains",     "Kind", "Interval",
                                             "Solved", "Solved on", "State"};

std::string linkTitleOf(const StudyLink& link) { return "\"" + link.name + "\""; }

}  // namespace

std::vector<int> linksBefore(const std::vector<StudyLink>& chain, std::size_t at)
{
    std::vector<int> ids;
    for (std::size_t i = 0; i < std::min(at, chain.size()); ++i)
        if (chain[i].isOn)
            ids.push_back(chain[i].id);
    return ids;
}

int isStale(const std::vector<StudyLink>& chain, std::size_t at)
{
    return at < chain.size() && chain[at].solvedOn != linksBefore(chain, at);
}

int nextLinkId(const std::vector<StudyLink>& chain)
{
    int last = 0;
    for (const StudyLink& each : chain) {
        last = std::max(last, each.id);
        for (const int id : each.solvedOn)
            last = std::max(last, id);
    }
    return last + 1;
}

int addLinkTo(std::vector<StudyLink>& chain, int gains, const std::string& name)
{
    StudyLink link;
    link.gains = gains;
    link.id = nextLinkId(chain);
    link.name = name;
    link.solvedOn = linksBefore(chain, chain.size());
    chain.push_back(link);
    return link.id;
}

void replaceLink(std::vector<StudyLink>& chain, std::size_t at, int gains, const std::string& name)
{
    if (at >= chain.size())
        return;
    const int id = nextLinkId(chain);
    chain[at].gains = gains;
    chain[at].name = name;
    chain[at].id = id;
    chain[at].isOn = 1;
    chain[at].solvedOn = linksBefore(chain, at);
}

// --- edits

int ChainEdits::change(const std::string& label, std::vector<StudyLink> chain)
{
    if (chain == chain_)
        return 0;
    undo_.push_back({label, std::exchange(chain_, std::move(chain))});
    redo_.clear();
    return 1;
}

void ChainEdits::follow(const std::vector<StudyLink>& chain, const std::string& label)
{
    (void)change(label, chain);
}

void ChainEdits::reset(const std::vector<StudyLink>& chain)
{
    chain_ = chain;
    undo_.clear();
    redo_.clear();
}

int ChainEdits::setOn(std::size_t at, int on)
{
    if (at >= chain_.size())
        return 0;
    std::vector<StudyLink> next = chain_;
    next[at].isOn = on != 0;
    return change((on ? "Switching on " : "Switching off ") + linkTitleOf(chain_[at]),
                  std::move(next));
}

int ChainEdits::remove(std::size_t at)
{
    if (at >= chain_.size())
        return 0;
    std::vector<StudyLink> next = chain_;
    next.erase(next.begin() + static_cast<std::ptrdiff_t>(at));
    return change("Removing " + linkTitleOf(chain_[at]), std::move(next));
}

int ChainEdits::confirm(std::size_t at)
{
    if (at >= chain_.size())
        return 0;
    std::vector<StudyLink> next = chain_;
    next[at].solvedOn = linksBefore(chain_, at);
    return change("Confirming " + linkTitleOf(chain_[at]), std::move(next));
}

int ChainEdits::add(int gains, const std::string& name)
{
    std::vector<StudyLink> next = chain_;
    (void)addLinkTo(next, gains, name);
    return change("Adding \"" + name + "\"", std::move(next));
}

const StudyLink* ChainEdits::known(int gains) const
{
    const auto find = [gains](const std::vector<StudyLink>& chain) -> const StudyLink* {
        for (const StudyLink& each : chain)
            if (each.gains == gains)
                return &each;
        return nullptr;
    };
    if (const StudyLink* const now = find(chain_))
        return now;
    for (auto step = undo_.rbegin(); step != undo_.rend(); ++step)
        if (const StudyLink* const before = find(step->chain))
            return before;
    for (const Step& step : redo_)
        if (const StudyLink* const after = find(step.chain))
            return after;
    return nullptr;
}

int ChainEdits::take(const std::vector<int>& gains)
{
    std::vector<StudyLink> next;
    for (const int each : gains) {
        const StudyLink* const link = known(each);
        if (!link) {
            (void)addLinkTo(next, each, "gains " + std::to_string(each));
            continue;
        }
        next.push_back(*link);
        next.back().isOn = 1;
    }
    return change("Taking the chain of a round", std::move(next));
}

int ChainEdits::undo()
{
    if (undo_.empty())
        return 0;
    Step step = std::move(undo_.back());
    undo_.pop_back();
    std::swap(step.chain, chain_);
    redo_.push_back(std::move(step));
    return 1;
}

int ChainEdits::redo()
{
    if (redo_.empty())
        return 0;
    Step step = std::move(redo_.back());
    redo_.pop_back();
    std::swap(step.chain, chain_);
    undo_.push_back(std::move(step));
    return 1;
}

// --- lines

const char* linkTitle(int column)
{
    return column >= 1 && column <= linkColumns ? titles[column - 1] : "";
}

std::string linkCell(const LinkLine& line, int column)
{
    switch (column) {
    case linkName:
        return line.name;
    case linkKind:
        return line.kind;
    case linkInterval:
        return line.interval;
    case linkSolved:
        return line.solved;
    case linkSolvedOn:
        return line.solvedOn;
    case linkState:
        return line.state;
    }
    return {};
}

void describeGains(const AGains& gains, LinkLine& line)
{
    bool hasPhases = false, hasAmplitudes = false;
    for (const Gain& each : gains.cells()) {
        if (each.state != GainState::solved)
            continue;
        hasAmplitudes = hasAmplitudes || std::abs(std::abs(each.value) - 1) > nearOne;
        hasPhases = hasPhases || std::abs(each.value.imag()) > nearOne * std::abs(each.value) ||
                    each.value.real() < 0;
    }
    line.kind = hasPhases && hasAmplitudes ? "both"
                : hasAmplitudes            ? "amplitude"
                : hasPhases                ? "phase"
                                           : "none";
    std::vector<double> lengths;
    for (const GainInterval& each : gains.intervals())
        lengths.push_back((each.end - each.start) * secondsOfDay);
    line.interval.clear();
    if (lengths.size() == 1)
        line.interval = "whole time";
    if (lengths.size() > 1) {
        std::nth_element(lengths.begin(),
                         lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2),
                         lengths.end());
        line.interval = valToStr(lengths[lengths.size() / 2], secondDigits) + " s";
    }
    const std::size_t solved = gains.count(GainState::solved);
    line.solved =
        std::to_string(solved) + " of " + std::to_string(solved + gains.count(GainState::failed));
}

LinkLine linkLineOf(const std::vector<StudyLink>& chain, std::size_t at)
{
    LinkLine line;
    if (at >= chain.size())
        return line;
    line.name = chain[at].name;
    line.isOn = chain[at].isOn;
    line.isStale = isStale(chain, at);
    for (const int id : chain[at].solvedOn) {
        const auto found = std::find_if(chain.begin(), chain.end(),
                                        [id](const StudyLink& each) { return each.id == id; });
        line.solvedOn += line.solvedOn.empty() ? "" : ", ";
        line.solvedOn +=
            found == chain.end() ? "a removed one" : std::to_string(found - chain.begin() + 1);
    }
    if (line.solvedOn.empty())
        line.solvedOn = "data";
    line.state = !line.isOn ? "off" : line.isStale ? "solved on other data" : "";
    return line;
}

}  // namespace pavane
