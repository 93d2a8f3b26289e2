#include "tessel/cfitsio.h"
#include "tessel/gains/gain_files.h"
#include "tessel/SafeFile.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <utility>

namespace pavane
{
namespace
{

const double noNumber = std::numeric_limits<double>::quiet_NaN();

/// A row of the table.
struct Row {
    std::size_t interval, antenna;
};

/// A file that CFITSIO makes in memory: what is to be whole or nothing has no name yet.
class MemoryTable
{
public:
    explicit MemoryTable(const Cfitsio& library) : library_(library)
    {
        constexpr std::size_t step = 1 << 20;
        size_ = 2880;
        memory_ = std::malloc(size_);
        if (!memory_)
            status_ = MEMORY_ALLOCATION;
        else
            library_.createInMemory(&file_, &memory_, &size_, step, &std::realloc, &status_);
    }
    MemoryTable(const MemoryTable&) = delete;
    MemoryTable& operator=(const MemoryTable&) = delete;
    ~MemoryTable()
    {
        int ignored = 0;
        if (file_)
            library_.close(file_, &ignored);
        std::free(memory_);
    }

    fitsfile* file() { return file_; }
    int* status() { return &status_; }
    /// The bytes up to the end of the last table; 0 when something went wrong.
    std::int64_t finish()
    {
        library_.flush(file_, &status_);
        LONGLONG header = 0, data = 0, end = 0;
        library_.placeOfHdu(file_, &header, &data, &end, &status_);
        return status_ == 0 && end > 0 && static_cast<std::size_t>(end) <= size_ ? end : 0;
    }
    const void* bytes() const { return memory_; }
    std::string fault() const
    {
        char text[FLEN_STATUS] = "";
        library_.statusText(status_, text);
        return std::string("cannot be made as a table: ") + text;
    }

private:
    const Cfitsio& library_;
    fitsfile* file_ = nullptr;
    void* memory_ = nullptr;
    std::size_t size_ = 0;
    int status_ = 0;
};

/// The columns, in their order; data come when the table is there.
class Columns
{
public:
    int add(const std::string& name, const std::string& form, const char* unit)
    {
        names_.push_back(name);
        forms_.push_back(form);
        units_.emplace_back(unit);
        return static_cast<int>(names_.size());
    }
    void create(const Cfitsio& library, MemoryTable& table, std::size_t rows)
    {
        const auto pointers = [](std::vector<std::string>& texts) {
            std::vector<char*> all;
            all.reserve(texts.size());
            for (std::string& text : texts)
                all.push_back(text.data());
            return all;
        };
        std::vector<char*> names = pointers(names_), forms = pointers(forms_),
                           units = pointers(units_);
        library.createTable(table.file(), BINARY_TBL, static_cast<LONGLONG>(rows),
                            static_cast<int>(names.size()), names.data(), forms.data(),
                            units.data(), "AIPS SN", table.status());
    }

private:
    std::vector<std::string> names_, forms_, units_;
};

/// One number a row, or one an IF and row.
template <class Value>
void writeColumn(const Cfitsio& library, MemoryTable& table, int column, std::size_t rows,
                 std::size_t length, Value value)
{
    using Number = decltype(value(std::size_t{}, std::size_t{}));
    std::vector<Number> numbers;
    numbers.reserve(rows * length);
    for (std::size_t r = 0; r < rows; ++r)
        for (std::size_t i = 0; i < length; ++i)
            numbers.push_back(value(r, i));
    const auto count = static_cast<LONGLONG>(numbers.size());
    if constexpr (std::is_same_v<Number, int>)
        library.writeWholes(table.file(), column, 1, 1, count, numbers.data(), table.status());
    else
        library.writeDoubles(table.file(), column, 1, 1, count, numbers.data(), table.status());
}

/// The columns of a hand and what they hold.
class HandColumns
{
public:
    HandColumns(Columns& columns, int number, std::size_t ifs)
    {
        const std::string n = std::to_string(number), floats = std::to_string(ifs) + "E",
                          wholes = std::to_string(ifs) + "J";
        delay_ = columns.add("MBDELAY" + n, "1E", "SECONDS");
        real_ = columns.add("REAL" + n, floats, "");
        imaginary_ = columns.add("IMAG" + n, floats, "");
        delayOfIf_ = columns.add("DELAY " + n, floats, "SECONDS");
        rate_ = columns.add("RATE " + n, floats, "SEC/SEC");
        weight_ = columns.add("WEIGHT " + n, floats, "");
        reference_ = columns.add("REFANT " + n, wholes, "");
    }
    /// Those behind the columns of AIPS.
    void addOwn(Columns& columns, int number, std::size_t ifs)
    {
        const std::string n = std::to_string(number), doubles = std::to_string(ifs) + "D",
                          wholes = std::to_string(ifs) + "J";
        error_ = columns.add("ERROR " + n, doubles, "");
        model_ = columns.add("MODEL WEIGHT " + n, doubles, "");
        steps_ = columns.add("ITERATIONS " + n, wholes, "");
        state_ = columns.add("STATE " + n, wholes, "");
        flag_ = columns.add("FLAGGED " + n, wholes, "");
        flaggedReal_ = columns.add("FLAGGED REAL " + n, doubles, "");
        flaggedImaginary_ = columns.add("FLAGGED IMAG " + n, doubles, "");
    }
    void write(const Cfitsio& library, MemoryTable& table, const AGains& gains,
               const std::vector<Row>& rows, std::size_t hand) const
    {
        const auto ifs = static_cast<std::size_t>(gains.ifs);
        const Gain none;
        const auto gainOf = [&](std::size_t r, std::size_t i) -> const Gain& {
            const int group = gains.groupOf(static_cast<int>(i));
            return group < 0 ? none
                             : gains.at(rows[r].interval, static_cast<std::size_t>(group), hand,
                                        rows[r].antenna);
        };
        const auto each = [&](int column, auto value) {
            writeColumn(library, table, column, rows.size(), ifs,
                        [&](std::size_t r, std::size_t i) { return value(gainOf(r, i)); });
        };
        const auto correction = [](const Gain& gain) { return 1.0 / gain.value; };
        writeColumn(library, table, delay_, rows.size(), 1, [](auto, auto) { return 0.0; });
        each(real_, [&](const Gain& g) { return g.isUsable() ? correction(g).real() : noNumber; });
        each(imaginary_,
             [&](const Gain& g) { return g.isUsable() ? correction(g).imag() : noNumber; });
        each(delayOfIf_, [](const Gain& g) { return g.isUsable() ? 0.0 : noNumber; });
        each(rate_, [](const Gain& g) { return g.isUsable() ? 0.0 : noNumber; });
        // a ratio without errors would read as a failure
        each(weight_,
             [](const Gain& g) { return g.isUsable() ? (g.error > 0 ? g.ratio() : 1.0) : 0.0; });
        const auto numberOf = [&gains](int antenna) {
            return antenna < 0 || static_cast<std::size_t>(antenna) >= gains.antennas().size()
                       ? 0
                       : gains.antennas()[static_cast<std::size_t>(antenna)].number;
        };
        each(reference_, [&](const Gain& g) { return numberOf(g.reference); });
        each(error_, [](const Gain& g) { return g.error; });
        each(model_, [](const Gain& g) { return g.weight; });
        each(steps_, [](const Gain& g) { return g.iterations; });
        each(state_, [](const Gain& g) { return static_cast<int>(g.state); });
        each(flag_, [](const Gain& g) { return static_cast<int>(g.isFlagged); });
        const auto isKept = [](const Gain& g) {
            return g.state == GainState::solved && g.isFlagged;
        };
        each(flaggedReal_, [&](const Gain& g) { return isKept(g) ? g.value.real() : noNumber; });
        each(flaggedImaginary_,
             [&](const Gain& g) { return isKept(g) ? g.value.imag() : noNumber; });
    }

private:
    int delay_, real_, imaginary_, delayOfIf_, rate_, weight_, reference_;
    int error_ = 0, model_ = 0, steps_ = 0, state_ = 0, flag_ = 0, flaggedReal_ = 0,
        flaggedImaginary_ = 0;
};

std::vector<Row> rowsOf(const AGains& gains)
{
    std::vector<Row> rows;
    for (std::size_t t = 0; t < gains.intervals().size(); ++t)
        for (std::size_t a = 0; a < gains.antennas().size(); ++a) {
            int hasData = 0;
            for (std::size_t g = 0; g < gains.groups().size(); ++g)
                for (std::size_t h = 0; h < gains.hands().size(); ++h)
                    hasData = hasData || gains.at(t, g, h, a).state != GainState::missing;
            if (hasData)
                rows.push_back({t, a});
        }
    return rows;
}

void writeKeys(const Cfitsio& library, MemoryTable& table, const AGains& gains)
{
    int most = 0;
    for (const GainAntenna& antenna : gains.antennas())
        most = std::max(most, antenna.number);
    fitsfile* const file = table.file();
    int* const status = table.status();
    const auto whole = [&](const char* key, LONGLONG value, const char* comment) {
        library.writeWholeKey(file, key, value, comment, status);
    };
    whole("EXTVER", 1, "version of the table");
    whole("NO_ANT", most, "highest number of an antenna");
    whole("NO_POL", static_cast<LONGLONG>(gains.hands().size()), "hands");
    whole("NO_IF", gains.ifs, "IFs");
    whole("NO_NODES", 0, "nodes of interpolation");
    library.writeNumberKey(file, "MGMOD", 1.0, 15, "mean modulus of the gains", status);
    library.writeFlagKey(file, "APPLIED", 0, "applied to the data", status);
    library.writeNumberKey(file, "REFDAY", gains.referenceDay, 15,
                           "Julian date of 0h of the day that times count from", status);
    for (std::size_t h = 0; h < gains.hands().size(); ++h)
        library.writeTextKey(file, ("HAND" + std::to_string(h + 1)).c_str(),
                             std::string(1, gains.hands()[h]).c_str(), "R, L, X, Y or I", status);
    for (int i = 0; i < gains.ifs; ++i)
        whole(("IFGRP" + std::to_string(i + 1)).c_str(), gains.groupOf(i) + 1,
              "group of the IF, from 1; 0 for none");
}

int makeTable(const Cfitsio& library, MemoryTable& table, const AGains& gains)
{
    const std::vector<Row> rows = rowsOf(gains);
    const auto ifs = static_cast<std::size_t>(gains.ifs);
    library.createImage(table.file(), BYTE_IMG, 0, nullptr, table.status());
    Columns columns;
    const int time = columns.add("TIME", "1D", "DAYS");
    const int length = columns.add("TIME INTERVAL", "1E", "DAYS");
    const int source = columns.add("SOURCE ID", "1J", "");
    const int antenna = columns.add("ANTENNA NO.", "1J", "");
    const int subarray = columns.add("SUBARRAY", "1J", "");
    const int selection = columns.add("FREQ ID", "1J", "");
    const int rotation = columns.add("I.FAR.ROT", "1E", "RAD/M**2");
    const int node = columns.add("NODE NO.", "1J", "");
    std::vector<HandColumns> hands;
    for (std::size_t h = 0; h < gains.hands().size(); ++h)
        hands.emplace_back(columns, static_cast<int>(h + 1), ifs);
    std::size_t longest = 8;
    for (const GainAntenna& one : gains.antennas())
        longest = std::max(longest, one.name.size());
    const int name = columns.add("ANNAME", std::to_string(longest) + "A", "");
    const int start = columns.add("START", "1D", "DAYS");
    const int end = columns.add("END", "1D", "DAYS");
    for (std::size_t h = 0; h < hands.size(); ++h)
        hands[h].addOwn(columns, static_cast<int>(h + 1), ifs);
    columns.create(library, table, rows.size());
    writeKeys(library, table, gains);

    const auto intervals = [&](int column, auto value) {
        writeColumn(library, table, column, rows.size(), 1, [&](std::size_t r, std::size_t) {
            return value(gains.intervals()[rows[r].interval]);
        });
    };
    intervals(time, [](const GainInterval& one) { return one.middle(); });
    intervals(length, [](const GainInterval& one) { return one.end - one.start; });
    intervals(source, [](const GainInterval& one) { return one.source; });
    intervals(subarray, [](const GainInterval& one) { return one.subarray; });
    intervals(selection, [](const GainInterval&) { return 1; });
    intervals(rotation, [](const GainInterval&) { return 0.0; });
    intervals(node, [](const GainInterval&) { return 0; });
    intervals(start, [](const GainInterval& one) { return one.start; });
    intervals(end, [](const GainInterval& one) { return one.end; });
    writeColumn(library, table, antenna, rows.size(), 1, [&](std::size_t r, std::size_t) {
        return gains.antennas()[rows[r].antenna].number;
    });
    std::vector<std::string> texts;
    for (const Row& row : rows)
        texts.push_back(gains.antennas()[row.antenna].name);
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    if (!pointers.empty())
        library.writeTexts(table.file(), name, 1, 1, static_cast<LONGLONG>(pointers.size()),
                           pointers.data(), table.status());
    for (std::size_t h = 0; h < hands.size(); ++h)
        hands[h].write(library, table, gains, rows, h);
    return *table.status() == 0;
}

}  // namespace

int writeGainTable(const std::string& file, const AGains& gains, std::string& error)
{
    error.clear();
    // more than any array; names of columns and keys have room for them
    constexpr int mostIfs = 999;
    if (gains.ifs < 1 || gains.ifs > mostIfs || gains.hands().empty() || gains.hands().size() > 2) {
        error = "a table of gains has 1 to 999 IFs and one or two hands";
        return 0;
    }
    const Cfitsio& library = cfitsio(error);
    if (!library.isLoaded)
        return 0;
    try {
        MemoryTable table(library);
        const std::int64_t bytes =
            *table.status() == 0 && makeTable(library, table, gains) ? table.finish() : 0;
        if (bytes == 0) {
            error = table.fault();
            return 0;
        }
        SafeFile safe;
        if (!safe.open(file) || !safe.file().write(table.bytes(), bytes) || !safe.commit()) {
            error = safe.fault();
            return 0;
        }
        return 1;
    } catch (const std::bad_alloc&) {
        error = "there is not enough memory for the table";
        return 0;
    }
}

}  // namespace pavane
