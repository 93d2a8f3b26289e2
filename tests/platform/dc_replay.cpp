#include "dc_replay.h"

#include <algorithm>
#include <functional>
#include <sstream>

using namespace pavane;

namespace
{

struct Player {
    CDC& dc;
    std::map<std::string, CPicture>& others;
    HPALETTE palette = nullptr;
    CBrush brush;
    std::string difference;

    static COLORREF color(const JsonValue& v)
    {
        return static_cast<COLORREF>(std::stoul(v.text, nullptr, 16));
    }
    static int named(const std::string& name, std::initializer_list<const char*> names)
    {
        const auto found = std::find(names.begin(), names.end(), name);
        return found == names.end() ? -1 : static_cast<int>(found - names.begin());
    }
    static CBrush brushOf(const JsonValue& op)
    {
        const int hatch = named(
            op[1].text, {"HORIZONTAL", "VERTICAL", "FDIAGONAL", "BDIAGONAL", "CROSS", "DIAGCROSS"});
        CBrush made = hatch >= 0 ? CBrush(hatch, color(op[2])) : CBrush();
        if (op[1].text == "NULL")
            made.CreateNullBrush();
        else if (hatch < 0)
            made.CreateSolidBrush(color(op[2]));
        return made;
    }
    static unsigned blit(const std::string& name)
    {
        return std::map<std::string, unsigned>{
            {"SRCCOPY", SRCCOPY},     {"SRCPAINT", SRCPAINT},   {"SRCAND", SRCAND},
            {"SRCINVERT", SRCINVERT}, {"PATCOPY", PATCOPY},     {"PATINVERT", PATINVERT},
            {"DSTINVERT", DSTINVERT}, {"BLACKNESS", BLACKNESS}, {"WHITENESS", WHITENESS}}
            .at(name);
    }
    void expect(const std::string& what, const std::vector<long long>& got, const JsonValue& wanted)
    {
        if (wanted.kind == JsonValue::Kind::null)  // not recorded
            return;
        std::vector<long long> values;
        for (const JsonValue& v : wanted.items)
            values.push_back(v.number);
        if (wanted.kind == JsonValue::Kind::number)
            values = {wanted.number};
        else if (wanted.kind == JsonValue::Kind::text)
            values = {static_cast<long long>(color(wanted))};
        if (values != got)
            difference += what + " answers something else; ";
    }
    void dib(const JsonValue& op);
    void scroll(const JsonValue& op, const JsonValue& wanted);
    void step(const JsonValue& op, const JsonValue& wanted);
};

void Player::dib(const JsonValue& op)
{
    const JsonValue& d = op[9];
    const std::vector<JsonValue>& rows = d["rowsTopFirst"].items;
    const auto width = rows[0].text.size();
    const bool bottomUp = d["order"].text == "bottom-up";
    std::vector<unsigned char> header(40), bits;
    const auto put = [&](std::size_t at, long long v) {
        for (std::size_t i = 0; i < 4; ++i)
            header[at + i] = static_cast<unsigned char>(v >> (8 * i));
    };
    put(0, 40);
    put(4, static_cast<long long>(width));
    put(8, bottomUp ? static_cast<long long>(rows.size()) : -static_cast<long long>(rows.size()));
    header[14] = 8;
    put(32, static_cast<long long>(d["table"].size()));
    const bool isRgb = d["usage"].text == "RGB";
    for (const JsonValue& entry : d["table"].items) {
        const COLORREF c = isRgb ? color(entry) : static_cast<COLORREF>(entry.number);
        if (isRgb)
            header.insert(header.end(), {static_cast<unsigned char>(GetBValue(c)),
                                         static_cast<unsigned char>(GetGValue(c)),
                                         static_cast<unsigned char>(GetRValue(c)), 0});
        else
            header.insert(header.end(), {static_cast<unsigned char>(c & 255),
                                         static_cast<unsigned char>(c >> 8 & 255)});
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::string& row = rows[bottomUp ? rows.size() - 1 - i : i].text;
        for (std::size_t x = 0; x < (width + 3) / 4 * 4; ++x)
            bits.push_back(static_cast<unsigned char>(x < width ? row[x] - '0' : 99));
    }
    dc.StretchDIBits(op[1].asInt(), op[2].asInt(), op[3].asInt(), op[4].asInt(), op[5].asInt(),
                     op[6].asInt(), op[7].asInt(), op[8].asInt(), bits.data(), header.data(),
                     isRgb ? DIB_RGB_COLORS : DIB_PAL_COLORS, SRCCOPY);
}

void Player::scroll(const JsonValue& op, const JsonValue& wanted)
{
    const auto optional = [&](std::size_t i, CRect& r) -> const CRect* {
        if (op[i].kind == JsonValue::Kind::null)
            return nullptr;
        r = rectOf(op[i]);
        return &r;
    };
    CRect scrolled, clip, update;
    CRgn region, expected, part;
    dc.ScrollDC(op[1].asInt(), op[2].asInt(), optional(3, scrolled), optional(4, clip), &region,
                &update);
    if (!wanted.has("updateRect"))
        return;
    expect("scrollDC", {update.left, update.top, update.right, update.bottom},
           wanted["updateRect"]);
    for (const JsonValue& r : wanted["updateRegion"].items) {
        const CRect box = rectOf(r);
        part.CreateRectRgn(box.left, box.top, box.right, box.bottom);
        expected.CombineRgn(expected, part, RGN_OR);
    }
    if (expected.CombineRgn(expected, region, RGN_XOR) != NULLREGION)
        difference += "scrollDC uncovers other pixels; ";
}

void Player::step(const JsonValue& op, const JsonValue& wanted)
{
    const std::string& name = op[0].text;
    const auto n = [&](std::size_t i) { return op[i].asInt(); };
    const auto pen = [&] {
        CPen made(named(op[1].text,
                        {"SOLID", "DASH", "DOT", "DASHDOT", "DASHDOTDOT", "NULL", "INSIDEFRAME"}),
                  n(2), color(op[3]));
        dc.SelectObject(&made);
    };
    const auto setBrush = [&] {
        brush = brushOf(op);
        dc.SelectObject(&brush);
    };
    const auto mapped = [&](bool toDevice) {
        CPoint p(n(1), n(2));
        toDevice ? dc.LPtoDP(&p) : dc.DPtoLP(&p);
        expect(name, {p.x, p.y}, wanted);
    };
    const auto clipBox = [&] {
        CRect b;
        const int kind = dc.GetClipBox(b);
        expect(name, {kind, b.left, b.top, b.right, b.bottom}, wanted);
    };
    const auto clipPolygon = [&] {
        CRgn region;
        const std::vector<CPoint> p = pointsOf(op[1]);
        region.CreatePolygonRgn(p.data(), static_cast<int>(p.size()), ALTERNATE);
        dc.SelectClipRgn(&region);
    };
    const auto copy = [&](bool stretched) {
        const auto source = op[5].text == "self" ? nullptr : others.at(op[5].text).dc();
        const CDC* const from = source ? source.get() : &dc;
        if (stretched)
            dc.StretchBlt(n(1), n(2), n(3), n(4), from, n(6), n(7), n(8), n(9), blit(op[10].text));
        else
            dc.BitBlt(n(1), n(2), n(3), n(4), from, n(6), n(7), blit(op[8].text));
    };
    const auto usePalette = [&] {
        std::vector<PALETTEENTRY> entries(256);
        for (std::size_t i = 0; i < op[2].size(); ++i) {
            const COLORREF c = color(op[2][i]);
            entries[static_cast<std::size_t>(n(1)) + i] = {
                static_cast<unsigned char>(GetRValue(c)), static_cast<unsigned char>(GetGValue(c)),
                static_cast<unsigned char>(GetBValue(c)), 0};
        }
        palette = CreatePalette(entries.data(), 256);
        dc.SelectPalette(palette, 0);
        dc.RealizePalette();
    };
    const auto shape = [&](bool closed) {
        const std::vector<CPoint> p = pointsOf(op[1]);
        const int count = static_cast<int>(p.size());
        closed ? dc.Polygon(p.data(), count) : dc.Polyline(p.data(), count);
    };
    const std::map<std::string, std::function<void()>> steps = {
        {"pen", pen},
        {"brush", setBrush},
        {"moveTo", [&] { dc.MoveTo(n(1), n(2)); }},
        {"lineTo", [&] { dc.LineTo(n(1), n(2)); }},
        {"polyline", [&] { shape(false); }},
        {"polygon", [&] { shape(true); }},
        {"rectangle", [&] { dc.Rectangle(rectOf(op, 1)); }},
        {"ellipse", [&] { dc.Ellipse(n(1), n(2), n(3), n(4)); }},
        {"fillRect",
         [&] {
             const CBrush b(color(op[5]));
             dc.FillRect(rectOf(op, 1), &b);
         }},
        {"fillSolidRect",
         [&] {
             const COLORREF before = dc.GetBkColor();
             dc.FillSolidRect(rectOf(op, 1), color(op[5]));
             dc.SetBkColor(before);
         }},
        {"frame",
         [&] {
             const CBrush b(color(op[5]));
             dc.FrameRect(rectOf(op, 1), &b);
         }},
        {"invertRect", [&] { dc.InvertRect(rectOf(op, 1)); }},
        {"focusRect", [&] { dc.DrawFocusRect(rectOf(op, 1)); }},
        {"patBlt", [&] { dc.PatBlt(n(1), n(2), n(3), n(4), blit(op[5].text)); }},
        {"setPixel", [&] { dc.SetPixel(n(1), n(2), color(op[3])); }},
        {"getPixel", [&] { expect(name, {dc.GetPixel(n(1), n(2))}, wanted); }},
        {"rop2",
         [&] {
             dc.SetROP2(1 + named(op[1].text,
                                  {"BLACK", "NOTMERGEPEN", "MASKNOTPEN", "NOTCOPYPEN", "MASKPENNOT",
                                   "NOT", "XORPEN", "NOTMASKPEN", "MASKPEN", "NOTXORPEN", "NOP",
                                   "MERGENOTPEN", "COPYPEN", "MERGEPENNOT", "MERGEPEN", "WHITE"}));
         }},
        {"bkMode", [&] { dc.SetBkMode(op[1].text == "OPAQUE" ? OPAQUE : TRANSPARENT); }},
        {"bkColor", [&] { dc.SetBkColor(color(op[1])); }},
        {"polyFillMode",
         [&] { dc.SetPolyFillMode(op[1].text == "WINDING" ? WINDING : ALTERNATE); }},
        {"intersectClipRect", [&] { dc.IntersectClipRect(rectOf(op, 1)); }},
        {"excludeClipRect", [&] { dc.ExcludeClipRect(rectOf(op, 1)); }},
        {"selectClipPolygon", clipPolygon},
        {"selectClipNone", [&] { dc.SelectClipRgn(nullptr); }},
        {"saveDC", [&] { dc.SaveDC(); }},
        {"restoreDC", [&] { dc.RestoreDC(n(1)); }},
        {"getClipBox", clipBox},
        {"ptVisible", [&] { expect(name, {dc.PtVisible(n(1), n(2))}, wanted); }},
        {"rectVisible", [&] { expect(name, {dc.RectVisible(rectOf(op, 1))}, wanted); }},
        {"bitBlt", [&] { copy(false); }},
        {"stretchBlt", [&] { copy(true); }},
        {"stretchDIBits", [&] { dib(op); }},
        {"scrollDC", [&] { scroll(op, wanted); }},
        {"mapMode", [&] { dc.SetMapMode(op[1].text == "TEXT" ? MM_TEXT : MM_ANISOTROPIC); }},
        {"windowExt", [&] { dc.SetWindowExt(n(1), n(2)); }},
        {"viewportExt", [&] { dc.SetViewportExt(n(1), n(2)); }},
        {"windowOrg", [&] { dc.SetWindowOrg(n(1), n(2)); }},
        {"viewportOrg", [&] { dc.SetViewportOrg(n(1), n(2)); }},
        {"LPtoDP", [&] { mapped(true); }},
        {"DPtoLP", [&] { mapped(false); }},
        {"getCurrentPosition",
         [&] {
             const CPoint p = dc.GetCurrentPosition();
             expect(name, {p.x, p.y}, wanted);
         }},
        {"palette", usePalette},
    };
    steps.at(name)();
}

}  // namespace

CPicture recordedPicture(const JsonValue& test)
{
    CPicture expected(test["w"].asInt(), test["h"].asInt());
    for (const JsonValue& run : test["runs"].items) {
        const COLORREF c = Player::color(run[3]);
        for (int x = run[1].asInt(); x < run[1].asInt() + run[2].asInt(); ++x)
            expected.row(run[0].asInt())[x] = (c & 0xFF) << 16 | (c & 0xFF00) | c >> 16;
    }
    return expected;
}

std::string replay(const JsonValue& test, std::map<std::string, CPicture>& others)
{
    CPicture picture(test["w"].asInt(), test["h"].asInt());
    const CPicture expected = recordedPicture(test);
    const auto dc = picture.dc();
    Player player{*dc, others, nullptr, {}, ""};
    const JsonValue none;
    for (std::size_t i = 0; i < test["ops"].size(); ++i) {
        const JsonValue* wanted = &none;
        if (test.has("values")) {
            for (const JsonValue& value : test["values"].items) {
                if (value[0].number == static_cast<long long>(i))
                    wanted = &value[1];
            }
        }
        player.step(test["ops"][i], *wanted);
    }
    std::ostringstream report(player.difference, std::ios::ate);
    int different = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.row(y)[x] != expected.row(y)[x] && different++ == 0)
                report << "first at " << x << ' ' << y << "; ";
        }
    }
    if (different > 0)
        report << different << " pixels";
    DeletePalette(player.palette);
    return report.str();
}
