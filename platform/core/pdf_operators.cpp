#include "platform/core/pdf_operators.h"

namespace pavane
{

void putOperator(std::string& out, std::initializer_list<double> values, const char* op)
{
    for (const double v : values) {
        putNumber(out, v);
        out += ' ';
    }
    out += op;
    out += '\n';
}

void putColor(std::string& out, std::uint32_t color, bool isStroke)
{
    const double red = (color >> 16 & 0xFF) / 255.0;
    const double green = (color >> 8 & 0xFF) / 255.0;
    const double blue = (color & 0xFF) / 255.0;
    if (red == green && green == blue)
        putOperator(out, {red}, isStroke ? "G" : "g");
    else
        putOperator(out, {red, green, blue}, isStroke ? "RG" : "rg");
}

void putPath(std::string& out, const CPointF* points, std::size_t count, bool isClosed)
{
    for (std::size_t i = 0; i < count; ++i)
        putOperator(out, {points[i].x + middleOfUnit, points[i].y + middleOfUnit},
                    i == 0 ? "m" : "l");
    if (isClosed && count > 0)
        out += "h\n";
}

void putRect(std::string& out, const CRect& r)
{
    putOperator(out,
                {double(r.left), double(r.top), double(r.right) - r.left, double(r.bottom) - r.top},
                "re");
}

}  // namespace pavane
