#include "platform/core/CDC_state.h"
#include "platform/core/pixel_rounding.h"
#include "platform/core/text_layout.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <utility>

namespace pavane
{

namespace
{

/// Height of the default font, of the cell, in pixels.
constexpr int defaultHeight = 12;

std::size_t characters(std::string_view text)
{
    std::size_t count = 0;
    for (const char c : text)
        count += (c & 0xC0) != 0x80;
    return count;
}

/// `p` turned around `centre` by tenths of a degree, counter-clockwise.
CPoint turned(CPoint centre, double x, double y, int tenths)
{
    const double angle = tenths * std::numbers::pi / 1800;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {saturated(Wide{centre.x} + nearestInt(x * c + y * s)),
            saturated(Wide{centre.y} + nearestInt(y * c - x * s))};
}

/// A picture whose labels are missing looks like a fault of the program that draws it.
void tellOfNoFonts()
{
    static std::atomic<bool> isTold = false;
    if (!isTold.exchange(true))
        std::fprintf(stderr, "pavane: %s\n", noPlatformText());
}

bool isInside(const TextLayout& layout, const CRect& rect, int lineHeight)
{
    for (const TextLine& line : layout.lines) {
        if (line.at.x < rect.left || line.at.y < rect.top ||
            Wide{line.at.y} + lineHeight > rect.bottom)
            return false;
    }
    return Wide{rect.left} + layout.width <= rect.right;
}

}  // namespace

LOGFONT CDC::State::deviceFont() const
{
    LOGFONT font = now.font;
    if (font.lfHeight == 0)
        font.lfHeight = nearestInt(defaultHeight * (backend ? backend->scale() : 1));
    else if (!now.mapping.isPlain())
        font.lfHeight =
            std::max(1, now.mapping.lengthY(font.lfHeight)) * (font.lfHeight < 0 ? -1 : 1);
    return font;
}

const TextFace* CDC::State::face() const
{
    GraphicsHook* const hook = graphicsHook();
    return hook && backend ? &hook->face(deviceFont(), backend->page() != nullptr) : nullptr;
}

TEXTMETRIC CDC::State::deviceMetrics() const
{
    if (const TextFace* const known = face())
        return known->metrics();
    // without a backend for fonts: the proportions of a common sans-serif face
    const int asked = deviceFont().lfHeight;
    TEXTMETRIC metrics;
    metrics.tmHeight = asked > 0 ? asked : MulDiv(-asked, 2288, 2048);
    metrics.tmAscent = MulDiv(metrics.tmHeight, 4, 5);
    metrics.tmDescent = metrics.tmHeight - metrics.tmAscent;
    metrics.tmAveCharWidth = std::max(1, metrics.tmHeight / 2);
    metrics.tmMaxCharWidth = metrics.tmHeight;
    metrics.tmWeight = now.font.lfWeight;
    return metrics;
}

int CDC::State::deviceWidth(std::string_view text) const
{
    if (const TextFace* const known = face())
        return known->width(text);
    return saturated(Wide(characters(text)) * deviceMetrics().tmAveCharWidth);
}

/// Paints the cells behind a line of text in the background colour.
void CDC::State::fillTextBackground(CPoint at, int width, int height, int escapement)
{
    const CBrush brush(now.bkColor);
    const CPoint corners[4] = {at, turned(at, width, 0, escapement),
                               turned(at, width, height, escapement),
                               turned(at, 0, height, escapement)};
    if (escapement % 900 == 0) {
        CRect box(corners[0].x, corners[0].y, corners[2].x, corners[2].y);
        // cells that run up or back begin beside the reference pixel's far edge
        if (box.left > box.right)
            box = CRect(box.right + 1, box.top, box.left + 1, box.bottom);
        if (box.top > box.bottom)
            box = CRect(box.left, box.bottom + 1, box.right, box.top + 1);
        return fillArea(box, brush, R2_COPYPEN);
    }
    if (VectorDevice* const device = page()) {
        std::vector<CPointF> exact;
        for (const CPoint& p : corners)
            exact.push_back({double(p.x), double(p.y)});
        return device->polygon(exact.data(), exact.size(), false, {}, fillStyle(brush));
    }
    std::vector<Vertex> vertices;
    for (const CPoint& p : corners)
        vertices.push_back({p.x, p.y});
    spans.clear();
    scanner.scan(vertices.data(), vertices.size(), false, painter().bounds(), spans);
    painter().spans(spans, inkOf(brush, R2_COPYPEN));
}

void CDC::State::drawLine(CPoint at, std::string_view text)
{
    if (!canDraw() || text.empty())
        return;
    if (now.bkMode == OPAQUE)
        fillTextBackground(at, deviceWidth(text), deviceMetrics().tmHeight, now.font.lfEscapement);
    const TextFace* const known = face();
    if (!known)
        tellOfNoFonts();
    if (known && drawGlyphs(at, text, *known))
        return;
    VectorDevice* device = nullptr;
    if (known && backend->page() && now.font.lfEscapement == 0 && !now.font.lfItalic) {
        const int height = known->metrics().tmHeight;
        const int beyond = height / 4;  // letters may leave their cells
        device = pageFor({saturated(Wide{at.x} - beyond), at.y,
                          saturated(Wide{at.x} + known->width(text) + beyond),
                          saturated(Wide{at.y} + height)});
    } else {
        device = vector();
    }
    if (device)
        device->text(at, text, deviceFont(), pixel(now.textColor));
}

int CDC::TextOut(int x, int y, const CString& text)
{
    state_->drawLine(state_->now.mapping.toDevice(CPoint(x, y)), text);
    return state_->backend != nullptr;
}

int CDC::DrawText(const CString& text, CRect& rect, unsigned format)
{
    State& s = *state_;
    const int height = s.now.mapping.logicalLengthY(s.deviceMetrics().tmHeight);
    const TextLayout layout = layOutText(text, rect, format, height, [&](std::string_view piece) {
        return s.now.mapping.logicalLengthX(s.deviceWidth(piece));
    });
    if (format & DT_CALCRECT) {
        rect.right = saturated(Wide{rect.left} + layout.width);
        rect.bottom = saturated(Wide{rect.top} + layout.height);
        return layout.height;
    }
    // what fits needs no clip, and a page stays free of needless ones
    const bool fits = s.now.font.lfEscapement == 0 && isInside(layout, rect, height);
    const bool clips = !(format & DT_NOCLIP) && !fits;
    const std::shared_ptr<const CRgn::Data> clip = s.now.clip;
    if (clips)
        IntersectClipRect(rect);
    for (const TextLine& line : layout.lines) {
        if (!line.text.empty())
            s.drawLine(s.now.mapping.toDevice(line.at), line.text);
    }
    if (clips) {
        s.now.clip = clip;
        s.clipChanged = true;
    }
    const int first = layout.lines.empty() ? rect.top : layout.lines[0].at.y;
    return saturated(Wide{first} - rect.top + layout.height);
}

CSize CDC::GetTextExtent(const CString& text) const
{
    const Mapping& mapping = state_->now.mapping;
    if (text.empty())
        return {};
    return {mapping.logicalLengthX(state_->deviceWidth(text)),
            mapping.logicalLengthY(state_->deviceMetrics().tmHeight)};
}

int CDC::GetTextMetrics(TEXTMETRIC& metrics) const
{
    const Mapping& mapping = state_->now.mapping;
    metrics = state_->deviceMetrics();
    for (int* v :
         {&metrics.tmHeight, &metrics.tmAscent, &metrics.tmDescent, &metrics.tmExternalLeading})
        *v = mapping.logicalLengthY(*v);
    for (int* v : {&metrics.tmAveCharWidth, &metrics.tmMaxCharWidth})
        *v = mapping.logicalLengthX(*v);
    return state_->backend != nullptr;
}

}  // namespace pavane
