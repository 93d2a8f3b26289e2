// Feeds any bytes to the reader of visibilities, and goes through all groups of what it opens.
#include "tessel/uvfits/UvGroupScan.h"
#include "tessel/uvfits/UvPlotPoints.h"
#include "tests/fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const pavane::InputFile input(data, size);
    pavane::AUVXFile file;
    std::string error;
    if (!file.open(input.name(), error))
        return 0;
    pavane::UvGroupScan scan(file, ~0);
    while (scan.step(1)) {
    }
    for (const pavane::UvBaseline& baseline : scan.foundBaselines())
        (void)file.lengthOf(baseline);
    for (const pavane::UvScan& found : scan.foundScans())
        (void)pavane::uvTimeText(found.start);
    for (const pavane::AUVXTlscItem& telescope : file.telescopes())
        (void)pavane::storedText(telescope.x, 3);
    pavane::UvMarks marks;
    marks.scanTable = scan.foundScans();
    marks.scans = pavane::ABitArray(static_cast<int>(marks.scanTable.size()));
    marks.scans.set(0);
    const pavane::UvView means = {pavane::UvView::Kind::coverage, 0, pavane::UvColour::telescope,
                                  7};
    for (const pavane::UvView& view : {pavane::UvView(), means}) {
        pavane::UvPlotPoints points(file, marks, 100, view);
        while (points.step(1)) {
        }
    }
    return 0;
}
