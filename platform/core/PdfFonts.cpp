#include "platform/core/PdfFonts.h"

#include "platform/core/truetype_subset.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// A name for PDF: letters, digits and hyphens.
std::string plainName(const CString& name)
{
    std::string plain;
    for (const char c : name) {
        if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-')
            plain += c;
    }
    return plain.empty() ? "Font" : plain;
}

/// Six letters that tell this selection of glyphs from others.
std::string subsetTag(const std::map<unsigned, char32_t>& used)
{
    std::uint64_t hash = 1469598103934665603u;
    for (const auto& [glyph, character] : used)
        hash = (hash ^ glyph) * 1099511628211u;
    std::string tag;
    for (int i = 0; i < 6; ++i, hash /= 26)
        tag += static_cast<char>('A' + hash % 26);
    return tag + '+';
}

/// Lets readers know which characters the glyphs are.
std::string characterMap(const std::map<unsigned, char32_t>& used)
{
    std::string lines;
    std::vector<std::string> blocks;
    int count = 0;
    const auto close = [&] {
        if (count > 0)
            blocks.push_back(std::to_string(count) + " beginbfchar\n" + lines + "endbfchar\n");
        lines.clear();
        count = 0;
    };
    for (const auto& [glyph, character] : used) {
        if (character == 0)
            continue;
        lines += '<';
        putUtf16(lines, glyph);
        lines += "><";
        putUtf16(lines, character);
        lines += ">\n";
        if (++count == 100)
            close();
    }
    close();
    std::string map = "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
                      "/CIDSystemInfo <</Registry (Adobe)/Ordering (UCS)/Supplement 0>> def\n"
                      "/CMapName /Adobe-Identity-UCS def\n/CMapType 2 def\n"
                      "1 begincodespacerange\n<0000><FFFF>\nendcodespacerange\n";
    for (const std::string& block : blocks)
        map += block;
    return map + "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
}

}  // namespace

PdfFonts::Font& PdfFonts::of(const FontProgram& program)
{
    if (last_ && last_->program == &program)
        return *last_;
    const auto known = std::find_if(fonts_.begin(), fonts_.end(),
                                    [&](const Font& f) { return f.program == &program; });
    if (known == fonts_.end()) {
        const bool hasOutlines = !program.table("loca").empty() || !program.table("CFF ").empty();
        fonts_.push_back({&program, static_cast<int>(fonts_.size()) + 1, hasOutlines, {}});
        return *(last_ = &fonts_.back());
    }
    return *(last_ = &*known);
}

int PdfFonts::writeFont(PdfFile& file, const Font& font)
{
    const std::string head = font.program->table("head");
    const std::string hhea = font.program->table("hhea");
    const std::string hmtx = font.program->table("hmtx");
    const double em = std::max(1u, fontWord(head, 18));
    const auto put = [](std::string& out, const char* key, double v) {
        out += key;
        out += ' ';
        putNumber(out, v);
    };
    std::set<unsigned> glyphs;
    std::string widths;
    const unsigned count = std::max(1u, fontWord(hhea, 34));
    for (const auto& [glyph, character] : font.used) {
        glyphs.insert(glyph);
        widths += std::to_string(glyph) + '[';
        putNumber(widths, fontWord(hmtx, 4 * std::size_t{std::min(glyph, count - 1)}) * 1000 / em);
        widths += ']';
    }
    const std::string subset = trueTypeSubset(*font.program, glyphs);
    const bool isTrueType = !subset.empty();
    const std::string whole = isTrueType ? std::string() : font.program->table("CFF ");
    const std::string name =
        (isTrueType ? subsetTag(font.used) : "") + plainName(font.program->name());

    const int fontFile = file.newObject();
    if (isTrueType)
        file.stream(fontFile, "/Length1 " + std::to_string(subset.size()), subset);
    else
        file.stream(fontFile, "/Subtype/CIDFontType0C", whole);

    const int descriptor = file.newObject();
    std::string text = "<</Type/FontDescriptor/FontName/" + name + "/Flags 4/FontBBox[";
    for (const std::size_t at : {36u, 38u, 40u, 42u})
        put(text, "", fontShort(head, at) * 1000 / em);
    put(text, "]/ItalicAngle", 0);
    put(text, "/Ascent", fontShort(hhea, 4) * 1000 / em);
    put(text, "/Descent", fontShort(hhea, 6) * 1000 / em);
    put(text, "/CapHeight", fontShort(hhea, 4) * 1000 / em);
    text += isTrueType ? "/StemV 80/FontFile2 " : "/StemV 80/FontFile3 ";
    file.object(descriptor, text + pdfReference(fontFile) + ">>");

    const int glyphFont = file.newObject();
    file.object(glyphFont, std::string("<</Type/Font/Subtype/CIDFontType") +
                               (isTrueType ? '2' : '0') + "/BaseFont/" + name +
                               "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>"
                               "/FontDescriptor " +
                               pdfReference(descriptor) + "/W[" + widths + ']' +
                               (isTrueType ? "/CIDToGIDMap/Identity>>" : ">>"));
    const int map = file.newObject();
    file.stream(map, "", characterMap(font.used));
    const int all = file.newObject();
    file.object(all, "<</Type/Font/Subtype/Type0/BaseFont/" + name +
                         "/Encoding/Identity-H/DescendantFonts[" + pdfReference(glyphFont) +
                         "]/ToUnicode " + pdfReference(map) + ">>");
    return all;
}

void PdfFonts::write(PdfFile& file, int resources)
{
    std::string names = "<<";
    for (const Font& font : fonts_) {
        if (font.hasOutlines && !font.used.empty())
            names += "/F" + std::to_string(font.number) + ' ' + pdfReference(writeFont(file, font));
    }
    file.object(resources, names + ">>");
}

}  // namespace pavane
