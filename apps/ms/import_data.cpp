#include "apps/ms/import_data.h"

#include "apps/ms/commands.h"
#include "apps/ms/Failure.h"
#include "apps/ms/MsBuilder.h"
#include "apps/ms/OutputPath.h"

#include <casacore/tables/Tables/Table.h>
#include <casacore/tables/Tables/TableRecord.h>
#include <filesystem>
#include <system_error>

namespace pavane_ms
{

std::uint64_t workingSize(std::uint64_t rows, std::uint64_t cells)
{
    // visibilities, corrected and model ones, two weights, two flags of a bit
    constexpr std::uint64_t perCell = 3 * 8 + 2 * 4 + 1, perRow = 120,
                            tables = std::uint64_t{1} << 20;
    return cells * perCell + rows * perRow + tables;
}

int isTable(const std::string& name)
{
    std::error_code error;
    return std::filesystem::is_regular_file(std::filesystem::path(name) / "table.dat", error);
}

int isWorkingCopy(const std::string& name)
{
    if (!isTable(name))
        return 0;
    try {
        const casacore::Table table(name, casacore::TableLock(casacore::TableLock::NoLocking));
        return table.keywordSet().isDefined(WorkFacts::key);
    } catch (const std::exception&) {
        return 0;
    }
}

void importData(const std::vector<std::string>& words)
{
    const Words given(words, Selection::options(), 2, 2);
    const Selection selection(given);
    const std::string input = safePath(given.names()[0]), output = safePath(given.names()[1]);
    std::error_code error;
    if (!std::filesystem::exists(input, error))
        throw Failure("there is no " + given.names()[0]);
    refuseSame(input, output);
    ImportCount count;
    OutputPath place(output, 1, isWorkingCopy(output));
    if (isTable(input))
        importMs(input, place.partName(), output, selection, count);
    else if (std::filesystem::is_directory(input, error))
        throw Failure(input + " is a folder, and no MeasurementSet");
    else
        importUvFits(input, place.partName(), output, selection, count);
    place.commit();
    say("rows", count.rows);
    if (count.leftOut > 0)
        say("left-out", std::to_string(count.leftOut) + " without antennas, time or place");
    for (const std::string& note : count.notes)
        say("note", note);
    say("size", sizeOf(output));
}

}  // namespace pavane_ms
