#include "platform/core/ipp_texts.h"

#include "platform/core/queue_texts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>

namespace pavane
{

namespace
{

constexpr int getPrinterAttributes = 0x000B;
constexpr int printerGroup = 4;

/// Tags of groups lie below those of values.
enum Tag : int {
    operationTag = 0x01,
    endTag = 0x03,
    firstValueTag = 0x10,
    integerTag = 0x21,
    booleanTag = 0x22,
    resolutionTag = 0x32,
    beginTag = 0x34,
    endCollectionTag = 0x37,
    keywordTag = 0x44,
    uriTag = 0x45,
    charsetTag = 0x47,
    languageTag = 0x48,
    memberTag = 0x4A
};
/// A resolution is given per inch or per centimetre.
constexpr int perInch = 3;

constexpr std::array<std::string_view, 6> wanted{
    "media-supported", "media-col-default", "printer-resolution-default",
    "sides-supported", "color-supported",   "printer-make-and-model"};

/// Sizes of paper are the same within half a millimetre: inches are rounded in some places.
constexpr int samePaper = 50;
constexpr int mostMargin = 20000;
constexpr std::size_t mostPapers = 500;

void putShort(std::string& bytes, std::size_t value)
{
    bytes += static_cast<char>(value >> 8 & 255);
    bytes += static_cast<char>(value & 255);
}

void putAttribute(std::string& bytes, Tag tag, std::string_view name, std::string_view value)
{
    bytes += static_cast<char>(tag);
    putShort(bytes, name.size());
    bytes += name;
    putShort(bytes, value.size());
    bytes += value;
}

/// A name as a part of an address.
std::string encoded(const CString& name)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        const int isPlain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
                            (c >= 'a' && c <= 'z') || c == '-' || c == '_' || c == '.';
        if (isPlain)
            text += c;
        else
            text.append({'%', digits[byte >> 4U], digits[byte & 15U]});
    }
    return text;
}

char lowerOf(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

/// The value of a line of the head, "" when there is none.
std::string_view headValue(std::string_view head, std::string_view name)
{
    while (!head.empty()) {
        const std::size_t end = std::min(head.find('\n'), head.size());
        std::string_view line = head.substr(0, end);
        head.remove_prefix(std::min(end + 1, head.size()));
        if (line.size() <= name.size() || line[name.size()] != ':' ||
            !std::equal(name.begin(), name.end(), line.begin(),
                        [](char a, char b) { return a == lowerOf(b); }))
            continue;
        line.remove_prefix(name.size() + 1);
        while (!line.empty() && (line.front() == ' ' || line.front() == '\t'))
            line.remove_prefix(1);
        while (!line.empty() && (line.back() == ' ' || line.back() == '\r'))
            line.remove_suffix(1);
        return line;
    }
    return {};
}

/// Takes the head off an answer; 0 while it is not there.
int takeHead(std::string_view& answer, std::string_view& head)
{
    const std::size_t end = answer.find("\r\n\r\n");
    if (end == std::string_view::npos)
        return 0;
    head = answer.substr(0, end);
    answer.remove_prefix(end + 4);
    return 1;
}

std::string unchunked(std::string_view body)
{
    std::string whole;
    while (!body.empty()) {
        std::size_t count = 0;
        const auto [end, fault] =
            std::from_chars(body.data(), body.data() + body.size(), count, 16);
        const std::size_t from = body.find('\n');
        if (fault != std::errc() || count == 0 || from == std::string_view::npos)
            break;
        body.remove_prefix(from + 1);
        whole += body.substr(0, std::min(count, body.size()));
        body.remove_prefix(std::min(body.size(), count + 2 < count ? count : count + 2));
    }
    return whole;
}

/// Reads the attributes one after the other; a damaged one ends it.
class Attributes
{
public:
    explicit Attributes(std::string_view bytes) : bytes_(bytes) {}
    std::string_view bytes(std::size_t count)
    {
        const std::string_view taken = bytes_.substr(0, count);
        ok_ = ok_ && taken.size() == count;
        bytes_.remove_prefix(taken.size());
        return ok_ ? taken : std::string_view();
    }
    int number(std::size_t size)
    {
        std::uint32_t value = 0;
        for (const char c : bytes(size))
            value = value << 8 | static_cast<unsigned char>(c);
        return static_cast<int>(value);
    }
    std::string_view text() { return bytes(static_cast<std::size_t>(number(2))); }
    int ok() const { return ok_; }

private:
    std::string_view bytes_;
    int ok_ = 1;
};

int intOf(std::string_view value, std::size_t at = 0)
{
    return value.size() < at + 4 ? 0 : Attributes(value.substr(at)).number(4);
}

/// A margin of the paper that the queue takes by itself.
void takeMargin(std::string_view member, std::string_view value, CRect& margins)
{
    const int margin = intOf(value);
    if (margin < 0 || margin > mostMargin)
        return;
    if (member == "media-left-margin")
        margins.left = margin;
    else if (member == "media-top-margin")
        margins.top = margin;
    else if (member == "media-right-margin")
        margins.right = margin;
    else if (member == "media-bottom-margin")
        margins.bottom = margin;
}

void takePaper(std::string_view name, std::vector<PrinterPaper>& papers)
{
    PrinterPaper paper;
    if (papers.size() >= mostPapers || name.starts_with("custom_") || !readPaperSize(name, paper))
        return;
    paper.name = usualPaperName(paper, samePaper);
    const auto isThere = [&](const PrinterPaper& other) { return other.name == paper.name; };
    if (std::none_of(papers.begin(), papers.end(), isThere))
        papers.push_back(paper);
}

void takeValue(std::string_view name, int tag, std::string_view value, PrinterInfo& queue)
{
    if (name == "media-supported") {
        takePaper(value, queue.papers);
    } else if (name == "printer-make-and-model") {
        queue.type = queueLine(value);
    } else if (name == "color-supported" && tag == booleanTag && value.size() == 1) {
        queue.color = value[0] != 0;
    } else if (name == "sides-supported") {
        queue.duplex = std::max(queue.duplex, static_cast<int>(value.starts_with("two-sided")));
    } else if (name == "printer-resolution-default" && tag == resolutionTag && value.size() == 9) {
        const int dpi = std::min(intOf(value), intOf(value, 4));
        queue.dpi = value[8] == perInch && dpi >= 36 && dpi <= 9600 ? dpi : 0;
    }
}

}  // namespace

std::string queueRequest(const CString& queue)
{
    const std::string name = encoded(queue);
    std::string body("\x02\x00", 2);
    putShort(body, getPrinterAttributes);
    body.append("\0\0\0\x01", 4);
    body += static_cast<char>(operationTag);
    putAttribute(body, charsetTag, "attributes-charset", "utf-8");
    putAttribute(body, languageTag, "attributes-natural-language", "en");
    putAttribute(body, uriTag, "printer-uri", "ipp://localhost/printers/" + name);
    for (const std::string_view each : wanted)
        putAttribute(body, keywordTag, each == wanted.front() ? "requested-attributes" : "", each);
    body += static_cast<char>(endTag);
    return "POST /printers/" + name +
           " HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/ipp\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
}

int isAnswerWhole(std::string_view answer)
{
    std::string_view head;
    std::size_t length = 0;
    if (!takeHead(answer, head))
        return 0;
    const std::string_view text = headValue(head, "content-length");
    return std::from_chars(text.data(), text.data() + text.size(), length).ec == std::errc() &&
           answer.size() >= length;
}

int readAnswer(std::string_view answer, PrinterInfo& queue)
{
    std::string_view head;
    if (!takeHead(answer, head) || head.substr(0, 7) != "HTTP/1." || head.substr(8, 4) != " 200")
        return 0;
    const std::string whole =
        headValue(head, "transfer-encoding") == "chunked" ? unchunked(answer) : std::string(answer);
    Attributes attributes(whole);
    (void)attributes.number(2);
    const int status = attributes.number(2);
    (void)attributes.number(4);
    int group = 0;
    int depth = 0;
    std::string_view name;
    std::string_view member;
    // statuses from 0x100 on are failures
    while (attributes.ok() && status < 0x100) {
        const int tag = attributes.number(1);
        if (!attributes.ok() || tag == endTag)
            return attributes.ok() && status < 0x100;
        if (tag < firstValueTag) {
            group = tag;
            continue;
        }
        const std::string_view ownName = attributes.text();
        const std::string_view value = attributes.text();
        if (!attributes.ok())
            break;
        if (depth == 0 && !ownName.empty())
            name = ownName;
        if (tag == beginTag)
            ++depth;
        else if (tag == endCollectionTag)
            depth = std::max(depth - 1, 0);
        else if (tag == memberTag)
            member = value;
        else if (group == printerGroup && depth == 0)
            takeValue(name, tag, value, queue);
        else if (group == printerGroup && depth == 1 && name == "media-col-default" &&
                 tag == integerTag)
            takeMargin(member, value, queue.leastMargins);
    }
    return 0;
}

}  // namespace pavane
