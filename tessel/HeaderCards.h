#pragma once

#include "tessel/AFile.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace pavane
{

/// The cards of one header of a FITS file, of 80 characters each, END and blank ones at the end
/// left out. Private to tessel's FITS sources.
class HeaderCards
{
public:
    /// Reads the header that takes the bytes from `start` to `end`, which the file is known to
    /// hold. Non-zero on success.
    int read(AFile& file, std::int64_t start, std::int64_t end);
    /// Takes cards from memory, as a file has them one behind another or in lines, and what stands
    /// before END, which may be missing. 0 with `error` for more than a header of a file may hold,
    /// a line that is longer than a card or a last card that is cut.
    int take(std::string_view text, std::string& error);
    const std::vector<std::string>& cards() const { return cards_; }
    /// The value of the first card with the keyword as it is written, a text in its quotes; ""
    /// when there is none.
    std::string value(const std::string& key) const;
    /// The same as a text, as `fieldText` has it.
    std::string text(const std::string& key) const;
    /// Non-zero, and `value` set, when the first card with the keyword has a finite number.
    int number(const std::string& key, double& value) const;

private:
    void clear();
    /// 0 when the card is END.
    int add(std::string_view card);
    void finish();

    std::vector<std::string> cards_;
    std::unordered_map<std::string, std::size_t> first_;
};

/// The value field of a card that has one, as it is written and without its comment; "" else.
std::string_view valueField(std::string_view card);
/// What a value field says as a text: without quotes and the blanks around; doubled quotes inside
/// are one.
std::string fieldText(std::string_view field);
/// What it says as a number, finite, whose exponent may begin with a D. Non-zero on success, else
/// `value` stays.
int fieldNumber(std::string_view field, double& value);

/// The text without the blanks around it.
std::string_view withoutBlanks(std::string_view text);

}  // namespace pavane
