#include "apps/ms/FitsOutput.h"

#include "apps/ms/Failure.h"
#include "apps/ms/text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace pavane_ms
{

namespace
{

constexpr std::size_t blockSize = 2880, cardSize = 80;

template <typename Bits, typename T>
void addBits(T value, std::vector<unsigned char>& bytes)
{
    Bits bits = 0;
    static_assert(sizeof bits == sizeof value);
    std::memcpy(&bits, &value, sizeof bits);
    for (int shift = 8 * (static_cast<int>(sizeof bits) - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<unsigned char>(bits >> shift));
}

std::string keyText(const std::string& key)
{
    std::string text = key;
    text.resize(8, ' ');
    return text + "= ";
}

}  // namespace

void FitsBytes::add(float value) { addBits<std::uint32_t>(value, bytes_); }
void FitsBytes::add(double value) { addBits<std::uint64_t>(value, bytes_); }
void FitsBytes::add(std::int32_t value) { addBits<std::uint32_t>(value, bytes_); }

void FitsBytes::add(const std::string& text, std::size_t width)
{
    std::string field = text;
    field.resize(width, ' ');
    bytes_.insert(bytes_.end(), field.begin(), field.end());
}

void FitsCards::add(std::string card)
{
    card.resize(cardSize, ' ');
    // a header holds nothing but plain characters
    for (char& c : card)
        if (c < ' ' || c > '~')
            c = '?';
    cards_ += card;
}

void FitsCards::text(const std::string& key, const std::string& value)
{
    std::string quoted = "'";
    for (const char c : value.substr(0, 34))
        quoted += c == '\'' ? "''" : std::string(1, c);
    quoted.resize(std::max<std::size_t>(quoted.size(), 9), ' ');
    add(keyText(key) + quoted + "'");
}

void FitsCards::number(const std::string& key, double value)
{
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%25.17E", value);
    add(keyText(key) + buffer);
}

void FitsCards::whole(const std::string& key, std::int64_t value)
{
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%20lld", static_cast<long long>(value));
    add(keyText(key) + buffer);
}

void FitsCards::logical(const std::string& key, bool value)
{
    add(keyText(key) + std::string(19, ' ') + (value ? "T" : "F"));
}

void FitsCards::history(const std::string& text)
{
    constexpr std::size_t most = 72;
    std::size_t at = 0;
    do {
        add("HISTORY " + text.substr(at, most));
        at += most;
    } while (at < text.size());
}

FitsOutput::FitsOutput(const std::string& name)
    : name_(name), file_(std::fopen(name.c_str(), "w+b"), &std::fclose)
{
    if (!file_)
        throw Failure(name_ + " cannot be written: " + std::strerror(errno));
}

void FitsOutput::write(const void* bytes, std::size_t count)
{
    if (count > 0 && std::fwrite(bytes, 1, count, file_.get()) != count)
        throw Failure(name_ + " cannot be written: " + std::strerror(errno));
    written_ += count;
}

void FitsOutput::header(const FitsCards& cards)
{
    std::string text = cards.cards() + "END";
    text.resize((text.size() + blockSize - 1) / blockSize * blockSize, ' ');
    write(text.data(), text.size());
}

void FitsOutput::data(const std::vector<unsigned char>& bytes)
{
    write(bytes.data(), bytes.size());
}

void FitsOutput::endData()
{
    const std::vector<unsigned char> zeros((blockSize - written_ % blockSize) % blockSize, 0);
    data(zeros);
}

void FitsOutput::replace(std::size_t place, const FitsCards& card)
{
    if (std::fseek(file_.get(), static_cast<long>(place), SEEK_SET) != 0)
        throw Failure(name_ + " cannot be written: " + std::strerror(errno));
    write(card.cards().data(), card.size());
}

void FitsOutput::finish()
{
    if (std::fflush(file_.get()) != 0 || std::fclose(file_.release()) != 0)
        throw Failure(name_ + " cannot be written: " + std::strerror(errno));
}

FitsTableOutput::FitsTableOutput(const std::string& name, int version)
    : name_(name), version_(version)
{
}

void FitsTableOutput::column(const std::string& name, const std::string& form,
                             const std::string& unit)
{
    const std::string n = std::to_string(++count_);
    columns_.text("TTYPE" + n, name);
    columns_.text("TFORM" + n, form);
    if (!unit.empty())
        columns_.text("TUNIT" + n, unit);
}

void FitsTableOutput::write(FitsOutput& file, std::int64_t rows)
{
    FitsCards cards;
    const auto bytes = static_cast<std::int64_t>(values_.bytes().size());
    cards.text("XTENSION", "BINTABLE");
    cards.whole("BITPIX", 8);
    cards.whole("NAXIS", 2);
    cards.whole("NAXIS1", rows > 0 ? bytes / rows : 0);
    cards.whole("NAXIS2", rows);
    cards.whole("PCOUNT", 0);
    cards.whole("GCOUNT", 1);
    cards.whole("TFIELDS", count_);
    FitsCards name;
    name.text("EXTNAME", name_);
    name.whole("EXTVER", version_);
    FitsCards all = cards;
    all.append(columns_);
    all.append(name);
    all.append(extra_);
    file.header(all);
    file.data(values_.bytes());
    file.endData();
}

}  // namespace pavane_ms
