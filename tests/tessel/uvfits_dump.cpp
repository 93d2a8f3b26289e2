// Prints everything that tessel reads of a file of visibilities, a line an item with tabs between,
// for uvfits_variants.py:  uvfits-dump FILE
#include "tessel/stokes_name.h"
#include "tessel/uvfits/UvGroupScan.h"
#include "tessel/value_text.h"

#include <cstdio>

using namespace pavane;

namespace
{

void print(std::initializer_list<std::string> words)
{
    const char* between = "";
    for (const std::string& word : words) {
        std::printf("%s%s", between, word.c_str());
        between = "\t";
    }
    std::printf("\n");
}

void print(const char* kind, const UvScan& s)
{
    print({kind, std::to_string(s.source), std::to_string(s.subarray), std::to_string(s.selection),
           valToStr(s.start), valToStr(s.end), std::to_string(s.first), std::to_string(s.last)});
}

void printTables(const AUVXFile& file)
{
    const UvHeader& h = file.header();
    print({"header", h.object, valToStr(h.referenceDay), std::to_string(h.groups),
           std::to_string(h.channels), std::to_string(h.ifs)});
    for (const AUVXTlscItem& t : file.telescopes())
        print({"telescope", t.name, std::to_string(t.number), std::to_string(t.subarray),
               storedText(t.x), storedText(t.y), storedText(t.z), mountName(t.mount),
               storedText(t.axisOffset)});
    const AUVXFqTbl& table = file.fqTbl();
    for (int s = 0; s < table.selectionCount(); ++s) {
        const AUVXFreqs& selection = table.selections()[static_cast<std::size_t>(s)];
        for (int i = 0; i < static_cast<int>(selection.ifs.size()); ++i) {
            const UvIf& f = selection.ifs[static_cast<std::size_t>(i)];
            print({"frequency", std::to_string(selection.id), std::to_string(i + 1),
                   valToStr(table.frequency(s, i)), storedText(f.channelWidth),
                   storedText(f.bandwidth), std::to_string(f.sideband)});
        }
    }
    for (const int code : h.stokes)
        print({"stokes", std::to_string(code), stokesName(code)});
    for (const UvSource& s : file.sources())
        print({"source", std::to_string(s.id), s.name, storedText(s.ra), storedText(s.dec),
               valToStr(s.equinox)});
    for (const UvScan& s : file.scans())
        print("scan", s);
    for (const std::string& note : file.notes())
        print({"note", note});
}

/// Sums of all parameters and cells, which one that is read wrongly moves.
void printSums(AUVXFile& file)
{
    const UvHeader& h = file.header();
    UvGroups g;
    double u = 0;
    double time = 0;
    double cells = 0;
    for (std::int64_t first = 0; first < h.groups; ++first) {
        if (!file.readGroups(first, 1, ~0, g))
            return print({"unreadable", std::to_string(first)});
        const auto weight = static_cast<double>(first + 1);
        u += weight * (g.u[0] + 2 * g.v[0] + 3 * g.w[0]);
        time += weight * g.time[0];
        int order = 0;
        for (int f = 0; f < h.ifs; ++f)
            for (int c = 0; c < h.channels; ++c)
                for (int s = 0; s < static_cast<int>(h.stokes.size()); ++s) {
                    const UvVisibility v = file.visibility(g, 0, f, c, s);
                    cells += ++order * (v.real + 2 * double{v.imaginary} + 3 * double{v.weight});
                }
    }
    print({"sums", valToStr(u), valToStr(time), valToStr(cells)});
}

}  // namespace

int main(int count, char** arguments)
{
    AUVXFile file;
    std::string error;
    if (count != 2 || !file.open(arguments[1], error)) {
        print({"error", error});
        return 1;
    }
    printTables(file);
    UvGroupScan scan(file, UvGroupScan::baselines | UvGroupScan::scans | UvGroupScan::totals);
    while (scan.step(1)) {
    }
    for (const UvBaseline& b : scan.foundBaselines())
        print({"baseline", std::to_string(b.subarray), std::to_string(b.first),
               std::to_string(b.second), valToStr(file.lengthOf(b)), std::to_string(b.groups)});
    for (const UvScan& s : scan.foundScans())
        print("found", s);
    const UvTotals& t = scan.foundTotals();
    print({"totals", std::to_string(t.visibilities), std::to_string(t.flagged),
           std::to_string(t.notFinite), valToStr(t.leastUv), valToStr(t.greatestUv),
           valToStr(t.leastAmplitude), valToStr(t.greatestAmplitude)});
    printSums(file);
    if (!scan.error().empty())
        print({"error", scan.error()});
    return 0;
}
