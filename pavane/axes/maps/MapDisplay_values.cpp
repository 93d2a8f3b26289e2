// A map display as numbers, for the history of views.
#include "pavane/axes/maps/MapDisplay.h"

#include <cmath>

namespace pavane
{

namespace
{

/// Reads numbers one after the other; what is missing, or no count, is 0.
class Numbers
{
public:
    explicit Numbers(const std::vector<double>& all) : all_(all) {}
    double next() { return at_ < all_.size() ? all_[at_++] : 0; }
    int choice(int count)
    {
        const double value = next();
        return value >= 0 && value < count ? static_cast<int>(value) : 0;
    }
    std::vector<double> list()
    {
        const double count = next();
        const auto left = static_cast<double>(all_.size() - at_);
        std::vector<double> values;
        for (double i = 0; i < count && i < left; ++i)
            values.push_back(next());
        return values;
    }
    CString text()
    {
        CString text;
        for (const double byte : list())
            text += static_cast<char>(
                static_cast<unsigned char>(byte >= 0 && byte < 256 ? static_cast<int>(byte) : '?'));
        return text;
    }

private:
    const std::vector<double>& all_;
    std::size_t at_ = 0;
};

void putList(std::vector<double>& all, const std::vector<double>& values)
{
    all.push_back(static_cast<double>(values.size()));
    all.insert(all.end(), values.begin(), values.end());
}

void putText(std::vector<double>& all, const CString& text)
{
    all.push_back(static_cast<double>(text.size()));
    for (const char letter : text)
        all.push_back(static_cast<unsigned char>(letter));
}

}  // namespace

std::vector<double> MapDisplay::values() const
{
    std::vector<double> all;
    putList(all, colours.values());
    all.push_back(static_cast<double>(contours.levels.unit));
    putList(all, contours.levels.factors);
    for (const double number :
         {static_cast<double>(contours.color), static_cast<double>(contours.width),
          static_cast<double>(beamLook.fill), static_cast<double>(beamLook.corner), beam.major,
          beam.minor, beam.angle, static_cast<double>(axes.gridX), static_cast<double>(axes.gridY),
          static_cast<double>(axes.ticksInside), static_cast<double>(axes.minorTicks),
          static_cast<double>(titles.isPlainValue), static_cast<double>(titles.isOwnHeader)})
        all.push_back(number);
    // the usual header is another one for each plane
    putText(all, titles.isOwnHeader ? titles.header : CString());
    for (const CString* const text : {&titles.x, &titles.y, &titles.value, &titles.unit})
        putText(all, *text);
    return all;
}

MapDisplay MapDisplay::of(const std::vector<double>& values)
{
    MapDisplay display;
    if (values.empty())
        return display;
    Numbers numbers(values);
    display.colours = ColorLook::of(numbers.list());
    display.contours.levels.unit =
        static_cast<LevelUnit>(numbers.choice(static_cast<int>(LevelUnit::noise) + 1));
    display.contours.levels.factors = numbers.list();
    const double color = numbers.next();
    display.contours.color =
        color >= 0 && color <= 0xFFFFFF ? static_cast<COLORREF>(color) : CLR_INVALID;
    display.contours.width = numbers.choice(widestContour + 1);
    display.beamLook.fill = static_cast<BeamFill>(numbers.choice(beamFills));
    display.beamLook.corner = static_cast<BeamCorner>(numbers.choice(beamCorners));
    display.beam = {numbers.next(), numbers.next(), numbers.next()};
    for (int* const flag :
         {&display.axes.gridX, &display.axes.gridY, &display.axes.ticksInside,
          &display.axes.minorTicks, &display.titles.isPlainValue, &display.titles.isOwnHeader})
        *flag = numbers.choice(2);
    for (CString* const text : {&display.titles.header, &display.titles.x, &display.titles.y,
                                &display.titles.value, &display.titles.unit})
        *text = numbers.text();
    return display;
}

}  // namespace pavane
