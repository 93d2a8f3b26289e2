#include "platform/core/bus_message.h"

namespace pavane
{

namespace
{

constexpr std::size_t fixedHeader = 16;
// Greater ones are allowed on a bus; nobody sends them to us.
constexpr std::uint32_t mostFields = 1u << 16;
constexpr std::uint32_t mostBody = 16u << 20;

enum Field { path = 1, interfaceName = 2, member = 3, answered = 5, destination = 6, types = 8 };

std::uint32_t numberAt(std::string_view bytes, std::size_t at, bool isBigEndian)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[at + i]);
        value |= std::uint32_t{byte} << 8 * (isBigEndian ? 3 - i : i);
    }
    return value;
}

/// Reads values one after the other; nothing is beyond the end.
class Reader
{
public:
    Reader(std::string_view bytes, bool isBigEndian) : bytes_(bytes), isBigEndian_(isBigEndian) {}
    bool hasMore() const { return isWell && at_ < bytes_.size(); }
    bool isWell = true;

    std::string_view take(std::size_t count)
    {
        isWell = isWell && count <= bytes_.size() - at_;
        if (!isWell)
            return {};
        at_ += count;
        return bytes_.substr(at_ - count, count);
    }
    void align(std::size_t size) { (void)take((size - at_ % size) % size); }
    std::uint32_t number()
    {
        align(4);
        const std::string_view four = take(4);
        return isWell ? numberAt(four, 0, isBigEndian_) : 0;
    }
    std::size_t byte()
    {
        const std::string_view one = take(1);
        return isWell ? static_cast<unsigned char>(one[0]) : 0;
    }
    std::string_view text()
    {
        const std::string_view value = take(number());
        (void)take(1);  // its NUL
        return value;
    }
    std::string_view signature()
    {
        const std::string_view value = take(byte());
        (void)take(1);
        return value;
    }
    std::size_t left() const { return bytes_.size() - at_; }

private:
    std::string_view bytes_;
    bool isBigEndian_;
    std::size_t at_ = 0;
};

}  // namespace

void BusWriter::number(std::uint32_t value)
{
    align(4);
    for (int shift = 0; shift < 32; shift += 8)
        byte(static_cast<int>(value >> shift & 0xFF));
}

void BusWriter::text(std::string_view value)
{
    number(static_cast<std::uint32_t>(value.size()));
    bytes_ += value;
    byte(0);
}

void BusWriter::signature(std::string_view value)
{
    byte(static_cast<int>(value.size()));
    bytes_ += value;
    byte(0);
}

void BusWriter::overwrite(std::size_t at, std::uint32_t value)
{
    BusWriter four;
    four.number(value);
    bytes_.replace(at, 4, four.bytes());
}

CString busCall(std::uint32_t serial, const BusTarget& target, std::string_view signature,
                std::string_view body)
{
    BusWriter out;
    for (const int value : {int{'l'}, 1, 0, 1})  // little-endian, a call, no flags, version
        out.byte(value);
    out.number(static_cast<std::uint32_t>(body.size()));
    out.number(serial);
    out.number(0);  // bytes of fields, known below
    const auto field = [&](Field code, std::string_view type, std::string_view value) {
        out.align(8);
        out.byte(code);
        out.signature(type);
        if (type == "g")
            out.signature(value);
        else
            out.text(value);
    };
    field(path, "o", target.object);
    field(interfaceName, "s", target.interface);
    field(member, "s", target.member);
    field(destination, "s", target.service);
    if (!signature.empty())
        field(types, "g", signature);
    out.overwrite(fixedHeader - 4, static_cast<std::uint32_t>(out.size() - fixedHeader));
    out.align(8);
    return out.bytes() + CString(body);
}

CString textArgument(std::string_view text)
{
    BusWriter out;
    out.text(text);
    return out.bytes();
}

CString openArguments(std::string_view address)
{
    BusWriter out;
    out.number(0);  // bytes of the list
    out.text(address);
    out.overwrite(0, static_cast<std::uint32_t>(out.size() - 4));
    out.number(0);  // bytes of the table, whose entries would begin at a multiple of 8
    out.align(8);
    return out.bytes();
}

int takeBusMessage(CString& bytes, BusMessage& message)
{
    message = {};
    if (bytes.size() < fixedHeader)
        return 0;
    message.isBigEndian = bytes[0] == 'B';
    const std::uint32_t bodySize = numberAt(bytes, 4, message.isBigEndian);
    const std::uint32_t fieldsSize = numberAt(bytes, 12, message.isBigEndian);
    if ((bytes[0] != 'l' && bytes[0] != 'B') || bodySize > mostBody || fieldsSize > mostFields)
        return -1;
    const std::size_t bodyAt = (fixedHeader + fieldsSize + 7) / 8 * 8;
    if (bytes.size() < bodyAt + bodySize)
        return 0;
    const int kind = static_cast<unsigned char>(bytes[1]);
    message.kind = kind == BusMessage::reply || kind == BusMessage::error
                       ? static_cast<BusMessage::Kind>(kind)
                       : BusMessage::other;
    // fields begin at a multiple of 8, as in the whole message
    Reader in(std::string_view(bytes).substr(fixedHeader, fieldsSize), message.isBigEndian);
    while (in.hasMore()) {
        in.align(8);
        const std::size_t code = in.byte();
        const std::string_view type = in.signature();
        if (type == "u") {
            const std::uint32_t value = in.number();
            message.answers = code == answered ? value : message.answers;
        } else if (type == "g") {
            const std::string_view value = in.signature();
            message.signature = code == types ? value : std::string_view(message.signature);
        } else if (type == "s" || type == "o") {
            (void)in.text();
        } else {
            in.isWell = false;  // a field of a kind that no bus of today has
        }
    }
    if (!in.isWell)
        message.kind = BusMessage::other;
    message.body = bytes.substr(bodyAt, bodySize);
    bytes.erase(0, bodyAt + bodySize);
    return 1;
}

int BusMessage::truth() const
{
    Reader in(body, isBigEndian);
    return signature == "b" && in.number() != 0;
}

std::vector<CString> BusMessage::texts() const
{
    std::vector<CString> list;
    if (signature != "as")
        return list;
    Reader in(body, isBigEndian);
    const std::uint32_t size = in.number();
    const std::size_t end = in.left() < size ? 0 : in.left() - size;
    while (in.isWell && in.left() > end) {
        const std::string_view text = in.text();
        if (in.isWell)
            list.emplace_back(text);
    }
    return list;
}

}  // namespace pavane
