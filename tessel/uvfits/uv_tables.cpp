#include "tessel/uvfits/uv_tables.h"

#include "tessel/uvfits/UvLayout.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// A row of few bytes becomes an item of many: more rows than these are no observation.
constexpr std::int64_t mostTelescopes = 65536, mostSelections = 65536, mostSources = 1 << 20,
                       mostScans = 1 << 22, mostIfs = 1 << 20;

int hasRows(const FitsTable& table, std::int64_t most, std::string& error)
{
    if (table.rows() <= most)
        return 1;
    error = "has " + std::to_string(table.rows()) + " rows, which cannot be right";
    return 0;
}

/// The first of the names that the table has.
int columnOf(const FitsTable& table, std::initializer_list<const char*> names)
{
    for (const char* name : names)
        if (const int column = table.column(name); column >= 0)
            return column;
    return -1;
}

int rowNumber(std::size_t index) { return static_cast<int>(index) + 1; }

std::int64_t groupNumber(const StoredNumber& number)
{
    constexpr double most = 0x1p53;
    return number.value >= -most && number.value <= most ? static_cast<std::int64_t>(number.value)
                                                         : 0;
}

}  // namespace

int readTelescopes(FitsTable& table, int subarray, std::vector<AUVXTlscItem>& telescopes,
                   std::string& error)
{
    const int name = table.column("ANNAME");
    const int place = table.column("STABXYZ");
    const int number = table.column("NOSTA");
    const int mount = table.column("MNTSTA");
    const int offset = table.column("STAXOF");
    if (!hasRows(table, mostTelescopes, error))
        return 0;
    const std::size_t before = telescopes.size();
    while (table.next()) {
        AUVXTlscItem item;
        item.name = table.text(name);
        item.number = table.whole(number, rowNumber(telescopes.size() - before));
        item.subarray = subarray;
        item.x = table.number(place, 0);
        item.y = table.number(place, 1);
        item.z = table.number(place, 2);
        item.mount = table.whole(mount, 0);
        item.axisOffset = table.number(offset);
        telescopes.push_back(item);
    }
    return 1;
}

int readSelections(FitsTable& table, std::vector<AUVXFreqs>& selections, std::string& error)
{
    const int id = columnOf(table, {"FRQSEL", "FREQ ID"});
    const int offset = columnOf(table, {"IF FREQ", "BANDFREQ"});
    const int width = table.column("CH WIDTH");
    const int bandwidth = table.column("TOTAL BANDWIDTH");
    const int sideband = table.column("SIDEBAND");
    const std::int64_t ifs = table.length(offset);
    if (ifs == 0) {
        error = "has no column of frequencies";
        return 0;
    }
    if (!hasRows(table, std::min(mostSelections, mostIfs / std::max<std::int64_t>(ifs, 1)), error))
        return 0;
    while (table.next()) {
        AUVXFreqs selection;
        selection.id = table.whole(id, rowNumber(selections.size()));
        for (std::int64_t i = 0; i < ifs; ++i)
            selection.ifs.push_back({table.number(offset, i), table.number(width, i),
                                     table.number(bandwidth, i), table.whole(sideband, 1, i)});
        selections.push_back(selection);
    }
    return 1;
}

int readSources(FitsTable& table, std::vector<UvSource>& sources, std::string& error)
{
    const int id = columnOf(table, {"ID. NO.", "SOURCE ID"});
    const int name = table.column("SOURCE");
    const int ra = table.column("RAEPO");
    const int dec = table.column("DECEPO");
    const int epoch = columnOf(table, {"EPOCH", "EQUINOX"});
    if (!hasRows(table, mostSources, error))
        return 0;
    while (table.next()) {
        UvSource source;
        source.id = table.whole(id, rowNumber(sources.size()));
        source.name = table.text(name);
        source.ra = table.number(ra);
        source.dec = table.number(dec);
        source.equinox = equinoxOf(table.text(epoch));
        sources.push_back(source);
    }
    return 1;
}

int readScans(FitsTable& table, std::vector<UvScan>& scans, std::string& error)
{
    const int time = table.column("TIME");
    const int length = table.column("TIME INTERVAL");
    const int source = columnOf(table, {"SOURCE ID", "SOURCE"});
    const int subarray = table.column("SUBARRAY");
    const int first = table.column("START VIS");
    const int last = table.column("END VIS");
    const int selection = columnOf(table, {"FREQ ID", "FREQSEL"});
    if (!hasRows(table, mostScans, error))
        return 0;
    while (table.next()) {
        const double middle = table.number(time).value;
        const double half = table.number(length).value / 2;
        scans.push_back({table.whole(source, 1), table.whole(subarray, 1),
                         table.whole(selection, 1), middle - half, middle + half,
                         groupNumber(table.number(first)), groupNumber(table.number(last))});
    }
    return 1;
}

}  // namespace pavane
