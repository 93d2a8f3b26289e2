// Feeds any bytes to the readers of both kinds of collections, and of that without a window, then
// uses what they give: mask, picture boxes, a move, undo and the stored form.
#include "pavane/axes/ABAxis.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/trackers/areas/AreaCollection.h"
#include "pavane/trackers/collections/ATrackerArray.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/message.h"
#include "tessel/ABitMatrix.h"

#include <cstdlib>

namespace
{

using namespace pavane;

/// What was read is stored and read again without a change.
template <typename Array>
void use(Array& array, const std::string& bytes)
{
    MemoryFile file(bytes);
    (void)array.Load(file);
    if (array.count() == 0)
        return;
    MemoryFile first;
    MemoryFile second;
    (void)array.Store(first);
    Array again;
    MemoryFile copy(first.bytes());
    if (!again.Load(copy) || !again.Store(second) || first.bytes() != second.bytes())
        std::abort();
    ABitMatrix mask(90, 130);
    array.FillMatrix(mask, 130, 90, {0, 10, 5, -5});
    (void)array.TopmostAt({40, 30}, nullptr);
    array.ChangeActiveTrack(nullptr, 0);
    (void)array.MoveBy(nullptr, 3, -2);
    (void)array.CopyTracker(nullptr);
    while (array.Undo(nullptr)) {
    }
}

/// What nobody knows comes back as it was, and everything that is undone.
void useRecords(const std::string& bytes)
{
    MemoryFile file(bytes);
    AreaCollection areas;
    LoadReport report;
    const int whole = areas.Load(file, report);
    if (areas.count() == 0)
        return;
    MemoryFile first;
    if (!areas.Store(first) || (whole && first.bytes().size() > bytes.size()))
        std::abort();
    MemoryFile copy(first.bytes());
    if (!areas.Load(copy))
        std::abort();
    const std::size_t steps = areas.edits().history().undoSteps();
    ABitMatrix mask(90, 130);
    (void)areas.FillMatrix(mask, 130, 90, {0, 10, 5, -5}, &report);
    for (int i = areas.count(); i-- > 0;) {
        ShapeValues shape;
        if (areas.shape(i, shape) && !shape.points.empty())
            shape.points.push_back(shape.points.front());
        (void)areas.setShape(i, shape);
        if (i % 2)
            (void)areas.erase(i);
    }
    while (areas.edits().history().undoSteps() > steps)
        if (!areas.undo())
            std::abort();
    MemoryFile second;
    if (!areas.Store(second) || first.bytes() != second.bytes())
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const int quiet = (SetMessageFunction([](const CString&, unsigned) { return IDOK; }), 1);
    (void)quiet;
    if (size == 0)
        return 0;
    const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    useRecords(bytes);
    if (data[0] & 1) {
        ATrackerArray array;
        array.CheckMinMax({0, 0, 200, 100}, {0, 10, -5, 5}, 1, -1);
        use(array, bytes);
        array.CheckMinMax({0, 0, 100, 100}, {0, 5, -5, 5}, 1, 1);
    } else {
        ABAxis axis(-1, 1, nullptr, 0);
        axis.setGraphRect({10, 10, 200, 100});
        axis.setMinMax({0, 10, -5, 5});
        ATrackerArrayInAxis array;
        array.SetAxis(&axis);
        use(array, bytes);
    }
    return 0;
}
