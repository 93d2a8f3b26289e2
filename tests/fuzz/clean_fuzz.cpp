// Feeds any bytes to the reader of a map's components, and writes what it gives as text.
#include "pavane/tables/components/component_table.h"
#include "pavane/tables/components/EditedComponents.h"
#include "pavane/tables/components/map_components.h"
#include "tests/fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    const InputFile input(data, size);
    AComponents model;
    int hasTable = 0;
    std::vector<std::string> notes;
    std::string error;
    (void)readMapComponents(input.name(), model, hasTable, notes, error);
    (void)componentTsv(model);
    (void)lossesOfComponentText(model);
    return 0;
}
