#pragma once

#include "platform/types.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pavane
{

/// The objects of a PDF file, given one after the other to whoever keeps them: only their places
/// stay in memory.
class PdfFile
{
public:
    /// Bytes of a stream, part by part, until one is empty.
    using Source = std::function<std::string_view()>;

    /// Takes the next bytes of the file: 0, or a value of errno for what went wrong.
    using Sink = std::function<int(std::string_view)>;

    explicit PdfFile(Sink sink);
    PdfFile(const PdfFile&) = delete;
    PdfFile& operator=(const PdfFile&) = delete;
    ~PdfFile();

    /// A number for an object that is written later.
    int newObject();
    void object(int number, std::string_view content);
    /// `entries` belong to its dictionary, besides its length and its compression.
    void stream(int number, std::string_view entries, const Source& source);
    void stream(int number, std::string_view entries, std::string_view bytes);
    /// The table of places and what leads to the document. Non-zero when all could be written.
    int finish(int catalogue, int information);
    /// The first failure, a value of errno; 0: none.
    int error() const { return error_; }

private:
    struct Packer;
    void put(std::string_view bytes);
    void flush();

    Sink sink_;
    int error_ = 0;
    std::uint64_t written_ = 0;
    std::string waiting_;
    std::vector<std::uint64_t> places_;
    std::unique_ptr<Packer> packer_;
};

/// "n 0 R".
std::string pdfReference(int number);
/// A number with up to three digits behind the point, and no more than it needs.
void putNumber(std::string& out, double v);
/// Text of any characters, as a string in hexadecimal digits.
std::string pdfText(std::string_view text);
/// The same without its brackets, for one character.
void putUtf16(std::string& out, char32_t character);

}  // namespace pavane
