#include "tessel/clean_components.h"

#include "tessel/angle_unit.h"
#include "tessel/fits_hdus.h"
#include "tessel/plain_text.h"
#include "tessel/uvfits/FitsTable.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <string_view>

namespace pavane
{

namespace
{

/// Headers of a file of a map; with all tables of a long history some hundred.
constexpr int mostHeaders = 10000;
/// More rows than an index counts.
constexpr std::int64_t mostRows = std::numeric_limits<int>::max();

struct Unit {
    std::string_view name;
    double scale;
};

// a great M is a million here, so that "MJY" of writers that have capitals only stays unknown
constexpr Unit fluxUnits[] = {{"", 1},       {"JY", 1},     {"Jy", 1},    {"JANSKY", 1},
                              {"mJy", 1e-3}, {"uJy", 1e-6}, {"kJy", 1e3}, {"MJy", 1e6}};

/// "Jy / beam" and "mJy beam-1" without the beam, or the pixel.
std::string fluxOf(std::string_view text)
{
    const std::string all = capitals(text);
    const auto end = std::min({all.find('/'), all.find("BEAM"), all.find("PIX"), all.size()});
    std::string name;
    for (const char c : text.substr(0, end))
        if (c != ' ')
            name += c;
    return name;
}

/// A column with what makes degrees or Jy of it.
struct ScaledColumn {
    int at = -1;
    double scale = 1;
    double value(const FitsTable& table) const { return table.number(at).value * scale; }
    /// The same, 0 where there is none.
    double valueOr0(const FitsTable& table) const
    {
        const double v = value(table);
        return std::isfinite(v) ? v : 0;
    }
};

class CleanTable
{
public:
    explicit CleanTable(AFile& file) : table_(file) {}
    int open(const FitsHdu& hdu, std::string& error);
    int read(CleanComponents& components, std::string& error);

private:
    int find(const char* name, bool isFlux, bool isNeeded, ScaledColumn& column,
             std::string& error);
    int codeOf() const;

    FitsTable table_;
    ScaledColumn flux_, east_, north_, major_, minor_, angle_;
    int code_ = -1;
};

int CleanTable::find(const char* name, bool isFlux, bool isNeeded, ScaledColumn& column,
                     std::string& error)
{
    column.at = table_.column(name);
    if (column.at < 0 || table_.length(column.at) < 1) {
        column.at = -1;
        error = std::string("has a table of components without a column ") + name;
        return !isNeeded;
    }
    const std::string unit = table_.unit(column.at);
    const std::string known = isFlux ? fluxOf(unit) : unit;
    const auto fluxScale = [&] {
        for (const Unit& each : fluxUnits)
            if (each.name == known)
                return each.scale;
        return 0.0;
    };
    column.scale = isFlux ? fluxScale() : degreesOfUnit(known);
    if (column.scale > 0)
        return 1;
    error = std::string("has components with ") + name +
            " in a unit that is not known: " + plainText(unit);
    return 0;
}

int CleanTable::open(const FitsHdu& hdu, std::string& error)
{
    if (!table_.open(hdu, error))
        return 0;
    if (table_.rows() > mostRows) {
        error = "has more components than can be counted";
        return 0;
    }
    code_ = table_.column("TYPE OBJ");
    return find("FLUX", true, true, flux_, error) && find("DELTAX", false, true, east_, error) &&
           find("DELTAY", false, true, north_, error) &&
           find("MAJOR AX", false, false, major_, error) &&
           find("MINOR AX", false, false, minor_, error) &&
           find("POSANGLE", false, false, angle_, error);
}

/// -1 for a kind that is no whole number.
int CleanTable::codeOf() const
{
    return code_ < 0 || table_.length(code_) < 1 ? 0 : table_.whole(code_, -1);
}

int CleanTable::read(CleanComponents& components, std::string& error)
{
    std::int64_t leftOut = 0, read = 0;
    for (; table_.next(); ++read) {
        CleanComponent row;
        row.flux = flux_.value(table_);
        row.east = east_.value(table_);
        row.north = north_.value(table_);
        row.major = major_.valueOr0(table_);
        row.minor = minor_.valueOr0(table_);
        row.angle = angle_.valueOr0(table_);
        row.code = codeOf();
        row.isSingle = table_.number(east_.at).isSingle && table_.number(flux_.at).isSingle;
        if (std::isfinite(row.flux) && std::isfinite(row.east) && std::isfinite(row.north))
            components.rows.push_back(row);
        else
            ++leftOut;
    }
    if (read < table_.rows()) {
        error = "has become shorter while it was read";
        return 0;
    }
    if (leftOut)
        components.notes.push_back("has " + std::to_string(leftOut) +
                                   " components without a finite flux and place, left out");
    return 1;
}

int readTables(AFile& file, CleanComponents& components, std::string& error)
{
    const std::int64_t size = file.size();
    int tables = 0;
    FitsHdu hdu;
    std::int64_t start = 0;
    for (int i = 0; start < size && i < mostHeaders; ++i) {
        const int isHeader = readHdu(file, start, hdu);
        if (!isHeader && i == 0) {
            error = "has a header that cannot be read";
            return 0;
        }
        if (!isHeader) {
            components.notes.push_back("has something behind its map that cannot be read");
            break;
        }
        const int isTable = i > 0 && capitals(hdu.cards.text("EXTNAME")) == "AIPS CC";
        if (hdu.dataBytes > size - hdu.dataStart) {
            error = isTable ? "ends before its table of components does" : "ends before its data";
            return 0;
        }
        start = endOf(hdu);
        if (!isTable || ++tables > 1)
            continue;
        CleanTable table(file);
        if (hdu.kind != "BINTABLE" && hdu.kind != "A3DTABLE") {
            error = "has a table of components of a kind that is not read: " + plainText(hdu.kind);
            return 0;
        }
        if (!table.open(hdu, error) || !table.read(components, error))
            return 0;
    }
    components.hasTable = tables > 0;
    if (tables > 1)
        components.notes.push_back("has " + std::to_string(tables) +
                                   " tables of components; these are of the first");
    return 1;
}

}  // namespace

int readCleanComponents(const std::string& name, CleanComponents& components, std::string& error)
{
    components = {};
    error.clear();
    AFile file;
    try {
        if (openFits(name, file, error) && readTables(file, components, error))
            return error.clear(), 1;
    } catch (const std::bad_alloc&) {
        error = "needs more memory than there is";
    }
    components = {};
    return 0;
}

}  // namespace pavane
