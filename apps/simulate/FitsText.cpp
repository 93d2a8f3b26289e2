#include "apps/simulate/FitsText.h"

#include "tessel/value_text.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr std::size_t blockBytes = 2880, cardBytes = 80, keyBytes = 8, fieldBytes = 20;

template <typename Word>
void putWord(std::string& data, Word word)
{
    for (int shift = 8 * (static_cast<int>(sizeof(Word)) - 1); shift >= 0; shift -= 8)
        data += static_cast<char>(word >> shift & 255);
}

}  // namespace

void put(std::string& data, std::int32_t value)
{
    putWord(data, static_cast<std::uint32_t>(value));
}

void put(std::string& data, float value) { putWord(data, std::bit_cast<std::uint32_t>(value)); }

void put(std::string& data, double value) { putWord(data, std::bit_cast<std::uint64_t>(value)); }

void FitsText::line(const std::string& key, std::string value)
{
    std::string text = key;
    text.resize(keyBytes, ' ');
    if (value[0] != '\'' && value.size() < fieldBytes)
        value.insert(0, fieldBytes - value.size(), ' ');
    text += "= " + value;
    text.resize(cardBytes, ' ');
    bytes_ += text;
}

void FitsText::card(const std::string& key, const std::string& text)
{
    std::string padded = text;
    padded.resize(std::max(text.size(), keyBytes), ' ');
    line(key, "'" + padded + "'");
}

void FitsText::card(const std::string& key, double number)
{
    std::string text = valToStr(number);
    if (text.find_first_of(".e") == std::string::npos)
        text += ".0";
    std::replace(text.begin(), text.end(), 'e', 'E');
    line(key, text);
}

void FitsText::card(const std::string& key, int number) { line(key, std::to_string(number)); }

void FitsText::card(const std::string& key, bool truth) { line(key, truth ? "T" : "F"); }

void FitsText::fill(char with)
{
    bytes_.resize((bytes_.size() + blockBytes - 1) / blockBytes * blockBytes, with);
}

void FitsText::data(const std::string& bytes)
{
    bytes_ += "END";
    fill(' ');
    bytes_ += bytes;
    fill('\0');
}

TableText& TableText::text(std::string value, std::size_t length)
{
    value.resize(length, ' ');
    data_ += value;
    return *this;
}

void TableText::begin(FitsText& file) const
{
    file.card("XTENSION", "BINTABLE");
    file.card("BITPIX", 8);
    file.card("NAXIS", 2);
    file.card("NAXIS1", rows_ ? static_cast<int>(data_.size()) / rows_ : 0);
    file.card("NAXIS2", rows_);
    file.card("PCOUNT", 0);
    file.card("GCOUNT", 1);
    file.card("TFIELDS", static_cast<int>(columns_.size()));
    file.card("EXTNAME", name_);
    file.card("EXTVER", version_);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const std::string n = std::to_string(i + 1);
        file.card("TTYPE" + n, columns_[i].name);
        file.card("TFORM" + n, columns_[i].form);
        file.card("TUNIT" + n, columns_[i].unit);
    }
}

}  // namespace pavane
