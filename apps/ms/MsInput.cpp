#include "apps/ms/MsInput.h"

#include "apps/ms/Cells.h"
#include "apps/ms/Failure.h"
#include "apps/ms/text.h"

#include <algorithm>
#include <casacore/tables/Tables/ScalarColumn.h>
#include <casacore/tables/Tables/TableRecord.h>
#include <cmath>

namespace pavane_ms
{

using namespace casacore;  // NOLINT

namespace
{

constexpr double secondsPerDay = 86400.0;
constexpr std::size_t blockRows = 8192;

std::vector<int> intsOf(const Array<Int>& values) { return {values.begin(), values.end()}; }

}  // namespace

MsInput::MsInput(const std::string& name, const Selection& selection) : name_(name)
{
    try {
        table_ = Table(name, TableLock(TableLock::NoLocking), Table::Old,
                       TSMOption(TSMOption::Cache, 0, 4));
        for (const char* column : {"TIME", "ANTENNA1", "ANTENNA2", "DATA_DESC_ID", "FIELD_ID",
                                   "UVW", "INTERVAL", "EXPOSURE", "ARRAY_ID", "SCAN_NUMBER",
                                   "OBSERVATION_ID", "FLAG", "FLAG_ROW", "WEIGHT"})
            if (!table_.tableDesc().isColumn(column))
                throw Failure("has no column " + std::string(column));
        readDescriptions(selection);
        openColumns(selection);
    } catch (const std::exception& failure) {
        throw Failure(name + " cannot be read as a MeasurementSet: " + failure.what());
    }
    if (table_.nrow() == 0)
        throw Failure(name + " has no rows");
    const Table fields = subtable("FIELD");
    const ScalarColumn<String> names(fields, "NAME");
    for (rownr_t i = 0; i < fields.nrow(); ++i)
        hasField_.push_back(selection.source.empty() || std::string(names(i)) == selection.source ||
                            std::to_string(i + 1) == selection.source);
    if (std::count(hasField_.begin(), hasField_.end(), 1) == 0)
        throw Failure(name + " has no source " + selection.source);
    const double first = ScalarColumn<Double>(table_, "TIME")(0) / secondsPerDay;
    if (!(std::abs(first) < 1e7))
        throw Failure(name + " has no date in its first row");
    referenceDay_ = std::floor(first) + modifiedZero;
}

Table MsInput::subtable(const std::string& name) const
{
    const TableRecord& keys = table_.keywordSet();
    if (!keys.isDefined(name))
        throw Failure("has no table " + name);
    return keys.asTable(name, TableLock(TableLock::NoLocking));
}

void MsInput::readDescriptions(const Selection& selection)
{
    const Table links = subtable("DATA_DESCRIPTION"), spectra = subtable("SPECTRAL_WINDOW");
    const Table polarizations = subtable("POLARIZATION");
    const ScalarColumn<Int> spectral(links, "SPECTRAL_WINDOW_ID"),
        polarization(links, "POLARIZATION_ID");
    const ArrayColumn<Int> hands(polarizations, "CORR_TYPE");
    const auto count = static_cast<int>(spectra.nrow());
    std::vector<int> wanted, all;
    for (const int number : selection.ifs) {
        if (number > count)
            throw Failure("the data have no IF " + std::to_string(number) + ", only " +
                          std::to_string(count));
        wanted.push_back(number - 1);
    }
    std::vector<int> codes;
    for (rownr_t i = 0; i < links.nrow(); ++i) {
        Description one;
        one.spectral = spectral(i);
        if (one.spectral < 0 || one.spectral >= count || polarization(i) < 0 ||
            static_cast<rownr_t>(polarization(i)) >= polarizations.nrow())
            throw Failure("describes data by windows or hands that it lacks");
        one.hands = intsOf(hands.get(static_cast<rownr_t>(polarization(i))));
        const int isTaken =
            wanted.empty() || std::find(wanted.begin(), wanted.end(), one.spectral) != wanted.end();
        if (isTaken) {
            one.window = 0;
            all.push_back(one.spectral);
            for (const int code : one.hands)
                if (std::find(codes.begin(), codes.end(), code) == codes.end())
                    codes.push_back(code);
        }
        descriptions_.push_back(one);
    }
    plan_ = planHands(codes, selection.hands);
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    const ArrayColumn<Double> frequencies(spectra, "CHAN_FREQ"), widths(spectra, "CHAN_WIDTH");
    const ScalarColumn<Int> frames(spectra, "MEAS_FREQ_REF"), sidebands(spectra, "NET_SIDEBAND");
    const ScalarColumn<Double> references(spectra, "REF_FREQUENCY");
    for (std::size_t rank = 0; rank < all.size(); ++rank)
        for (std::size_t d = 0; d < descriptions_.size(); ++d) {
            Description& one = descriptions_[d];
            if (one.window < 0 || one.spectral != all[rank])
                continue;
            one.window = static_cast<int>(windows_.size());
            descriptionOf_.push_back(static_cast<int>(d));
            for (const int from : plan_.from) {
                const int code = from < 0 ? 0 : codes[static_cast<std::size_t>(from)];
                const auto found = std::find(one.hands.begin(), one.hands.end(), code);
                one.from.push_back(
                    found == one.hands.end() ? -1 : static_cast<int>(found - one.hands.begin()));
            }
            const auto row = static_cast<rownr_t>(one.spectral);
            MsWindow window;
            window.ifNumber = static_cast<int>(rank) + 1;
            window.name = "IF " + std::to_string(one.spectral + 1);
            const Array<Double> own = frequencies.get(row), wide = widths.get(row);
            window.frequencies.assign(own.begin(), own.end());
            window.widths.assign(wide.begin(), wide.end());
            window.reference = references(row);
            window.frame = frames(row);
            window.sideband = sidebands(row);
            if (window.frequencies.empty() || window.widths.size() != window.frequencies.size())
                throw Failure("has an IF without channels");
            windows_.push_back(window);
        }
}

void MsInput::openColumns(const Selection& selection)
{
    const TableDesc& desc = table_.tableDesc();
    column_ = selection.column;
    if (!desc.isColumn(column_) || desc.columnDesc(column_).dataType() != TpComplex ||
        !desc.columnDesc(column_).isArray())
        throw Failure("has no column of visibilities " + column_);
    weightColumn_ = desc.isColumn("WEIGHT_SPECTRUM") ? "WEIGHT_SPECTRUM" : "";
    // places of hands that were made up are flagged only in the original flags
    WorkFacts facts;
    if (column_ == "DATA" && facts.read(table_)) {
        flagColumn_ = "ORIGINAL_FLAG";
        weightColumn_ = "ORIGINAL_WEIGHT";
    }
    data_.attach(table_, column_);
    flag_.attach(table_, flagColumn_);
    weight_.attach(table_, "WEIGHT");
    flagRow_.attach(table_, "FLAG_ROW");
    if (!weightColumn_.empty())
        spectrum_.attach(table_, weightColumn_);
}

int MsInput::hasField(int field) const
{
    return field >= 0 && static_cast<std::size_t>(field) < hasField_.size() &&
           hasField_[static_cast<std::size_t>(field)];
}

int MsInput::windowOfSpectral(int spectral) const
{
    for (const Description& one : descriptions_)
        if (one.spectral == spectral)
            return one.window;
    return -1;
}

void MsInput::readRows(rownr_t first, std::vector<MsRow>& rows) const
{
    const std::size_t count = std::min<std::size_t>(blockRows, table_.nrow() - first);
    const Slicer range = rowRange(first, count);
    rows.assign(count, {});
    const auto ints = [&](const char* name, int MsRow::*member) {
        const Vector<Int> values = ScalarColumn<Int>(table_, name).getColumnRange(range);
        for (std::size_t i = 0; i < count; ++i)
            rows[i].*member = values[i];
    };
    const auto doubles = [&](const char* name, double MsRow::*member) {
        const Vector<Double> values = ScalarColumn<Double>(table_, name).getColumnRange(range);
        for (std::size_t i = 0; i < count; ++i)
            rows[i].*member = values[i];
    };
    ints("ANTENNA1", &MsRow::first);
    ints("ANTENNA2", &MsRow::second);
    ints("DATA_DESC_ID", &MsRow::window);
    ints("FIELD_ID", &MsRow::field);
    ints("ARRAY_ID", &MsRow::array);
    ints("SCAN_NUMBER", &MsRow::scan);
    ints("OBSERVATION_ID", &MsRow::observation);
    doubles("TIME", &MsRow::time);
    doubles("INTERVAL", &MsRow::interval);
    doubles("EXPOSURE", &MsRow::exposure);
    const Array<Double> uvw = ArrayColumn<Double>(table_, "UVW").getColumnRange(range);
    const Double* at = uvw.data();
    for (MsRow& row : rows) {
        for (double& axis : row.uvw)
            axis = *at++;
        row.hostTime = (row.time - (referenceDay_ - modifiedZero) * secondsPerDay) / secondsPerDay;
        const int own = row.window;
        if (own < 0 || static_cast<std::size_t>(own) >= descriptions_.size())
            throw Failure(name_ + " describes data by windows that it lacks");
        row.window = descriptions_[static_cast<std::size_t>(own)].window;
        row.array = std::max(row.array, 0);
    }
}

void MsInput::readCells(rownr_t place, const MsRow& row, MsBuilder::Block& block)
{
    const auto window = static_cast<std::size_t>(row.window);
    const Description& description =
        descriptions_[static_cast<std::size_t>(descriptionOf_[window])];
    const auto hands = description.hands.size();
    const std::size_t channels = windows_[window].frequencies.size();
    const IPosition shape(2, static_cast<ssize_t>(hands), static_cast<ssize_t>(channels));
    const auto wrong = [&] {
        throw Failure(name_ + " has a row " + std::to_string(place) +
                      " without the visibilities that its tables tell of");
    };
    if (!data_.isDefined(place) || !flag_.isDefined(place))
        wrong();
    const Array<Complex> data = data_.get(place);
    const Array<Bool> flags = flag_.get(place);
    if (!data.shape().isEqual(shape) || !flags.shape().isEqual(shape))
        wrong();
    Array<Float> weights;
    const int hasSpectrum = !weightColumn_.empty() && spectrum_.isDefined(place) &&
                            spectrum_.shape(place).isEqual(shape);
    if (hasSpectrum)
        weights.reference(spectrum_.get(place));
    else
        weights.reference(weight_.get(place));
    if (!hasSpectrum && weights.size() != hands)
        wrong();
    const Complex* const values = data.data();
    const Bool* const flag = flags.data();
    const Float* const weight = weights.data();
    const int isRowOut = flagColumn_ == "FLAG" && flagRow_(place);
    for (std::size_t c = 0; c < channels; ++c)
        for (const int from : description.from) {
            if (from < 0) {
                block.data.emplace_back(0, 0);
                block.weights.push_back(0);
                block.flags.push_back(1);
                continue;
            }
            const auto h = static_cast<std::size_t>(from), at = c * hands + h;
            const float own = weight[hasSpectrum ? at : h];
            const int isGood = std::isfinite(values[at].real()) &&
                               std::isfinite(values[at].imag()) && std::isfinite(own) && own > 0;
            const float size = std::isfinite(own) ? std::abs(own) : 0;
            block.data.push_back(values[at]);
            block.weights.push_back(plan_.isIntensity ? size / 2 : size);
            block.flags.push_back(isRowOut || flag[at] || !isGood);
        }
}

void MsInput::sortByTime()
{
    table_ = table_.sort("TIME");
    data_.attach(table_, column_);
    flag_.attach(table_, flagColumn_);
    weight_.attach(table_, "WEIGHT");
    flagRow_.attach(table_, "FLAG_ROW");
    if (!weightColumn_.empty())
        spectrum_.attach(table_, weightColumn_);
}

}  // namespace pavane_ms
