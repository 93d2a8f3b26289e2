#pragma once

#include <string>
#include <vector>

namespace pavane_ms
{

/// Flags of a user: lines in their order, later ones win. A restore takes back flags of lines
/// before it, never those of the data.
class FlagFile
{
public:
    FlagFile() = default;
    /// Times are moved to count from the reference day of the data.
    FlagFile(const std::string& name, double referenceDay);

    struct Place {
        int subarray = 1, first = 0, second = 0, ifNumber = 1, source = 0;
        double time = 0;
    };
    /// Has to be called for a row before `isFlagged`; quick for rows that follow each other.
    void setPlace(const Place& place);
    /// Of a hand such as "RR" at that place.
    int isFlagged(const std::string& hand) const;
    int isEmpty() const { return lines_.empty(); }

private:
    struct Line {
        int isFlag = 1, subarray = 0, first = 0, second = 0, source = 0;
        std::vector<int> ifs;  ///< empty: all
        std::string hand;      ///< empty: all
        double start = 0, end = 0;
    };
    void setTime(double time);
    static int meets(const Line& line, const Place& place);

    std::vector<Line> lines_;
    std::vector<std::size_t> byStart_;
    std::size_t begun_ = 0;  ///< of `byStart_`
    double time_ = -1e300;
    std::vector<std::size_t> atTime_;  ///< lines that hold at the time, in their order
    std::vector<const Line*> atPlace_;
};

}  // namespace pavane_ms
