#include "platform/qt/fonts.h"

#include "platform/core/pixel_rounding.h"
#include "platform/core/utf8.h"

#include <algorithm>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QRawFont>
#include <QtEndian>
#include <QTextLayout>

namespace pavane
{

namespace
{

/// Names of the desktop's own faces; all stand for the common sans-serif one.
QString familyOf(QString name, bool& bold)
{
    if (name.endsWith(QLatin1String(" Bold"), Qt::CaseInsensitive)) {
        name.chop(5);
        bold = true;
    }
    static const char* const plain[] = {"",       "MS Sans Serif", "MS Shell Dlg", "Tahoma",
                                        "System", "Helv",          "Helvetica"};
    for (const char* other : plain) {
        if (name.compare(QLatin1String(other), Qt::CaseInsensitive) == 0)
            return QStringLiteral("Arial");
    }
    return name;
}

CellShape readShape(const QFont& font)
{
    CellShape shape;
    const QRawFont raw = QRawFont::fromFont(font);
    const QByteArray os2 = raw.fontTable("OS/2");
    const QByteArray head = raw.fontTable("head");
    if (os2.size() < 78 || head.size() < 20)
        return shape;
    const double unitsPerEm = qFromBigEndian<quint16>(head.constData() + 18);
    const double ascent = qFromBigEndian<quint16>(os2.constData() + 74);
    const double descent = qFromBigEndian<quint16>(os2.constData() + 76);
    if (unitsPerEm > 0 && ascent + descent > 0)
        shape = {ascent / unitsPerEm, descent / unitsPerEm};
    return shape;
}

/// Cells higher than so many pixels are painted each time.
constexpr int greatestPicture = 200;

/// How often the letters a to z and the blank occur, in thousandths.
constexpr int letterWeights[] = {64, 14, 27, 35, 100, 20, 14, 42, 63, 3, 6,  35, 20, 56,
                                 56, 17, 4,  49, 56,  71, 31, 10, 18, 3, 18, 2,  166};

}  // namespace

QString textOf(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

const CellShape& FontShapes::of(const QFont& font)
{
    for (const Entry& e : entries_)
        if (e.family == font.family() && e.bold == font.bold() && e.italic == font.italic())
            return e.shape;
    entries_.push_back({font.family(), font.bold(), font.italic(), readShape(font)});
    return entries_.back().shape;
}

QtFace::QtFace(const LOGFONT& wanted, bool onPage, FontShapes& shapes, FontPrograms& programs)
    : programs_(programs)
{
    std::fill_n(ascii_, 128, -1.0);
    bool bold = wanted.lfWeight >= 600;
    font_.setFamily(familyOf(textOf(wanted.lfFaceName), bold));
    font_.setBold(bold);
    font_.setItalic(wanted.lfItalic != 0);
    font_.setUnderline(wanted.lfUnderline != 0);
    font_.setStrikeOut(wanted.lfStrikeOut != 0);
    font_.setKerning(false);
    font_.setStyleStrategy(QFont::NoSubpixelAntialias);
    font_.setHintingPreference(onPage ? QFont::PreferNoHinting : QFont::PreferFullHinting);

    constexpr int greatestHeight = 20000;
    const int asked = std::clamp(wanted.lfHeight, -greatestHeight, greatestHeight);
    font_.setPixelSize(asked < 0 ? -asked : 16);  // the tables are the same at every size
    const CellShape& cell = shapes.of(font_);
    const double em = asked > 0 ? asked / cell.height() : -asked;
    font_.setPixelSize(std::max(1, nearestInt(em)));
    if (onPage && em > 0)
        grow_ = em / font_.pixelSize();
    metrics_.tmHeight = asked > 0 ? asked : nearestInt(em * cell.height());
    metrics_.tmAscent = nearestInt(metrics_.tmHeight * cell.ascent / cell.height());
    metrics_.tmDescent = metrics_.tmHeight - metrics_.tmAscent;
    metrics_.tmWeight = bold ? FW_BOLD : FW_NORMAL;

    hasPictures_ = !onPage && !font_.underline() && !font_.strikeOut();

    double sum = 0;
    for (unsigned char i = 0; i < 27; ++i)
        sum += letterWeights[i] * asciiWidth(i < 26 ? static_cast<unsigned char>('a' + i) : ' ');
    metrics_.tmAveCharWidth = std::max(1, nearestInt(sum / 1000));
    metrics_.tmMaxCharWidth = std::max(1, nearestInt(QFontMetricsF(font_).maxWidth() * grow_));
}

const GlyphPicture* QtFace::glyph(char32_t character, int ratio) const
{
    // what could have pictures at all is asked first, because the painter is the exception
    if (!hasPictures_ || ratio < 1 || metrics_.tmHeight * ratio > greatestPicture)
        return nullptr;
    const auto index = static_cast<std::size_t>(ratio);
    if (pictures_.size() <= index)
        pictures_.resize(index + 1);
    std::unique_ptr<GlyphPictures>& set = pictures_[index];
    if (!set)
        set = std::make_unique<GlyphPictures>(font_, ascent(), metrics_.tmHeight, ratio);
    if (character < 128)
        return character < ' ' || character == 0x7F
                   ? nullptr
                   : set->of(character, asciiWidth(static_cast<unsigned char>(character)));
    return standsAlone(character) ? set->of(character, characterWidth(character)) : nullptr;
}

double QtFace::asciiWidth(unsigned char c) const
{
    if (ascii_[c] < 0)
        ascii_[c] = QFontMetricsF(font_).horizontalAdvance(QChar(c)) * grow_;
    return ascii_[c];
}

double QtFace::characterWidth(char32_t c) const
{
    const auto known = others_.find(c);
    if (known != others_.end())
        return known->second;
    const double width = QFontMetricsF(font_).horizontalAdvance(QString::fromUcs4(&c, 1)) * grow_;
    others_.emplace(c, width);
    return width;
}

int QtFace::width(std::string_view text) const
{
    double sum = 0;
    std::size_t i = 0;
    for (; i < text.size() && static_cast<unsigned char>(text[i]) < 128; ++i)
        sum += asciiWidth(static_cast<unsigned char>(text[i]));
    if (i < text.size()) {
        for (const char32_t c : textOf(text.substr(i)).toUcs4())
            sum += c < 128 ? asciiWidth(static_cast<unsigned char>(c)) : characterWidth(c);
    }
    return nearestInt(sum);
}

CString QtFontProgram::name() const
{
    return (font_.familyName() + QLatin1Char('-') + font_.styleName()).toStdString();
}

bool QtFontProgram::isOf(const QRawFont& font) const
{
    return font_.familyName() == font.familyName() && font_.styleName() == font.styleName() &&
           font_.weight() == font.weight() && font_.style() == font.style();
}

const QtFontProgram& FontPrograms::of(const QRawFont& font)
{
    for (const auto& known : programs_) {
        if (known->isOf(font))
            return *known;
    }
    programs_.push_back(std::make_unique<QtFontProgram>(font));
    return *programs_.back();
}

/// The outline of a character that is drawn alone; 0 when it is not, or the font has none.
unsigned QtFace::pageIndex(char32_t c) const
{
    const auto known = pageIndices_.find(c);
    if (known != pageIndices_.end())
        return known->second;
    unsigned index = 0;
    if (c >= ' ' && c != 0x7F && (c < 128 || standsAlone(c))) {
        const QList<quint32> found = raw_.glyphIndexesForString(QString::fromUcs4(&c, 1));
        index = found.size() == 1 ? found[0] : 0;
    }
    pageIndices_.emplace(c, index);
    return index;
}

void QtFace::pageGlyphs(std::string_view text, std::vector<PageGlyph>& out) const
{
    if (!program_) {
        raw_ = QRawFont::fromFont(font_);
        program_ = &programs_.of(raw_);
    }
    double x = 0;
    for (std::string_view rest = text; !rest.empty();) {
        const char32_t c = nextCharacter(rest);
        const unsigned index = pageIndex(c);
        if (index == 0) {
            out.clear();
            return shapedGlyphs(text, out);
        }
        out.push_back({program_, index, x, 0, c});
        x += c < 128 ? asciiWidth(static_cast<unsigned char>(c)) : characterWidth(c);
    }
}

/// Letters that join others, and those that the font has to borrow.
void QtFace::shapedGlyphs(std::string_view text, std::vector<PageGlyph>& out) const
{
    QTextLayout layout(textOf(text), font_);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    const auto runs = layout.glyphRuns();
    for (const QGlyphRun& run : runs) {
        const QtFontProgram& program = programs_.of(run.rawFont());
        const QList<quint32> indices = run.glyphIndexes();
        const QList<QPointF> places = run.positions();
        for (qsizetype i = 0; i < std::min(indices.size(), places.size()); ++i)
            out.push_back({&program, indices[i], places[i].x() * grow_,
                           (places[i].y() - line.ascent()) * grow_, 0});
    }
}

TextRules QtFace::rules() const
{
    const QFontMetricsF metrics(font_);
    return {metrics.underlinePos() * grow_, -metrics.strikeOutPos() * grow_,
            metrics.lineWidth() * grow_};
}

CString QtFace::family() const
{
    const QString asked = font_.family();
    const QString found = QRawFont::fromFont(font_).familyName();
    QString names = asked;
    if (found != asked && !found.isEmpty())
        names += QStringLiteral(", ") + found;
    return (names + QStringLiteral(", sans-serif")).toStdString();
}

const QtFace& FontTable::face(const LOGFONT& font, bool onPage)
{
    const auto matches = [&](const Entry& e) {
        return e.font.lfHeight == font.lfHeight && e.onPage == onPage &&
               e.font.lfWeight == font.lfWeight && e.font.lfItalic == font.lfItalic &&
               e.font.lfUnderline == font.lfUnderline && e.font.lfStrikeOut == font.lfStrikeOut &&
               e.font.lfFaceName == font.lfFaceName;
    };
    if (last_ < entries_.size() && matches(entries_[last_]))
        return *entries_[last_].face;
    const auto found = std::find_if(entries_.begin(), entries_.end(), matches);
    last_ = static_cast<std::size_t>(found - entries_.begin());
    if (found == entries_.end())
        entries_.push_back(
            {font, onPage, std::make_unique<QtFace>(font, onPage, shapes_, programs_)});
    return *entries_[last_].face;
}

}  // namespace pavane
