#include "platform/core/PdfFile.h"

#include "platform/core/utf8.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <utility>
#include <zlib.h>

namespace pavane
{

namespace
{

constexpr std::size_t writtenAtOnce = 1 << 16;

void putHex(std::string& out, unsigned value)
{
    for (int shift = 12; shift >= 0; shift -= 4)
        out += "0123456789ABCDEF"[value >> shift & 15];
}

}  // namespace

/// One compressor for all streams; what it needs is allocated once.
struct PdfFile::Packer {
    z_stream stream{};
    int isReady = 0;
    std::string packed;

    Packer() { isReady = deflateInit(&stream, Z_DEFAULT_COMPRESSION) == Z_OK; }
    Packer(const Packer&) = delete;
    Packer& operator=(const Packer&) = delete;
    ~Packer()
    {
        if (isReady)
            (void)deflateEnd(&stream);
    }
    /// Packs `bytes` behind what is there.
    void pack(std::string_view bytes, int isLast)
    {
        std::array<char, 1 << 15> out;
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
        stream.avail_in = static_cast<uInt>(bytes.size());
        int state = Z_OK;
        do {
            stream.next_out = reinterpret_cast<Bytef*>(out.data());
            stream.avail_out = static_cast<uInt>(out.size());
            state = deflate(&stream, isLast ? Z_FINISH : Z_NO_FLUSH);
            packed.append(out.data(), out.size() - stream.avail_out);
        } while (stream.avail_out == 0 && state == Z_OK);
    }
};

PdfFile::PdfFile(Sink sink) : sink_(std::move(sink)), packer_(std::make_unique<Packer>())
{
    if (!packer_->isReady)
        error_ = ENOMEM;
    put("%PDF-1.4\n%\xE2\xE3\xCF\xD3\n");
}

PdfFile::~PdfFile() = default;

void PdfFile::put(std::string_view bytes)
{
    waiting_ += bytes;
    written_ += bytes.size();
    if (waiting_.size() >= writtenAtOnce)
        flush();
}

void PdfFile::flush()
{
    if (error_ == 0)
        error_ = sink_(waiting_);
    waiting_.clear();
}

int PdfFile::newObject()
{
    places_.push_back(0);
    return static_cast<int>(places_.size());
}

void PdfFile::object(int number, std::string_view content)
{
    places_[static_cast<std::size_t>(number) - 1] = written_;
    put(std::to_string(number) + " 0 obj\n");
    put(content);
    put("\nendobj\n");
}

void PdfFile::stream(int number, std::string_view entries, const Source& source)
{
    if (error_ != 0)
        return;
    packer_->packed.clear();
    (void)deflateReset(&packer_->stream);
    for (std::string_view part = source(); !part.empty(); part = source())
        packer_->pack(part, 0);
    packer_->pack({}, 1);
    places_[static_cast<std::size_t>(number) - 1] = written_;
    put(std::to_string(number) + " 0 obj\n<</Length " + std::to_string(packer_->packed.size()) +
        "/Filter/FlateDecode");
    put(entries);
    put(">>\nstream\n");
    put(packer_->packed);
    put("\nendstream\nendobj\n");
}

void PdfFile::stream(int number, std::string_view entries, std::string_view bytes)
{
    stream(number, entries, [&bytes] { return std::exchange(bytes, {}); });
}

int PdfFile::finish(int catalogue, int information)
{
    const std::uint64_t table = written_;
    const std::string count = std::to_string(places_.size() + 1);
    put("xref\n0 " + count + "\n0000000000 65535 f \n");
    for (const std::uint64_t place : places_) {
        const std::string digits = std::to_string(place);
        put(std::string(10 - std::min<std::size_t>(10, digits.size()), '0') + digits +
            (place == 0 ? " 65535 f \n" : " 00000 n \n"));
    }
    put("trailer\n<</Size " + count + "/Root " + pdfReference(catalogue) + "/Info " +
        pdfReference(information) + ">>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n");
    flush();
    return error_ == 0;
}

std::string pdfReference(int number) { return std::to_string(number) + " 0 R"; }

void putNumber(std::string& out, double v)
{
    constexpr double farthest = 1e9;
    if (!(std::fabs(v) < farthest))
        v = v > 0 ? farthest : v < 0 ? -farthest : 0;
    std::int64_t thousandths = std::llround(v * 1000);
    if (thousandths < 0) {
        out += '-';
        thousandths = -thousandths;
    }
    std::array<char, 24> digits;
    const auto whole =
        std::to_chars(digits.data(), digits.data() + digits.size(), thousandths / 1000);
    out.append(digits.data(), whole.ptr);
    const auto rest = static_cast<int>(thousandths % 1000);
    if (rest == 0)
        return;
    out += '.';
    out += static_cast<char>('0' + rest / 100);
    if (rest % 100 != 0)
        out += static_cast<char>('0' + rest / 10 % 10);
    if (rest % 10 != 0)
        out += static_cast<char>('0' + rest % 10);
}

void putUtf16(std::string& out, char32_t character)
{
    if (character < 0x10000)
        return putHex(out, static_cast<unsigned>(character));
    putHex(out, static_cast<unsigned>(0xD7C0 + (character >> 10)));
    putHex(out, static_cast<unsigned>(0xDC00 + (character & 0x3FF)));
}

std::string pdfText(std::string_view text)
{
    std::string out = "<FEFF";
    while (!text.empty())
        putUtf16(out, nextCharacter(text));
    return out + '>';
}

}  // namespace pavane
