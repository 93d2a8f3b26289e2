#include "tessel/fits_header_text.h"

#include "tessel/fits_hdus.h"
#include "tessel/plain_text.h"

namespace pavane
{

int readFitsHeaderText(const std::string& file, std::vector<std::string>& lines, std::string& error)
{
    constexpr std::size_t mostLines = 100000;
    lines.clear();
    AFile fits;
    if (!openFits(file, fits, error))
        return 0;
    FitsHdu hdu;
    for (std::int64_t start = 0; readHdu(fits, start, hdu); start = endOf(hdu)) {
        if (!lines.empty())
            lines.emplace_back();
        for (const std::string& card : hdu.cards.cards()) {
            if (lines.size() >= mostLines) {
                lines.emplace_back("... and more");
                return 1;
            }
            const std::size_t end = card.find_last_not_of(' ');
            lines.push_back(plainText(card.substr(0, end + 1)));
        }
        if (endOf(hdu) <= start)
            break;
    }
    if (lines.empty())
        error = "has no header that can be read";
    return !lines.empty();
}

}  // namespace pavane
