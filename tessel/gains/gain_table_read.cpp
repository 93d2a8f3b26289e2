#include "tessel/fits_hdus.h"
#include "tessel/gains/gain_files.h"
#include "tessel/time_text.h"
#include "tessel/uvfits/FitsTable.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <new>
#include <set>
#include <tuple>
#include <utility>

namespace pavane
{
namespace
{

constexpr int mostHeaders = 100000, mostIfs = 999;
/// Days: times of one solution that writers round differently.
constexpr double sameTime = 0.1 / 86400;
/// Corrections at and above this are what old files write for none.
constexpr double blankCorrection = 3140.89;

/// A row of the table, its gains by hand and IF.
struct Row {
    GainInterval interval;
    GainAntenna antenna;
    std::vector<Gain> gains;
    std::vector<int> references;  ///< numbers of antennas
};

struct HandColumns {
    int real, imaginary, weight, reference, error, model, steps, state, flag, flaggedReal,
        flaggedImaginary;
    std::vector<int> rest;  ///< delays and rates, which an array of gains has no place for

    HandColumns(const FitsTable& table, int hand)
    {
        const std::string n = std::to_string(hand);
        const auto column = [&](const char* name) { return table.column(name + n); };
        real = column("REAL");
        imaginary = column("IMAG");
        weight = column("WEIGHT");
        reference = column("REFANT");
        error = column("ERROR");
        model = column("MODEL WEIGHT");
        steps = column("ITERATIONS");
        state = column("STATE");
        flag = column("FLAGGED");
        flaggedReal = column("FLAGGED REAL");
        flaggedImaginary = column("FLAGGED IMAG");
        for (const char* const name : {"MBDELAY", "DELAY", "RATE", "DISP", "DDISP"})
            if (const int one = column(name); one >= 0)
                rest.push_back(one);
    }
};

/// Of a correction in the table; missing where it has none.
Gain gainOf(const FitsTable& table, const HandColumns& columns, int i)
{
    const auto number = [&](int column) { return table.number(column, i).value; };
    Gain gain;
    const std::complex<double> correction(number(columns.real), number(columns.imaginary));
    const double weight = number(columns.weight);
    const int isCorrection = std::isfinite(std::abs(correction)) && std::abs(correction) > 0 &&
                             std::abs(correction) < blankCorrection &&
                             (columns.weight < 0 || weight > 0);
    if (isCorrection) {
        gain.state = GainState::solved;
        gain.value = 1.0 / correction;
        gain.error = columns.weight < 0 ? 0 : std::abs(gain.value) / weight;
    } else
        gain.state = GainState::failed;
    if (columns.state >= 0) {
        // what we wrote ourselves; somebody may have taken solutions out since
        const int state = table.whole(columns.state, static_cast<int>(gain.state), i);
        gain.error =
            std::isfinite(number(columns.error)) ? std::max(number(columns.error), 0.0) : 0;
        gain.weight = std::isfinite(number(columns.model)) ? number(columns.model) : 0;
        gain.iterations = table.whole(columns.steps, 0, i);
        const std::complex<double> kept(number(columns.flaggedReal),
                                        number(columns.flaggedImaginary));
        if (!isCorrection && table.whole(columns.flag, 0, i) && std::isfinite(std::abs(kept))) {
            gain.state = GainState::solved;
            gain.value = kept;
            gain.isFlagged = 1;
        } else if (!isCorrection && state == static_cast<int>(GainState::missing))
            gain.state = GainState::missing;
    }
    if (gain.state != GainState::solved && !(gain.error > 0))
        gain.error = 0;
    return gain;
}

/// Reads the rows. 0, and `error`, when the table is none of gains.
int readRows(FitsTable& table, const std::vector<HandColumns>& hands, int ifs,
             std::vector<Row>& rows, std::int64_t& restCount, std::string& error)
{
    const int time = table.column("TIME"), length = table.column("TIME INTERVAL"),
              source = table.column("SOURCE ID"), antenna = table.column("ANTENNA NO."),
              subarray = table.column("SUBARRAY"), name = table.column("ANNAME"),
              start = table.column("START"), end = table.column("END");
    if (time < 0 || antenna < 0) {
        error = "has a table of gains without times or antennas";
        return 0;
    }
    while (table.next()) {
        Row row;
        const double middle = table.number(time).value;
        const double whole = table.number(length).value;
        if (!std::isfinite(middle))
            continue;
        const double half = std::isfinite(whole) && whole > 0 ? whole / 2 : 0;
        row.interval = {middle - half, middle + half, std::max(table.whole(subarray, 1), 1),
                        std::max(table.whole(source, 0), 0)};
        if (start >= 0 && table.number(start).value <= table.number(end).value) {
            row.interval.start = table.number(start).value;
            row.interval.end = table.number(end).value;
        }
        row.antenna = {row.interval.subarray, table.whole(antenna, 0), table.text(name)};
        for (const HandColumns& hand : hands) {
            for (int i = 0; i < ifs; ++i) {
                row.gains.push_back(gainOf(table, hand, i));
                row.references.push_back(table.whole(hand.reference, 0, i));
            }
            for (const int column : hand.rest)
                for (std::int64_t i = 0; i < table.length(column); ++i) {
                    const double value = table.number(column, i).value;
                    restCount +=
                        std::isfinite(value) && value != 0 && std::abs(value) < blankCorrection;
                }
        }
        rows.push_back(std::move(row));
    }
    if (rows.empty())
        error = "has a table of gains without rows";
    return !rows.empty();
}

/// Finds the intervals of the rows and sets `intervalOf` for each row.
std::vector<GainInterval> intervalsOf(const std::vector<Row>& rows,
                                      std::vector<std::size_t>& intervalOf)
{
    std::vector<std::size_t> order(rows.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    const auto key = [&](std::size_t i) {
        const GainInterval& one = rows[i].interval;
        return std::tuple(one.subarray, one.source, one.middle());
    };
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
    std::vector<GainInterval> intervals;
    intervalOf.assign(rows.size(), 0);
    for (const std::size_t i : order) {
        const GainInterval& one = rows[i].interval;
        const double near = std::min(sameTime, (one.end - one.start) / 4);
        const GainInterval* const last = intervals.empty() ? nullptr : &intervals.back();
        if (!last || last->subarray != one.subarray || last->source != one.source ||
            one.middle() - last->middle() > near)
            intervals.push_back(one);
        intervalOf[i] = intervals.size() - 1;
    }
    for (std::size_t i = 0; i < intervals.size(); ++i) {
        GainInterval& one = intervals[i];
        if (one.start < one.end)
            continue;
        const auto middleTo = [&](std::size_t other) {
            return intervals[other].subarray == one.subarray
                       ? (intervals[other].middle() + one.middle()) / 2
                       : one.middle();
        };
        const double middle = one.middle();
        const double before = i > 0 ? middleTo(i - 1) : middle;
        const double after = i + 1 < intervals.size() ? middleTo(i + 1) : middle;
        // at the ends as far as on the other side
        one.start = before < middle ? before : middle - (after - middle);
        one.end = after > middle ? after : middle + (middle - one.start);
    }
    return intervals;
}

int makeArray(const std::vector<Row>& rows, std::vector<std::vector<int>> groups,
              std::vector<char> hands, int ifs, AGains& gains, std::string& error)
{
    std::map<std::pair<int, int>, std::string> names;
    for (const Row& row : rows) {
        std::string& name = names[{row.antenna.subarray, row.antenna.number}];
        if (name.empty())
            name = row.antenna.name;
    }
    std::map<std::pair<int, int>, std::size_t> places;
    std::vector<GainAntenna> antennas;
    for (const auto& [key, name] : names) {
        places[key] = antennas.size();
        antennas.push_back({key.first, key.second, name});
    }
    std::vector<std::size_t> intervalOf;
    std::vector<GainInterval> intervals = intervalsOf(rows, intervalOf);
    // rows of few antennas a time would make an array of nothing but gaps
    constexpr double mostGaps = 1000, always = 1e6;
    const double cells =
        static_cast<double>(intervals.size()) * static_cast<double>(antennas.size());
    if (cells > always && cells > mostGaps * static_cast<double>(rows.size())) {
        error = "has a table of gains whose antennas have no times in common";
        return 0;
    }
    const std::size_t handCount = hands.size();
    if (!gains.create(std::move(antennas), std::move(intervals), std::move(groups),
                      std::move(hands))) {
        error = "has more gains than there is memory for";
        return 0;
    }
    gains.ifs = ifs;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const Row& row = rows[r];
        const std::size_t antenna = places[{row.antenna.subarray, row.antenna.number}];
        for (std::size_t h = 0; h < handCount; ++h)
            for (std::size_t g = 0; g < gains.groups().size(); ++g) {
                if (gains.groups()[g].empty())
                    continue;
                const std::size_t from = h * static_cast<std::size_t>(ifs) +
                                         static_cast<std::size_t>(gains.groups()[g][0]);
                Gain& gain = gains.at(intervalOf[r], g, h, antenna);
                gain = row.gains[from];
                const auto place = places.find({row.antenna.subarray, row.references[from]});
                gain.reference = place == places.end() ? -1 : static_cast<int>(place->second);
            }
    }
    return 1;
}

int readTable(AFile& file, const FitsHdu& hdu, AGains& gains, std::vector<std::string>& notes,
              std::string& error)
{
    FitsTable table(file);
    std::string fault;
    if (!table.open(hdu, fault)) {
        error = "has a damaged table of gains: it " + fault;
        return 0;
    }
    std::vector<HandColumns> columns;
    for (int hand = 1; hand <= 2; ++hand)
        if (const HandColumns one(table, hand); one.real >= 0 && one.imaginary >= 0)
            columns.push_back(one);
    if (columns.empty()) {
        error = "has a table of gains without the columns REAL1 and IMAG1";
        return 0;
    }
    std::int64_t ifs = table.length(columns[0].real);
    for (const HandColumns& hand : columns)
        ifs = std::min({ifs, table.length(hand.real), table.length(hand.imaginary)});
    if (ifs < 1 || ifs > mostIfs) {
        error = "has a table of gains of " + std::to_string(ifs) + " IFs";
        return 0;
    }
    std::vector<char> hands;
    for (std::size_t h = 0; h < columns.size(); ++h) {
        const std::string name = hdu.cards.text("HAND" + std::to_string(h + 1));
        const int isHand =
            name.size() == 1 && std::string("RLXYI").find(name[0]) != std::string::npos;
        hands.push_back(isHand ? name[0] : "RL"[h]);
    }
    // groups as we write them; without them each IF is one
    std::map<std::int64_t, std::vector<int>> groupOf;
    for (int i = 0; i < ifs; ++i)
        if (const std::int64_t group =
                wholeNumber(hdu.cards, "IFGRP" + std::to_string(i + 1), i + 1);
            group > 0)
            groupOf[group].push_back(i);
    std::vector<std::vector<int>> groups;
    for (auto& [number, group] : groupOf)
        groups.push_back(std::move(group));
    std::vector<Row> rows;
    std::int64_t restCount = 0;
    if (!readRows(table, columns, static_cast<int>(ifs), rows, restCount, error) ||
        !makeArray(rows, std::move(groups), std::move(hands), static_cast<int>(ifs), gains, error))
        return 0;
    double day = 0;
    if (hdu.cards.number("REFDAY", day))
        gains.referenceDay = day;
    if (restCount > 0)
        notes.push_back("has " + std::to_string(restCount) +
                        " delays and rates, which are left out");
    double modulus = 1;
    if (hdu.cards.number("MGMOD", modulus) && modulus > 0 && std::abs(modulus - 1) > 1e-6)
        notes.push_back("gives a mean modulus of " + std::to_string(modulus) +
                        ", which is not applied");
    return 1;
}

}  // namespace

int readGainTable(const std::string& file, AGains& gains, std::vector<std::string>& notes,
                  std::string& error)
{
    gains = {};
    notes.clear();
    error.clear();
    try {
        AFile in;
        FitsHdu hdu;
        if (!openFits(file, in, error))
            return 0;
        if (!readHdu(in, 0, hdu)) {
            error = "has a header that cannot be read";
            return 0;
        }
        const std::int64_t size = in.size();
        FitsHdu best;
        std::int64_t bestVersion = -1;
        std::int64_t start = endOf(hdu);
        for (int i = 0; i < mostHeaders && start < size && readHdu(in, start, hdu); ++i) {
            if (hdu.dataBytes > size - hdu.dataStart) {
                if (hdu.cards.text("EXTNAME") == "AIPS SN") {
                    error = "ends before its table of gains does";
                    return 0;
                }
                break;
            }
            const std::int64_t version = wholeNumber(hdu.cards, "EXTVER", 1);
            if (hdu.kind == "BINTABLE" && hdu.cards.text("EXTNAME") == "AIPS SN" &&
                version > bestVersion) {
                best = hdu;
                bestVersion = version;
            }
            start = endOf(hdu);
        }
        if (bestVersion < 0) {
            error = "has no table of gains (AIPS SN)";
            return 0;
        }
        return readTable(in, best, gains, notes, error);
    } catch (const std::bad_alloc&) {
        gains = {};
        error = "needs more memory than there is";
        return 0;
    }
}

}  // namespace pavane
