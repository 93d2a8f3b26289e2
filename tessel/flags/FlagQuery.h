#pragma once

#include "tessel/api.h"
#include "tessel/flags/VisibilityFlags.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace pavane
{

/// Flags made ready to be asked of each row of a file: a copy of them, whose cost of a row grows
/// with the lines that are about it, and hardly with all others.
class PAVANE_API FlagQuery
{
public:
    /// For data of so many IFs and of polarisations `stokes` (FITS codes), whose times count from
    /// 0h of `referenceDay`, a Julian date; 0: from that of the flags.
    FlagQuery(const VisibilityFlags& flags, int ifs, std::vector<int> stokes,
              double referenceDay = 0);

    int isEmpty() const { return lines_.empty(); }
    /// Which visibilities of a row are flagged, non-zero each: an array of IFs and polarisations,
    /// the last index the fastest, good until the next call. Null where none is.
    const unsigned char* of(int subarray, int first, int second, double time, int source = 0);

private:
    /// Lines of one pair of antennas by their start: a tree whose root is the middle one.
    struct Spans {
        struct Span {
            double start, end;
            double last;  ///< the greatest end in the tree below
            std::size_t line;
        };
        std::vector<Span> spans;
        double finish(std::size_t from, std::size_t to);
        void find(std::size_t from, std::size_t to, double time,
                  std::vector<std::size_t>& lines) const;
    };
    void apply(const FlagLine& line, int& has);

    std::size_t ifs_;
    std::vector<int> stokes_;
    double later_ = 0;
    std::vector<FlagLine> lines_;
    std::unordered_map<std::uint64_t, Spans> spans_;
    std::vector<std::size_t> found_;
    std::vector<unsigned char> row_;
};

}  // namespace pavane
