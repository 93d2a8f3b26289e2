#include "apps/ms/FlagFile.h"

#include "apps/ms/Failure.h"
#include "apps/ms/LineFile.h"
#include "apps/ms/text.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace pavane_ms
{

FlagFile::FlagFile(const std::string& name, double referenceDay)
{
    LineFile file(name);
    std::string text;
    if (!file.next(text) || trimmed(text) != "# pavane flags 1")
        throw Failure(name + " is no file of flags: its first line is not \"# pavane flags 1\"");
    double day = 0;
    const std::string key = "# referenceday ";
    if (!file.next(text) || text.compare(0, key.size(), key) != 0 ||
        !readNumber(text.substr(key.size()), day) || !std::isfinite(day))
        file.fail("does not name the reference day");
    const double shift = day > 0 ? day - referenceDay : 0;
    while (file.next(text)) {
        if (trimmed(text).empty() || text[0] == '#')
            continue;
        const auto fields = split(text, '\t');
        if (fields.size() != 9)
            file.fail("has " + std::to_string(fields.size()) + " fields, not 9");
        Line line;
        line.isFlag = fields[0] == "flag";
        if (!line.isFlag && fields[0] != "restore")
            file.fail("begins with neither flag nor restore");
        const auto whole = [&](std::size_t field, const char* what) {
            int value = 0;
            if (!readNumber(fields[field], value) || value < 0)
                file.fail(std::string("has a wrong ") + what);
            return value;
        };
        line.subarray = whole(1, "subarray");
        line.first = whole(2, "antenna");
        line.second = whole(3, "antenna");
        if (trimmed(fields[4]) != "*") {
            line.ifs = readNumbers(fields[4]);
            if (line.ifs.empty())
                file.fail("has a wrong list of IFs");
        }
        if (trimmed(fields[5]) != "*")
            line.hand = trimmed(fields[5]);
        if (!readNumber(fields[6], line.start) || !readNumber(fields[7], line.end) ||
            std::isnan(line.start) || std::isnan(line.end))
            file.fail("has a wrong time");
        line.start += shift;
        line.end += shift;
        line.source = whole(8, "source");
        lines_.push_back(line);
    }
    byStart_.resize(lines_.size());
    std::iota(byStart_.begin(), byStart_.end(), std::size_t{0});
    std::stable_sort(byStart_.begin(), byStart_.end(), [this](std::size_t a, std::size_t b) {
        return lines_[a].start < lines_[b].start;
    });
}

void FlagFile::setTime(double time)
{
    if (time == time_)
        return;
    if (time < time_) {
        begun_ = 0;
        atTime_.clear();
    }
    time_ = time;
    for (; begun_ < byStart_.size() && lines_[byStart_[begun_]].start <= time; ++begun_)
        atTime_.push_back(byStart_[begun_]);
    atTime_.erase(std::remove_if(atTime_.begin(), atTime_.end(),
                                 [&](std::size_t i) { return !(time < lines_[i].end); }),
                  atTime_.end());
    std::sort(atTime_.begin(), atTime_.end());
}

int FlagFile::meets(const Line& line, const Place& place)
{
    const auto isAny = [](int wanted, int own) { return wanted == 0 || wanted == own; };
    const int isBaseline = (isAny(line.first, place.first) && isAny(line.second, place.second)) ||
                           (isAny(line.first, place.second) && isAny(line.second, place.first));
    return isBaseline && isAny(line.subarray, place.subarray) && isAny(line.source, place.source) &&
           (line.ifs.empty() ||
            std::binary_search(line.ifs.begin(), line.ifs.end(), place.ifNumber));
}

void FlagFile::setPlace(const Place& place)
{
    atPlace_.clear();
    if (lines_.empty())
        return;
    setTime(place.time);
    for (const std::size_t i : atTime_)
        if (meets(lines_[i], place))
            atPlace_.push_back(&lines_[i]);
}

int FlagFile::isFlagged(const std::string& hand) const
{
    int flag = 0;
    for (const Line* const line : atPlace_)
        if (line->hand.empty() || line->hand == hand)
            flag = line->isFlag;
    return flag;
}

}  // namespace pavane_ms
