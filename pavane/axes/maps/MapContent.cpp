#include "pavane/axes/maps/MapContent.h"

#include "tessel/plain_text.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

namespace pavane
{

namespace
{

/// Day 0 of the modified Julian dates: written by programs for a date that nobody told them.
constexpr const char* noDate = "1858-11-17";

/// Texts of a header reach terminals, lines of numbers, titles and the header of a mask.
void makePlain(MapHeader& header)
{
    for (std::string* text :
         {&header.bunit, &header.object, &header.dateObs, &header.telescope, &header.stokes})
        *text = plainText(*text);
    if (header.dateObs.starts_with(noDate))
        header.dateObs.clear();
    for (MapAxis& axis : header.axes) {
        axis.ctype = plainText(axis.ctype);
        axis.cunit = plainText(axis.cunit);
    }
}

/// Share of the time that reading takes; range and noise are about as much again.
constexpr double shareOfReading = 0.5;
/// How often range and noise go over most maps: once, and for two medians twice each.
constexpr double passes = 5;
/// Cells from one word to the user to the next.
constexpr std::int64_t cellsOfWord = std::int64_t{1} << 20;

/// The cells of a map, telling now and then how far whoever reads them is. When nobody wants them
/// any more all are blank, which is read fast.
class WatchedAccess final : public AMatrixAccess
{
public:
    WatchedAccess(const AMatrixAccess& cells, const ProgressFunction& progress)
        : cells_(cells), progress_(progress)
    {
    }
    int rows() const override { return cells_.rows(); }
    int columns() const override { return cells_.columns(); }
    void copyRow(int row, int first, int count, float* to) const override
    {
        cells_.copyRow(row, first, count, to);
    }
    const float* floatRow(int row) const override
    {
        read_ += columns();
        if (goesOn_ && read_ - told_ >= cellsOfWord) {
            told_ = read_;
            const double all = passes * rows() * static_cast<double>(columns());
            const double part = std::min(static_cast<double>(read_) / all, 1.0);
            goesOn_ = !progress_ || progress_(shareOfReading + (1 - shareOfReading) * part);
            if (!goesOn_)
                blank_.assign(static_cast<std::size_t>(columns()),
                              std::numeric_limits<float>::quiet_NaN());
        }
        return goesOn_ ? cells_.floatRow(row) : blank_.data();
    }
    int goesOn() const { return goesOn_; }

private:
    const AMatrixAccess& cells_;
    const ProgressFunction& progress_;
    mutable std::vector<float> blank_;
    mutable std::int64_t read_ = 0, told_ = 0;
    mutable int goesOn_ = 1;
};

/// What follows from the header that `content` has and its cells, which may be anywhere.
int describe(const AMatrixAccess& cells, MapContent& content, CString& error,
             const ProgressFunction& progress)
{
    makePlain(content.map.header);
    content.frame = frameOf(content.map.header, cells.rows(), cells.columns());
    const WatchedAccess access(cells, progress);
    content.range = mapRange(access);
    content.noise = mapNoise(access);
    if (access.goesOn())
        return 1;
    content = {};
    error = readingGivenUp;
    return 0;
}

}  // namespace

int readMapContent(const CString& file, int plane, MapContent& content, CString& error,
                   const ProgressFunction& progress)
{
    const auto reading = [&progress](double part) { return progress(shareOfReading * part); };
    if (!readFitsMap(file, plane, content.map, error,
                     progress ? ProgressFunction(reading) : ProgressFunction()))
        return 0;
    return describe(AFloatMatrixAccess(content.map.cells), content, error, progress);
}

int describeCells(const AMatrixAccess& cells, const MapHeader& header, MapContent& content,
                  CString& error, const ProgressFunction& progress)
{
    content = {};
    content.map.header = header;
    return describe(cells, content, error, progress);
}

int MapContentReader::begin(const CString& file, CString& error)
{
    content_ = {};
    row_ = hasRange_ = 0;
    if (!reader_.open(file, 0, error))
        return 0;
    if (!content_.map.cells.allocate(reader_.rows(), reader_.columns())) {
        error = "is larger than the memory";
        return 0;
    }
    content_.map.header = reader_.header();
    makePlain(content_.map.header);
    content_.frame = frameOf(content_.map.header, reader_.rows(), reader_.columns());
    return 1;
}

int MapContentReader::step(CString& error)
{
    error.clear();
    AMatrix<float>& cells = content_.map.cells;
    if (row_ < cells.rows()) {
        const auto wanted =
            static_cast<int>(std::max<std::int64_t>(1, cellsOfWord / cells.columns()));
        const int count = std::min(wanted, cells.rows() - row_);
        if (!reader_.read(row_, count, cells.row(row_), error))
            return 0;
        row_ += count;
        return 1;
    }
    const AFloatMatrixAccess access(cells);
    if (!hasRange_) {
        content_.range = mapRange(access);
        return hasRange_ = 1;
    }
    content_.noise = mapNoise(access);
    return 0;
}

}  // namespace pavane
