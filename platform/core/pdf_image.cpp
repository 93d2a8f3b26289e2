#include "platform/core/pdf_image.h"

#include <algorithm>
#include <array>

namespace pavane
{

namespace
{

/// So many pixels between two questions whether to go on.
constexpr std::size_t pixelsAtOnce = 1 << 16;

/// Up to 256 colours and their numbers.
class Colors
{
public:
    /// The number of a colour, which it gets now when it is new; -1 when there are too many.
    int numberOf(std::uint32_t color)
    {
        color &= 0xFFFFFF;
        for (std::size_t at = color * 2654435761u >> 22;; at = (at + 1) % slots_.size()) {
            Slot& slot = slots_[at];
            if (slot.number >= 0 && slot.color == color)
                return slot.number;
            if (slot.number >= 0)
                continue;
            if (count_ == 256)
                return -1;
            slot = {color, count_};
            for (const int shift : {16, 8, 0})
                table_ += static_cast<char>(color >> shift & 0xFF);
            return count_++;
        }
    }
    int count() const { return count_; }
    const std::string& table() const { return table_; }  ///< red, green, blue of each

private:
    struct Slot {
        std::uint32_t color = 0;
        int number = -1;
    };
    std::array<Slot, 1024> slots_;
    int count_ = 0;
    std::string table_;
};

std::string hexOf(std::string_view bytes)
{
    std::string hex = "<";
    for (const char c : bytes) {
        hex += "0123456789ABCDEF"[static_cast<unsigned char>(c) >> 4];
        hex += "0123456789ABCDEF"[static_cast<unsigned char>(c) & 15];
    }
    return hex + '>';
}

}  // namespace

int writeImage(PdfFile& file, const ImageView& image, const std::function<bool()>& goesOn)
{
    const std::size_t count =
        static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    Colors colors;
    bool isIndexed = true;
    for (std::size_t i = 0; i < count && isIndexed; ++i)
        isIndexed =
            (i > 0 && image.bits[i] == image.bits[i - 1]) || colors.numberOf(image.bits[i]) >= 0;
    std::string entries = "/Type/XObject/Subtype/Image/Width " + std::to_string(image.width) +
                          "/Height " + std::to_string(image.height) + "/BitsPerComponent 8";
    entries += isIndexed ? "/ColorSpace[/Indexed/DeviceRGB " + std::to_string(colors.count() - 1) +
                               hexOf(colors.table()) + ']'
                         : "/ColorSpace/DeviceRGB";
    std::string part;
    std::size_t at = 0;
    const int number = file.newObject();
    file.stream(number, entries, [&]() -> std::string_view {
        part.clear();
        if (goesOn && !goesOn())
            return {};
        const std::size_t end = std::min(count, at + pixelsAtOnce);
        for (; at < end; ++at) {
            const std::uint32_t pixel = image.bits[at];
            if (isIndexed)
                part += static_cast<char>(colors.numberOf(pixel));
            else
                for (const int shift : {16, 8, 0})
                    part += static_cast<char>(pixel >> shift & 0xFF);
        }
        return part;
    });
    return number;
}

}  // namespace pavane
