#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// The bytes of a FITS file in the making: cards first, then data, block by block.
class FitsText
{
public:
    void card(const std::string& key, const std::string& text);
    void card(const std::string& key, const char* text) { card(key, std::string(text)); }
    void card(const std::string& key, double number);
    void card(const std::string& key, int number);
    void card(const std::string& key, bool truth);
    /// Ends the header of an HDU and takes its data.
    void data(const std::string& bytes);
    const std::string& bytes() const { return bytes_; }

private:
    void line(const std::string& key, std::string value);
    void fill(char with);
    std::string bytes_;
};

/// Appends a number, its highest byte first.
void put(std::string& data, std::int32_t value);
void put(std::string& data, float value);
void put(std::string& data, double value);

/// A binary table: its columns, then the cells row by row, in their order.
class TableText
{
public:
    struct Column {
        const char* name;
        std::string form;
        const char* unit = "";
    };
    TableText(std::string name, int version, std::vector<Column> columns)
        : name_(std::move(name)), version_(version), columns_(std::move(columns))
    {
    }
    TableText& operator<<(std::int32_t value) { return put(data_, value), *this; }
    TableText& operator<<(float value) { return put(data_, value), *this; }
    TableText& operator<<(double value) { return put(data_, value), *this; }
    /// A text, with blanks up to `length`.
    TableText& text(std::string value, std::size_t length);
    void endRow() { ++rows_; }
    /// Writes the table with further cards, made by `more`.
    template <typename More>
    void write(FitsText& file, More more) const
    {
        begin(file);
        more(file);
        file.data(data_);
    }

private:
    void begin(FitsText& file) const;
    std::string name_;
    int version_;
    std::vector<Column> columns_;
    std::string data_;
    int rows_ = 0;
};

}  // namespace pavane
