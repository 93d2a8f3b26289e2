// Feeds any bytes to the reader of time intervals, and what follows the record to the readers of
// times; what is taken is stored, shown and cut into intervals.
#include "pavane/dialogs/values/time_texts.h"
#include "pavane/dialogs/values/TimeIntervalForm.h"
#include "tessel/AFile.h"
#include "tests/fuzz/input_file.h"

#include <algorithm>
#include <cmath>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    const std::size_t head = std::min<std::size_t>(size, 56);
    const CString text(reinterpret_cast<const char*>(data) + head, size - head);
    TimeRange range;
    CString error;
    if (readTimeRange(text, range, error) && !(range.start < range.stop))
        std::abort();
    const InputFile input(data, size);
    AFile file(input.name(), AFile::readOnly);
    AUVXTIntervalPM record;
    if (!record.Load(file))
        return 0;
    for (const int asClock : {0, 1}) {
        TimeIntervalForm form;
        form.setRecord(record, asClock);
        int count = 0;
        if (form.proposeCount(count).field == TimeField::none && (count < 1 || count > 1000000))
            std::abort();
        form.setText(TimeField::start, text);
        form.setClock(!asClock);
        (void)form.applyCount(text);
        (void)form.countText();
        if (form.save().field == TimeField::none && !(form.record().start < form.record().stop))
            std::abort();
    }
    return 0;
}
