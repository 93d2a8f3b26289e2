#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pavane
{

/// Lines "name value" with a first and a last line, written: values may hold any bytes.
class FieldWriter
{
public:
    explicit FieldWriter(std::string_view head) : text_(std::string(head) + "\n") {}
    void add(std::string_view name, std::string_view value);
    void add(std::string_view name, long long value) { add(name, std::to_string(value)); }
    void number(std::string_view name, double value);
    void numbers(std::string_view name, const std::vector<double>& values);
    void list(std::string_view name, const std::vector<int>& values);
    void words(std::string_view name, const std::vector<std::string>& words);
    /// The text, with its last line.
    std::string finish() { return text_ + "end\n"; }

private:
    std::string text_;
};

/// The same, read: nothing is believed. What is wrong keeps the first fault.
class FieldReader
{
public:
    /// `head` without the version at its end.
    FieldReader(std::string_view text, std::string_view head);
    /// Steps to the next line; 0 at "end", or when something is wrong.
    int next();
    int isGood() const { return fault_.empty() && ended_; }
    int isNewer() const { return isNewer_; }
    std::string fault() const;

    const std::string& name() const { return name_; }
    const std::string& value() const { return value_; }
    /// The value as a number within these; what is none is a fault.
    long long whole(long long least, long long greatest);
    int flag() { return static_cast<int>(whole(0, 1)); }
    /// Not finite only where `orNan`.
    double number(int orNan = 0);
    std::vector<double> numbers(std::size_t least, std::size_t most, int orNan = 0);
    std::vector<int> list(int least);
    std::vector<std::string> words() const;
    /// A key of a shared file: letters, digits and '-'.
    std::string key();
    void refuse(const std::string& fault);
    /// A name that this version does not know.
    void unknown();

private:
    std::string_view rest_;
    std::string name_, value_, raw_;
    std::string fault_;
    long long line_ = 0;
    int isNewer_ = 0;
    int ended_ = 0;
};

}  // namespace pavane
