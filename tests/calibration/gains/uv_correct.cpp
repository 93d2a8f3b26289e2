// uv-correct IN GAINS FLAGS OUT: writes a file of visibilities corrected by a text of gains,
// without what a file of flags takes away, beside corrected_uvfits.py.
#include "pavane/calibration/gains/UvCorrection.h"
#include "tessel/gains/gain_files.h"
#include "tessel/uvfits/UvRewriter.h"

#include <cstdio>

int main(int count, char** words)
{
    using namespace pavane;
    AUVXFile file;
    AGains gains;
    VisibilityFlags flags;
    std::string error;
    if (count != 5 || !file.open(words[1], error) || !readGainText(words[2], gains, error) ||
        !readFlags(words[3], flags, error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 2;
    }
    GainChain chain;
    (void)chain.add("gains", gains);
    UvRewriter writer(file, words[4], std::make_shared<UvCorrection>(file.header(), chain, flags));
    while (writer.step(10000)) {
    }
    if (!writer.error().empty())
        std::fprintf(stderr, "%s\n", writer.error().c_str());
    return writer.error().empty() ? 0 : 1;
}
