#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace pavane_ms
{

/// A file that is read by its places; every read is checked against its length.
class InputFile
{
public:
    explicit InputFile(const std::string& name);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    std::int64_t size() const { return size_; }
    /// Throws when not all bytes are there.
    void read(std::int64_t position, void* bytes, std::size_t count);

private:
    std::string name_;
    int file_ = -1;
    std::int64_t size_ = 0;
};

/// The cards of one header, and where its data lie.
struct FitsHeader {
    std::map<std::string, std::string> values;  ///< first of each key; texts without quotes
    std::vector<std::string> history;
    std::int64_t dataStart = 0, dataBytes = 0, next = 0;

    int has(const std::string& key) const { return values.count(key) != 0; }
    /// Trimmed; empty when there is none.
    std::string text(const std::string& key) const;
    double number(const std::string& key, double missing) const;
    std::int64_t whole(const std::string& key, std::int64_t missing) const;
};

/// Reads the header at a place; 0 when none begins there or it does not end.
int readHeader(InputFile& file, std::int64_t start, FitsHeader& header);

/// A binary table, as a whole in memory.
class FitsTable
{
public:
    /// 0 when it is damaged or too large for such a table.
    int read(InputFile& file, const FitsHeader& header);

    std::int64_t rows() const { return rows_; }
    /// From 0; -1 when there is none.
    int column(const std::string& name) const;
    int count(int column) const;
    /// NaN for what is not there or is no number.
    double number(std::int64_t row, int column, int item = 0) const;
    std::string text(std::int64_t row, int column) const;

private:
    struct Column {
        std::string name;
        char type = 0;
        int count = 0;
        std::int64_t offset = 0;
        double scale = 1, zero = 0;
    };
    std::vector<Column> columns_;
    std::vector<unsigned char> bytes_;
    std::int64_t rows_ = 0, width_ = 0;
};

/// A number of the type that BITPIX names, stored with its first byte first.
double storedNumber(const unsigned char* bytes, int bitpix);

}  // namespace pavane_ms
