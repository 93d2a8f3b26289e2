#pragma once

#include "platform/core/DeviceBackend.h"
#include "platform/core/PdfFile.h"

#include <deque>
#include <map>

namespace pavane
{

/// The fonts of a document: which glyphs of them were used, and their objects at its end.
class PdfFonts
{
public:
    struct Font {
        const FontProgram* program;
        int number;                         ///< its name on pages is /F and this
        bool hasOutlines;                   ///< else nothing can be drawn
        std::map<unsigned, char32_t> used;  ///< glyphs and what they stand for, 0: several
    };
    Font& of(const FontProgram& program);
    /// Writes them and the dictionary that names them, which is object `resources`.
    void write(PdfFile& file, int resources);

private:
    int writeFont(PdfFile& file, const Font& font);
    std::deque<Font> fonts_;  // whose elements stay where they are
    Font* last_ = nullptr;
};

}  // namespace pavane
