// Feeds any bytes to the reader of frequency groups, of files with few and with many IFs.
#include "pavane/tables/freq/AFreqGroupArray.h"
#include "tests/fuzz/input_file.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const pavane::InputFile input(data, size);
    for (const int ifs : {0, 9, 200}) {
        pavane::AUVXFreqs selection;
        selection.ifs.resize(static_cast<std::size_t>(ifs));
        pavane::AFreqGroupArray groups(pavane::AUVXFqTbl(1e9, 1, 16, {selection}));
        pavane::AFile file(input.name(), pavane::AFile::readOnly);
        (void)groups.Load(file);
        for (int i = 0; i < groups.count(); ++i) {
            int first = 0;
            int last = 0;
            groups.GetFreqRange(i, first, last);
            if (groups(i).count() != ifs || last > std::max(ifs * 16 - 1, 0))
                std::abort();
        }
    }
    return 0;
}
