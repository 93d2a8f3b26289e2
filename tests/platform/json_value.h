#pragma once

#include <charconv>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// Enough of JSON for recorded drawings: numbers are integers, no escapes but \n, \r, \t, \" and
/// \\.
struct JsonValue {
    enum class Kind { null, number, text, list, object } kind = Kind::null;
    long long number = 0;
    std::string text;
    std::vector<JsonValue> items;
    std::map<std::string, JsonValue> members;

    int asInt() const { return static_cast<int>(number); }
    bool has(const std::string& name) const { return members.count(name) != 0; }
    const JsonValue& operator[](const std::string& name) const { return members.at(name); }
    const JsonValue& operator[](std::size_t i) const { return items.at(i); }
    std::size_t size() const { return items.size(); }
};

class JsonReader
{
public:
    explicit JsonReader(std::string_view text) : text_(text) {}

    JsonValue value()
    {
        JsonValue v;
        switch (next()) {
        case '{':
            v.kind = JsonValue::Kind::object;
            list('}', [&] {
                const std::string name = (next(), string());
                take(':');
                v.members[name] = value();
            });
            break;
        case '[':
            v.kind = JsonValue::Kind::list;
            list(']', [&] { v.items.push_back(value()); });
            break;
        case '"':
            v.kind = JsonValue::Kind::text;
            v.text = string();
            break;
        case 'n':
            at_ += 4;
            break;
        default:
            v.kind = JsonValue::Kind::number;
            at_ = static_cast<std::size_t>(
                std::from_chars(text_.data() + at_, text_.data() + text_.size(), v.number).ptr -
                text_.data());
        }
        return v;
    }

private:
    char next()
    {
        while (at_ < text_.size() && text_[at_] <= ' ')
            ++at_;
        return at_ < text_.size() ? text_[at_] : '\0';
    }
    bool take(char c) { return next() == c && ++at_; }
    template <class Item>
    void list(char end, Item item)
    {
        ++at_;
        while (!take(end) && at_ < text_.size()) {
            item();
            take(',');
        }
    }
    std::string string()
    {
        std::string s;
        for (++at_; at_ < text_.size() && text_[at_] != '"'; ++at_) {
            if (text_[at_] != '\\') {
                s += text_[at_];
                continue;
            }
            const char c = text_[++at_];
            s += c == 'n' ? '\n' : c == 'r' ? '\r' : c == 't' ? '\t' : c;
        }
        ++at_;
        return s;
    }

    std::string_view text_;
    std::size_t at_ = 0;
};
