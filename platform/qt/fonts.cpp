#include "platform/qt/fonts.h"

#include "platform/core/pixel_rounding.h"
#include "platform/core/utf8.h"
#include "posix/ForkGate.h"

#include <algorithm>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QRawFont>
#include <QtEndian>
#include <QTextLayout>
#include <tuple>
#include <utility>

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

CellShape FontShapes::of(const QFont& font)
{
    const std::lock_guard locked(lock_);
    for (const Entry& e : entries_)
        if (e.family == font.family() && e.bold == font.bold() && e.italic == font.italic())
            return e.shape;
    entries_.push_back({font.family(), font.bold(), font.italic(), readShape(font)});
    return entries_.back().shape;
}

QtFace::QtFace(const LOGFONT& wanted, bool onPage, FontShapes& shapes, FontPrograms& programs)
    : programs_(programs)
{
    for (std::atomic<double>& width : ascii_)
        width.store(-1, std::memory_order_relaxed);
    bool isBold = wanted.lfWeight >= 600;
    const QString family = familyOf(textOf(wanted.lfFaceName), isBold);
    look_ = {family, isBold, wanted.lfItalic != 0, wanted.lfUnderline != 0, wanted.lfStrikeOut != 0,
             onPage, 16};
    constexpr int greatestHeight = 20000;
    const int asked = std::clamp(wanted.lfHeight, -greatestHeight, greatestHeight);
    if (asked < 0)
        look_.pixels = -asked;  // the tables are the same at every size
    const CellShape cell = shapes.of(font());
    const double em = asked > 0 ? asked / cell.height() : -asked;
    look_.pixels = std::max(1, nearestInt(em));
    if (onPage && em > 0)
        grow_ = em / look_.pixels;
    metrics_.tmHeight = asked > 0 ? asked : nearestInt(em * cell.height());
    metrics_.tmAscent = nearestInt(metrics_.tmHeight * cell.ascent / cell.height());
    metrics_.tmDescent = metrics_.tmHeight - metrics_.tmAscent;
    metrics_.tmWeight = isBold ? FW_BOLD : FW_NORMAL;

    hasPictures_ = !onPage && !look_.isUnderlined && !look_.isStruckOut;

    double sum = 0;
    for (unsigned char i = 0; i < 27; ++i)
        sum += letterWeights[i] * asciiWidth(i < 26 ? static_cast<unsigned char>('a' + i) : ' ');
    metrics_.tmAveCharWidth = std::max(1, nearestInt(sum / 1000));
    metrics_.tmMaxCharWidth = std::max(1, nearestInt(QFontMetricsF(font()).maxWidth() * grow_));
}

QtFace::~QtFace()
{
    for (const std::atomic<GlyphPictures*>& set : pictures_)
        delete set.load();
}

QFont QtFace::font() const
{
    QFont font;
    font.setFamily(look_.family);
    font.setBold(look_.isBold);
    font.setItalic(look_.isItalic);
    font.setUnderline(look_.isUnderlined);
    font.setStrikeOut(look_.isStruckOut);
    font.setKerning(false);
    font.setStyleStrategy(QFont::NoSubpixelAntialias);
    font.setHintingPreference(look_.onPage ? QFont::PreferNoHinting : QFont::PreferFullHinting);
    font.setPixelSize(look_.pixels);
    return font;
}

const GlyphPicture* QtFace::glyph(char32_t character, int ratio) const
{
    // what could have pictures at all is asked first, because the painter is the exception
    if (!hasPictures_ || ratio < 1 || ratio > greatestRatio ||
        metrics_.tmHeight * ratio > greatestPicture)
        return nullptr;
    if (character < 128 ? character < ' ' || character == 0x7F : !standsAlone(character))
        return nullptr;
    std::atomic<GlyphPictures*>& place = pictures_[static_cast<std::size_t>(ratio)];
    GlyphPictures* set = place.load(std::memory_order_acquire);
    const ForkGate gate;
    if (!set) {
        auto made = std::make_unique<GlyphPictures>(font(), ascent(), metrics_.tmHeight, ratio);
        if (place.compare_exchange_strong(set, made.get()))
            set = made.release();
    }
    return set->of(character, character < 128 ? asciiWidth(static_cast<unsigned char>(character))
                                              : characterWidth(character));
}

double QtFace::asciiWidth(unsigned char c) const
{
    double width = ascii_[c].load(std::memory_order_relaxed);
    if (width < 0) {
        const ForkGate gate;
        width = QFontMetricsF(font()).horizontalAdvance(QChar(c)) * grow_;
        ascii_[c].store(width, std::memory_order_relaxed);
    }
    return width;
}

double QtFace::characterWidth(char32_t c) const
{
    const ForkGate gate;
    {
        const std::shared_lock reading(lock_);
        const auto known = others_.find(c);
        if (known != others_.end())
            return known->second;
    }
    const double width = QFontMetricsF(font()).horizontalAdvance(QString::fromUcs4(&c, 1)) * grow_;
    const std::unique_lock filling(lock_);
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

QtFontProgram::QtFontProgram(const QRawFont& font)
    : family_(font.familyName()), style_(font.styleName()), weight_(font.weight()),
      slant_(font.style())
{
    for (const char* const tag : {"head", "hhea", "hmtx", "maxp", "loca", "glyf", "CFF "})
        tables_.emplace(tag, font.fontTable(tag).toStdString());
}

std::string QtFontProgram::table(const char* tag) const
{
    const auto found = tables_.find(std::string_view(tag));
    return found == tables_.end() ? std::string() : found->second;
}

CString QtFontProgram::name() const { return (family_ + QLatin1Char('-') + style_).toStdString(); }

bool QtFontProgram::isOf(const QRawFont& font) const
{
    return family_ == font.familyName() && style_ == font.styleName() && weight_ == font.weight() &&
           slant_ == font.style();
}

const QtFontProgram& FontPrograms::of(const QRawFont& font)
{
    const std::lock_guard locked(lock_);
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
    const ForkGate gate;
    {
        const std::shared_lock reading(lock_);
        const auto known = pageIndices_.find(c);
        if (known != pageIndices_.end())
            return known->second;
    }
    unsigned index = 0;
    if (c >= ' ' && c != 0x7F && (c < 128 || standsAlone(c))) {
        const QList<quint32> found =
            QRawFont::fromFont(font()).glyphIndexesForString(QString::fromUcs4(&c, 1));
        index = found.size() == 1 ? found[0] : 0;
    }
    const std::unique_lock filling(lock_);
    pageIndices_.emplace(c, index);
    return index;
}

void QtFace::pageGlyphs(std::string_view text, std::vector<PageGlyph>& out) const
{
    const ForkGate gate;
    const QtFontProgram* program = program_.load(std::memory_order_acquire);
    if (!program) {
        program = &programs_.of(QRawFont::fromFont(font()));
        program_.store(program, std::memory_order_release);
    }
    double x = 0;
    for (std::string_view rest = text; !rest.empty();) {
        const char32_t c = nextCharacter(rest);
        const unsigned index = pageIndex(c);
        if (index == 0) {
            out.clear();
            return shapedGlyphs(text, out);
        }
        out.push_back({program, index, x, 0, c});
        x += c < 128 ? asciiWidth(static_cast<unsigned char>(c)) : characterWidth(c);
    }
}

/// Letters that join others, and those that the font has to borrow.
void QtFace::shapedGlyphs(std::string_view text, std::vector<PageGlyph>& out) const
{
    QTextLayout layout(textOf(text), font());
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
    // runs come in the order of where their fonts lie in memory
    std::sort(out.begin(), out.end(), [](const PageGlyph& a, const PageGlyph& b) {
        return std::tie(a.x, a.y, a.index) < std::tie(b.x, b.y, b.index);
    });
}

TextRules QtFace::rules() const
{
    const ForkGate gate;
    const QFontMetricsF metrics(font());
    return {metrics.underlinePos() * grow_, -metrics.strikeOutPos() * grow_,
            metrics.lineWidth() * grow_};
}

CString QtFace::family() const
{
    const ForkGate gate;
    const QString found = QRawFont::fromFont(font()).familyName();
    QString names = look_.family;
    if (found != look_.family && !found.isEmpty())
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
    const Entry* found = last_.load(std::memory_order_acquire);
    if (found && matches(*found))
        return *found->face;
    const ForkGate gate;
    const auto known = [&]() -> const Entry* {
        const auto place = std::find_if(entries_.begin(), entries_.end(),
                                        [&](const auto& entry) { return matches(*entry); });
        return place == entries_.end() ? nullptr : place->get();
    };
    {
        const std::shared_lock reading(lock_);
        found = known();
    }
    if (!found) {
        // made outside of the lock, for drawing goes on meanwhile; who comes second drops its own
        auto face = std::make_unique<const QtFace>(font, onPage, shapes_, programs_);
        const std::unique_lock filling(lock_);
        found = known();
        if (!found) {
            entries_.push_back(std::make_unique<const Entry>(Entry{font, onPage, std::move(face)}));
            found = entries_.back().get();
        }
    }
    last_.store(found, std::memory_order_release);
    return *found->face;
}

}  // namespace pavane
