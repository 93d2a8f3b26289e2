#include "tessel/fits_cards.h"

#include "tessel/HeaderCards.h"
#include "tessel/made_map.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string_view>

namespace pavane
{

namespace
{

constexpr int cardLength = 80;
constexpr int fileAxes = 4;
/// Digits that read back to the same double.
constexpr int doubleDigits = 17;

std::string card(const std::string& key, const std::string& value)
{
    std::string text = key;
    text.resize(8, ' ');
    text += "= " + value;
    text.resize(cardLength, ' ');
    return text;
}

/// A number in capitals with a point, to the right of the fixed field when it fits.
std::string numberCard(const std::string& key, double value)
{
    std::string text = valToStr(std::isfinite(value) ? value : 0.0, doubleDigits);
    const std::size_t e = text.find('e');
    if (text.find('.') == std::string::npos)
        text.insert(std::min(e, text.size()), ".0");
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    constexpr std::size_t field = 20;
    if (text.size() < field)
        text.insert(0, field - text.size(), ' ');
    return card(key, text);
}

/// A text in quotes; what is not printable ASCII becomes '?', and it is cut to a card.
std::string textCard(const std::string& key, const std::string& value)
{
    constexpr std::size_t most = 68;
    std::string quoted;
    for (const char c : value) {
        const std::string part = c == '\'' ? "''" : std::string(1, c >= ' ' && c <= '~' ? c : '?');
        if (quoted.size() + part.size() > most)
            break;
        quoted += part;
    }
    quoted.resize(std::max<std::size_t>(quoted.size(), 8), ' ');
    return card(key, "'" + quoted + "'");
}

/// "CD3_3" of "3".
std::string diagonalKey(std::string letters, const std::string& n)
{
    letters += n;
    letters += '_';
    return letters += n;
}

/// Non-zero when the cards give steps and turns as a CD matrix, in which a missing item is 0.
int haveCdMatrix(const std::vector<std::string>& cards)
{
    return std::any_of(cards.begin(), cards.end(), [](const std::string& text) {
        return text.size() > 3 && text.compare(0, 2, "CD") == 0 &&
               std::isdigit(static_cast<unsigned char>(text[2]));
    });
}

void appendAxis(int number, const MapAxis& axis, std::vector<std::string>& cards)
{
    const std::string n = std::to_string(number);
    cards.push_back(textCard("CTYPE" + n, axis.ctype));
    cards.push_back(numberCard("CRVAL" + n, axis.crval));
    cards.push_back(numberCard("CDELT" + n, axis.cdelt));
    cards.push_back(numberCard("CRPIX" + n, axis.crpix));
    cards.push_back(numberCard("CROTA" + n, axis.crota));
    if (!axis.cunit.empty())
        cards.push_back(textCard("CUNIT" + n, axis.cunit));
}

void appendText(const std::string& key, const std::string& value, std::vector<std::string>& cards)
{
    if (!value.empty())
        cards.push_back(textCard(key, value));
}

/// Cards of a header that was made, not read.
std::vector<std::string> madeCards(const MapHeader& header)
{
    std::vector<std::string> cards;
    for (int i = 0; i < std::min<int>(fileAxes, static_cast<int>(header.axes.size())); ++i)
        appendAxis(i + 1, header.axes[static_cast<std::size_t>(i)], cards);
    appendText("OBJECT", header.object, cards);
    appendText("TELESCOP", header.telescope, cards);
    appendText("DATE-OBS", header.dateObs, cards);
    if (header.equinox > 0)
        cards.push_back(numberCard("EQUINOX", header.equinox));
    return cards;
}

/// The greatest axis number that a keyword such as CRPIX3, PC3_1, PC003001 or PV1_4 (the fourth of
/// the first axis) names, 0 for none.
int axisOf(const std::string& text)
{
    const int isParameter = text.starts_with("PV") || text.starts_with("PS");
    constexpr int longest = 3;
    int greatest = 0;
    int number = 0;
    int digits = 0;
    for (const char c : text.substr(0, isParameter ? text.find('_') : 8)) {
        const int isDigit = std::isdigit(static_cast<unsigned char>(c));
        digits = isDigit ? digits % longest + 1 : 0;
        number = isDigit ? (digits > 1 ? number * 10 : 0) + (c - '0') : 0;
        greatest = std::max(greatest, number);
    }
    return greatest;
}

/// The map's own cards, with the plane that was read as the only one.
std::vector<std::string> keptCards(const MapHeader& header)
{
    std::vector<int> pixels(header.axes.size(), 0);
    int plane = header.plane;
    for (std::size_t i = 2; i < header.axes.size(); ++i) {
        pixels[i] = plane % std::max(header.axes[i].length, 1);
        plane /= std::max(header.axes[i].length, 1);
    }
    const int axes = std::min(fileAxes, static_cast<int>(header.axes.size()));
    const auto isMoved = [&](const std::string& text, int axis) {
        return axis > 0 && text.compare(0, 5, "CRPIX") == 0 &&
               pixels[static_cast<std::size_t>(axis - 1)] > 0;
    };
    std::vector<std::string> cards;
    for (const std::string& text : header.coordinateCards)
        if (const int axis = axisOf(text); axis <= axes && !isMoved(text, axis))
            cards.push_back(text);
    // also where no card tells the pixel, which is 0 then
    for (int i = 0; i < axes; ++i)
        if (const int pixel = pixels[static_cast<std::size_t>(i)]; pixel > 0)
            cards.push_back(numberCard("CRPIX" + std::to_string(i + 1),
                                       header.axes[static_cast<std::size_t>(i)].crpix - pixel));
    return cards;
}

/// Non-zero for a card that places axes 1 and 2 on the sky.
int isSkyCard(const std::string& text)
{
    static constexpr std::string_view whole[] = {"EQUINOX",  "EPOCH",   "RADESYS",
                                                 "RADECSYS", "LONPOLE", "LATPOLE"};
    const int axis = axisOf(text);
    return axis == 1 || axis == 2 ||
           (axis == 0 && std::any_of(std::begin(whole), std::end(whole), [&](auto key) {
                return text.starts_with(key) &&
                       (text[key.size()] == ' ' || text[key.size()] == '=');
            }));
}

/// The step of an axis beyond the second, by CD, PC or CDELT.
double stepOf(const std::vector<std::string>& cards, int number, const MapAxis& axis)
{
    const std::string n = std::to_string(number);
    double step = axis.cdelt;
    for (const std::string& text : cards) {
        double value = 0;
        const std::string key = text.substr(0, 8);
        const int isCd = key.starts_with(diagonalKey("CD", n) + " ");
        if ((isCd || key.starts_with(diagonalKey("PC", n) + " ")) &&
            fieldNumber(valueField(text), value) && value != 0)
            step = isCd ? value : step * value;
    }
    return step;
}

}  // namespace

MapHeader headerOnGrid(const MapHeader& map, const MapHeader& like)
{
    MapHeader made = map;
    const std::size_t axes = std::max<std::size_t>(map.axes.size(), 2);
    made.axes.resize(axes);
    for (std::size_t i = 0; i < std::min<std::size_t>(like.axes.size(), 2); ++i)
        made.axes[i] = like.axes[i];
    std::copy(&like.cd[0][0], &like.cd[0][0] + 4, &made.cd[0][0]);
    made.hasCelestialAxes = like.hasCelestialAxes;
    made.longitudeAxis = like.longitudeAxis;
    made.equinox = like.equinox;
    made.coordinateCards.clear();
    for (const std::string& text :
         like.coordinateCards.empty() ? madeCards(like) : like.coordinateCards)
        if (isSkyCard(text))
            made.coordinateCards.push_back(text);
    const int hasMatrix = haveCdMatrix(made.coordinateCards);
    const std::vector<std::string> own =
        map.coordinateCards.empty() ? madeCards(map) : keptCards(map);
    for (const std::string& text : own) {
        // steps are written the way the grid has its own: a matrix and CDELT do not mix
        const int isStep =
            text.starts_with("CD") || text.starts_with("PC") || text.starts_with("CROTA");
        if (!isSkyCard(text) && (axisOf(text) == 0 || !isStep))
            made.coordinateCards.push_back(text);
    }
    int plane = map.plane;
    for (std::size_t i = 2; i < axes; ++i) {
        MapAxis& axis = made.axes[i];
        axis.crpix -= plane % std::max(axis.length, 1);
        plane /= std::max(axis.length, 1);
        axis.length = 1;
        if (i >= fileAxes)
            continue;
        const int number = static_cast<int>(i) + 1;
        const std::string n = std::to_string(number);
        axis.cdelt = stepOf(own, number, axis);
        made.coordinateCards.push_back(numberCard("CDELT" + n, axis.cdelt));
        if (hasMatrix)
            made.coordinateCards.push_back(numberCard(diagonalKey("CD", n), axis.cdelt));
    }
    made.plane = 0;
    made.planes = 1;
    return made;
}

MapHeader headerOnAxes(const MapHeader& map, const MapAxis& first, const MapAxis& second)
{
    static constexpr std::string_view kept[] = {"SPECSYS", "RESTFRQ",  "RESTFREQ",
                                                "MJD-OBS", "OBSERVER", "INSTRUME"};
    MapAxis stokes;
    stokes.ctype = "STOKES";
    stokes.crpix = stokes.crval = 1;
    int plane = map.plane;
    for (std::size_t i = 2; i < map.axes.size(); ++i) {
        const MapAxis& axis = map.axes[i];
        const int length = std::max(axis.length, 1);
        if (axis.ctype == stokes.ctype)
            stokes.crval = axis.crval + (plane % length + 1 - axis.crpix) * axis.cdelt;
        plane /= length;
    }
    MapAxis last;  // not one of frequency: there is one such axis already
    last.crpix = 1;
    MapHeader made = map;
    made.axes = {first, second, stokes, last};
    made.cd[0][0] = first.cdelt;
    made.cd[1][1] = second.cdelt;
    made.cd[0][1] = made.cd[1][0] = 0;
    made.hasCelestialAxes = made.longitudeAxis = 0;
    made.plane = 0;
    made.planes = 1;
    made.coordinateCards.clear();
    made.equinox = 0;
    made.coordinateCards = madeCards(made);
    for (const std::string& text : map.coordinateCards)
        if (std::any_of(std::begin(kept), std::end(kept), [&](std::string_view key) {
                return text.starts_with(key) &&
                       (text[key.size()] == ' ' || text[key.size()] == '=');
            }))
            made.coordinateCards.push_back(text);
    return made;
}

std::vector<std::string> coordinateCards(const MapHeader& header)
{
    std::vector<std::string> cards =
        header.coordinateCards.empty() ? madeCards(header) : keptCards(header);
    const int hasMatrix = haveCdMatrix(cards);
    int hasStokes = 0;
    int hasFrequency = 0;
    for (const MapAxis& axis : header.axes) {
        hasStokes |= axis.ctype == "STOKES";
        hasFrequency |= axis.ctype.compare(0, 4, "FREQ") == 0;
    }
    for (int i = static_cast<int>(header.axes.size()); i < fileAxes; ++i) {
        MapAxis axis;
        axis.crpix = 1;
        axis.ctype = hasFrequency || (hasStokes == 0 && i == fileAxes - 1) ? "STOKES" : "FREQ";
        if (axis.ctype == "FREQ") {
            axis.crval = header.frequency;
            axis.cunit = "Hz";
            hasFrequency = 1;
        } else {
            axis.crval = 1;
            hasStokes = 1;
        }
        appendAxis(i + 1, axis, cards);
        const std::string n = std::to_string(i + 1);
        if (hasMatrix)
            cards.push_back(numberCard(diagonalKey("CD", n), axis.cdelt));
    }
    return cards;
}

std::vector<std::string> planeCards(const MapHeader& header, const MapAxis& axis)
{
    std::vector<std::string> cards;
    for (const std::string& text :
         header.coordinateCards.empty() ? madeCards(header) : keptCards(header))
        if (const int number = axisOf(text); number <= 2)
            cards.push_back(text);
    appendAxis(3, axis, cards);
    if (haveCdMatrix(cards))
        cards.push_back(numberCard(diagonalKey("CD", "3"), axis.cdelt));
    return cards;
}

std::string cardOfText(const std::string& key, const std::string& value)
{
    return textCard(key, value);
}

std::string cardOfNumber(const std::string& key, double value) { return numberCard(key, value); }

void appendMapCards(const MapHeader& header, std::vector<std::string>& cards)
{
    appendText("BUNIT", header.bunit, cards);
    if (!header.hasBeam)
        return;
    cards.push_back(numberCard("BMAJ", header.bmaj));
    cards.push_back(numberCard("BMIN", header.bmin));
    cards.push_back(numberCard("BPA", header.bpa));
}

void appendHistory(const std::string& line, std::vector<std::string>& cards)
{
    constexpr std::size_t most = 72;
    for (std::size_t at = 0; at < line.size(); at += most) {
        std::string part = line.substr(at, most);
        for (char& c : part)
            c = c >= ' ' && c <= '~' ? c : '?';
        cards.push_back("HISTORY " + part);
    }
}

void setStokesCode(MapHeader& header, int code)
{
    int plane = header.plane;
    for (std::size_t i = 2; i < header.axes.size(); ++i) {
        MapAxis& axis = header.axes[i];
        const int length = std::max(axis.length, 1);
        if (axis.ctype == "STOKES") {
            axis.crval = code - (plane % length + 1 - axis.crpix) * axis.cdelt;
            const std::string key = "CRVAL" + std::to_string(i + 1);
            for (std::string& text : header.coordinateCards)
                if (text.starts_with(key + " ") || text.starts_with(key + "="))
                    text = numberCard(key, axis.crval);
        }
        plane /= length;
    }
}

}  // namespace pavane
