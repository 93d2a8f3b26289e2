#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace pavane_ms
{

/// Bytes of FITS data, each number with its first byte first.
class FitsBytes
{
public:
    void add(float value);
    void add(double value);
    void add(std::int32_t value);
    /// Cut or filled with blanks.
    void add(const std::string& text, std::size_t width);
    const std::vector<unsigned char>& bytes() const { return bytes_; }
    void clear() { bytes_.clear(); }

private:
    std::vector<unsigned char> bytes_;
};

/// Cards of a header.
class FitsCards
{
public:
    void text(const std::string& key, const std::string& value);
    void number(const std::string& key, double value);
    void whole(const std::string& key, std::int64_t value);
    void logical(const std::string& key, bool value);
    void history(const std::string& text);
    void append(const FitsCards& other) { cards_ += other.cards_; }
    const std::string& cards() const { return cards_; }
    /// The place of the next card.
    std::size_t size() const { return cards_.size(); }

private:
    void add(std::string card);
    std::string cards_;
};

/// A FITS file that is written from its begin to its end; what cannot be written is a Failure.
class FitsOutput
{
public:
    explicit FitsOutput(const std::string& name);
    void header(const FitsCards& cards);
    void data(const std::vector<unsigned char>& bytes);
    /// Fills the last block.
    void endData();
    /// Writes one card anew, `place` counted from the begin of the file.
    void replace(std::size_t place, const FitsCards& card);
    void finish();

private:
    void write(const void* bytes, std::size_t count);

    std::string name_;
    std::unique_ptr<FILE, int (*)(FILE*)> file_;
    std::uint64_t written_ = 0;
};

/// A binary table: columns first, then values row by row.
class FitsTableOutput
{
public:
    FitsTableOutput(const std::string& name, int version);
    void column(const std::string& name, const std::string& form, const std::string& unit);
    FitsCards& cards() { return extra_; }
    FitsBytes& values() { return values_; }
    void write(FitsOutput& file, std::int64_t rows);

private:
    std::string name_;
    int version_;
    FitsCards columns_, extra_;
    FitsBytes values_;
    int count_ = 0;
};

}  // namespace pavane_ms
