#include "platform/core/truetype_subset.h"

#include <algorithm>
#include <array>

namespace pavane
{

namespace
{

// bits of the parts of a glyph that is put together from others
constexpr unsigned wordArguments = 1, oneScale = 8, moreParts = 0x20, twoScales = 0x40,
                   fourScales = 0x80, hasInstructions = 0x100;

unsigned long long32(std::string_view table, std::size_t at)
{
    return (static_cast<unsigned long>(fontWord(table, at)) << 16) | fontWord(table, at + 2);
}

void putWord(std::string& out, unsigned v)
{
    out += static_cast<char>(v >> 8 & 0xFF);
    out += static_cast<char>(v & 0xFF);
}

void putLong(std::string& out, unsigned long v)
{
    putWord(out, static_cast<unsigned>(v >> 16 & 0xFFFF));
    putWord(out, static_cast<unsigned>(v & 0xFFFF));
}

void setWord(std::string& table, std::size_t at, unsigned v)
{
    if (at + 2 > table.size())
        return;
    table[at] = static_cast<char>(v >> 8 & 0xFF);
    table[at + 1] = static_cast<char>(v & 0xFF);
}

/// Where the parts of a glyph begin: its own head is five numbers.
constexpr std::size_t headSize = 10;

/// Length of the part of a glyph that begins at `at`.
std::size_t partSize(unsigned flags)
{
    const std::size_t scales = flags & oneScale     ? 2
                               : flags & twoScales  ? 4
                               : flags & fourScales ? 8
                                                    : 0;
    return 4 + (flags & wordArguments ? 4 : 2) + scales;
}

/// Outlines by number.
class Outlines
{
public:
    Outlines(std::string glyf, std::string loca, bool isLong)
        : glyf_(std::move(glyf)), loca_(std::move(loca)), isLong_(isLong)
    {
    }
    std::string_view of(unsigned glyph) const
    {
        const std::size_t begin = place(glyph);
        const std::size_t end = place(glyph + 1);
        return begin < end && end <= glyf_.size()
                   ? std::string_view(glyf_).substr(begin, end - begin)
                   : std::string_view();
    }

private:
    std::size_t place(unsigned glyph) const
    {
        return isLong_ ? long32(loca_, 4 * std::size_t{glyph})
                       : 2 * std::size_t{fontWord(loca_, 2 * std::size_t{glyph})};
    }
    std::string glyf_;
    std::string loca_;
    bool isLong_;
};

/// The glyphs that `outline` is put together from.
void addParts(std::string_view outline, std::vector<unsigned>& out)
{
    if (outline.size() < headSize || fontShort(outline, 0) >= 0)
        return;
    unsigned flags = moreParts;
    for (std::size_t at = headSize; (flags & moreParts) && at + 4 <= outline.size();
         at += partSize(flags)) {
        flags = fontWord(outline, at);
        out.push_back(fontWord(outline, at + 2));
    }
}

/// An outline without its instructions.
std::string plainOutline(std::string_view outline)
{
    std::string plain(outline);
    if (outline.size() < headSize)
        return {};
    const int contours = fontShort(outline, 0);
    if (contours >= 0) {
        const std::size_t at = headSize + 2 * static_cast<std::size_t>(contours);
        const std::size_t length = fontWord(outline, at);
        if (at + 2 + length > outline.size())
            return {};
        setWord(plain, at, 0);
        plain.erase(at + 2, length);
        return plain;
    }
    unsigned flags = moreParts;
    std::size_t at = headSize;
    while ((flags & moreParts) && at + 4 <= outline.size()) {
        flags = fontWord(outline, at);
        setWord(plain, at, flags & ~hasInstructions);
        at += partSize(flags);
    }
    plain.resize(std::min(at, plain.size()));
    return plain;
}

std::string assembled(const std::vector<std::pair<const char*, std::string>>& tables)
{
    const auto sum = [](std::string_view table) {
        unsigned long total = 0;
        for (std::size_t at = 0; at < table.size(); at += 4)
            total += long32(table, at);
        return total & 0xFFFFFFFFu;
    };
    const auto count = static_cast<unsigned>(tables.size());
    unsigned power = 1, log = 0;
    for (; power * 2 <= count; power *= 2)
        ++log;
    std::string file;
    putLong(file, 0x10000);
    for (const unsigned v : {count, power * 16, log, count * 16 - power * 16})
        putWord(file, v);
    std::size_t at = 12 + 16 * tables.size();
    for (const auto& [tag, table] : tables) {
        file += tag;
        putLong(file, sum(table));
        putLong(file, at);
        putLong(file, table.size());
        at += (table.size() + 3) / 4 * 4;
    }
    for (const auto& [tag, table] : tables) {
        file += table;
        file.append((4 - table.size() % 4) % 4, '\0');
    }
    return file;
}

}  // namespace

unsigned fontWord(std::string_view table, std::size_t at)
{
    if (at + 2 > table.size())
        return 0;
    return static_cast<unsigned>(static_cast<unsigned char>(table[at])) << 8 |
           static_cast<unsigned char>(table[at + 1]);
}

std::string trueTypeSubset(const FontProgram& program, const std::set<unsigned>& glyphs)
{
    std::string head = program.table("head");
    std::string hmtx = program.table("hmtx");
    const std::string hhea = program.table("hhea");
    const std::string maxp = program.table("maxp");
    const Outlines outlines(program.table("glyf"), program.table("loca"), fontWord(head, 50) != 0);
    const unsigned count = fontWord(maxp, 4);
    if (head.size() < 54 || hhea.size() < 36 || count == 0)
        return {};
    std::set<unsigned> kept = glyphs;
    kept.insert(0);
    std::vector<unsigned> todo(kept.begin(), kept.end());
    while (!todo.empty()) {
        std::vector<unsigned> parts;
        addParts(outlines.of(todo.back()), parts);
        todo.pop_back();
        for (const unsigned part : parts) {
            if (part < count && kept.insert(part).second)
                todo.push_back(part);
        }
    }
    std::string glyf, loca;
    for (unsigned glyph = 0; glyph < count; ++glyph) {
        putLong(loca, glyf.size());
        if (!kept.contains(glyph))
            continue;
        glyf += plainOutline(outlines.of(glyph));
        glyf.append((4 - glyf.size() % 4) % 4, '\0');
    }
    if (glyf.empty())
        return {};
    putLong(loca, glyf.size());
    setWord(head, 8, 0);  // a sum over the whole file, which nobody reads
    setWord(head, 10, 0);
    setWord(head, 50, 1);
    // widths of what is left out pack better as zeros
    const unsigned widths = fontWord(hhea, 34);
    for (unsigned glyph = 0; glyph + 1 < widths; ++glyph) {
        if (!kept.contains(glyph))
            for (const unsigned at : {0u, 2u})
                setWord(hmtx, 4 * std::size_t{glyph} + at, 0);
    }
    return assembled({{"glyf", std::move(glyf)},
                      {"head", std::move(head)},
                      {"hhea", hhea},
                      {"hmtx", std::move(hmtx)},
                      {"loca", std::move(loca)},
                      {"maxp", maxp}});
}

}  // namespace pavane
