#include "pavane/tables/components/component_table.h"

#include "pavane/resources/component_messages.h"
#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <iterator>
#include <utility>

namespace pavane
{

namespace
{

constexpr const char* titles[] = {"No.",
                                  "Kind",
                                  "Peak flux [Jy]",
                                  "Large axis [arcsec]",
                                  "Axis ratio",
                                  "Inclination [deg]",
                                  "Angle [deg]",
                                  "Distance [arcsec]",
                                  "Width"};
static_assert(std::size(titles) == componentColumns + 1);

constexpr const char* kindNames[] = {"Point",  "Gaussian", "Disk",     "Thin ring",
                                     "Sphere", "Strip",    "Wide ring"};
static_assert(std::size(kindNames) == componentKinds);

/// Null for a column that holds no number.
double* fieldOf(ACompItem& item, int column)
{
    switch (column) {
    case componentFluxColumn:
        return &item.PeakFlux();
    case componentLargeAxisColumn:
        return &item.LargeAxis();
    case componentAxisRatioColumn:
        return &item.AxisRatio();
    case componentInclinationColumn:
        return &item.Inclination();
    case componentAngleColumn:
        return &item.Angle();
    case componentDistanceColumn:
        return &item.Distance();
    case componentWidthColumn:
        return &item.Width();
    default:
        return nullptr;
    }
}

bool isSame(std::string_view a, std::string_view b)
{
    return std::ranges::equal(a, b, [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) ==
               std::tolower(static_cast<unsigned char>(y));
    });
}

int setKind(ACompItem& item, std::string_view typed, std::string& message)
{
    int kind = 0;
    for (int i = 0; i < componentKinds; ++i)
        if (isSame(typed, kindNames[i]))
            kind = i + 1;
    // a number that has no name is one of another program, which can be kept
    if (kind == 0 && !stoval(typed, kind)) {
        message = '"' + std::string(typed) + '"' + unknownKindText;
        return 0;
    }
    item.type = kind;
    return 1;
}

/// Why a column cannot have the number; null when it can.
const char* faultOf(int column, double value)
{
    switch (column) {
    case componentLargeAxisColumn:
        return value < 0 ? axisBelow0Text : nullptr;
    case componentAxisRatioColumn:
        return value < 0 || value > 1 ? ratioRangeText : nullptr;
    case componentDistanceColumn:
        return value < 0 ? distanceBelow0Text : nullptr;
    case componentWidthColumn:
        return value < 0 || value > 1 ? widthRangeText : nullptr;
    default:
        return nullptr;
    }
}

class ListTexts : public TableTexts
{
public:
    explicit ListTexts(const AComponents& model) : model_(model) {}
    TableExtent extent() override { return {model_.count(), componentColumns}; }
    int text(TableCell cell, CString& text) override
    {
        text = cell.row == 0      ? CString(componentTitle(cell.column))
               : cell.column == 0 ? std::to_string(cell.row)
                                  : componentText(model_(cell.row - 1), cell.column);
        return 1;
    }

private:
    const AComponents& model_;
};

class StringSink : public TextSink
{
public:
    std::string text;
    int write(const char* bytes, std::size_t count) override
    {
        return text.append(bytes, count), 1;
    }
};

}  // namespace

const char* componentTitle(int column)
{
    return column >= 0 && column <= componentColumns ? titles[column] : "";
}

std::string componentKindName(int kind)
{
    return kind >= 1 && kind <= componentKinds ? kindNames[kind - 1] : std::to_string(kind);
}

std::string componentText(const ACompItem& item, int column)
{
    if (column == componentKindColumn)
        return componentKindName(item.type);
    ACompItem copy = item;
    const double* const field = fieldOf(copy, column);
    return field ? valToStr(*field) : std::string();
}

std::string roomyNumber(const std::string& text, const std::function<int(const std::string&)>& fits)
{
    constexpr int mostDigits = 15;
    double value = 0;
    if (fits(text) || !stoval(text, value))
        return text;
    for (int digits = mostDigits; digits > 0; --digits)
        if (std::string shorter = valToStr(value, digits); fits(shorter))
            return shorter;
    return text;
}

int setComponentText(ACompItem& item, int column, std::string_view text, std::string& message)
{
    const std::string_view typed = trimmed(text, " \t\r\n");
    if (column == componentKindColumn)
        return setKind(item, typed, message);
    double* const field = fieldOf(item, column);
    double value = 0;
    if (!field)
        return message = noSuchFieldText, 0;
    if (!stoval(typed, value) || !std::isfinite(value)) {
        message = '"' + std::string(typed) + '"' + noFieldNumberText;
        return 0;
    }
    if (const char* const fault = faultOf(column, value))
        return message = fault, 0;
    *field = value;
    return 1;
}

int writeComponentTsv(const AComponents& model, TextSink& sink)
{
    ListTexts texts(model);
    return writeTableText(texts, allCells(texts.extent()), sink);
}

std::string componentTsv(const AComponents& model)
{
    StringSink sink;
    (void)writeComponentTsv(model, sink);
    return std::move(sink.text);
}

}  // namespace pavane
