#include "platform/core/pdf_operators.h"
#include "platform/core/PdfContent.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

/// Lines below and through a text.
void PdfContent::rules(CPoint at, double width, const LOGFONT& font, const TextFace& face)
{
    const TextRules known = face.rules();
    const double angle = font.lfEscapement * std::numbers::pi / 1800;
    const auto rule = [&](double below) {
        // a bar that is turned with its text
        const double y = face.metrics().tmAscent + below - known.thickness / 2;
        const double end = y + known.thickness;
        CPointF corners[4] = {{0, y}, {width, y}, {width, end}, {0, end}};
        for (CPointF& p : corners)
            p = {at.x + p.x * std::cos(angle) + p.y * std::sin(angle) - middleOfUnit,
                 at.y - p.x * std::sin(angle) + p.y * std::cos(angle) - middleOfUnit};
        putPath(out_, corners, 4, true);
        out_ += "f\n";
    };
    endText();
    if (font.lfUnderline)
        rule(known.under);
    if (font.lfStrikeOut)
        rule(known.through);
}

void PdfContent::text(CPoint at, std::string_view text, const LOGFONT& font, std::uint32_t color)
{
    // far outside there is nothing to see, and readers fail there
    constexpr int farthest = 1 << 20;
    if (!graphicsHook() || std::abs(at.x) > farthest || std::abs(at.y) > farthest)
        return;
    const TextFace& face = graphicsHook()->face(font, true);
    glyphs_.clear();
    face.pageGlyphs(text, glyphs_);
    if (glyphs_.empty())
        return;
    begin();
    fillColor(color);
    if (!inText_)
        out_ += "BT\n";
    inText_ = true;
    const double angle = font.lfEscapement * std::numbers::pi / 1800;
    const double c = font.lfEscapement ? std::cos(angle) : 1;
    const double s = font.lfEscapement ? std::sin(angle) : 0;
    const double em = face.emHeight();
    // characters that are no glyph each are told apart from how they look
    const bool isSpelled = std::any_of(glyphs_.begin(), glyphs_.end(),
                                       [](const PageGlyph& g) { return g.character == 0; });
    if (isSpelled)
        out_ += "/Span<</ActualText" + pdfText(text) + ">>BDC\n";
    for (std::size_t i = 0; i < glyphs_.size();) {
        const FontProgram* const program = glyphs_[i].program;
        PdfFonts::Font& used = fonts_.of(*program);
        const double x = glyphs_[i].x;
        const double y = face.metrics().tmAscent + glyphs_[i].y;
        if (used.hasOutlines && (known_.font != used.number || known_.fontSize != em)) {
            out_ += "/F" + std::to_string(used.number) + ' ';
            putOperator(out_, {em}, "Tf");
            known_.font = used.number;
            known_.fontSize = em;
        }
        std::string shown = "<";
        // glyphs that were placed one by one are written so
        const std::size_t first = i;
        for (; i < glyphs_.size() && glyphs_[i].program == program && (i == first || !isSpelled);
             ++i) {
            putUtf16(shown, glyphs_[i].index);
            const auto [entry, isNew] = used.used.emplace(glyphs_[i].index, glyphs_[i].character);
            if (!isNew && entry->second != glyphs_[i].character && glyphs_[i].character != 0)
                entry->second = entry->second == 0 ? glyphs_[i].character : entry->second;
        }
        if (!used.hasOutlines)
            continue;
        putOperator(out_, {c, -s, -s, -c, at.x + x * c + y * s, at.y - x * s + y * c}, "Tm");
        out_ += shown;
        out_ += "> Tj\n";
    }
    if (isSpelled)
        out_ += "EMC\n";
    if (font.lfUnderline || font.lfStrikeOut)
        rules(at, face.width(text), font, face);
}

}  // namespace pavane
