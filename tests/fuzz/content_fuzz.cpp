// Feeds any bytes as an area file of any kind, and as the copy that a crash has left.
#include "apps/view/any_area_file.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/message.h"
#include "tessel/ABitMatrix.h"
#include "tests/fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    static const int quiet = (SetMessageFunction([](const CString&, unsigned) { return IDOK; }), 1);
    (void)quiet;
    const InputFile input(data, size);
    AreaPlace place;
    place.range = {0, 39, 0, 29};
    place.rows = 30;
    place.columns = 40;
    ATrackerArrayInAxis areas;
    AreaNotes notes;
    std::string error;
    if (!openAreas(input.name(), place, areas, notes, error))
        return 0;
    ABitMatrix mask(place.rows, place.columns);
    areas.FillMatrix(mask, place.columns, place.rows, place.range);
    (void)lossesOfSaving("a.reg", place, areas);
    return 0;
}
