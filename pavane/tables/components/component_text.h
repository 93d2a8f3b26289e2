#pragma once

#include "pavane/tables/components/component_arrays.h"

#include <istream>
#include <string>
#include <string_view>

namespace pavane
{

/// Takes a number, with the blanks before it, off the front of `text`. Non-zero when there is one.
int takeNumber(std::string_view& text, int& value);
int takeNumber(std::string_view& text, double& value);

/// Takes the fields in order until one is missing, and leaves the rest in `text`. Returns how many.
int takeComponent(std::string_view& text, ACompItem& item);

/// Non-zero when no field is infinite or not a number.
int hasFiniteFields(const ACompItem& item);

int isBlank(std::string_view text);

/// The lines of a component text that are neither comments nor blank, cut to 128 characters.
class ComponentLines
{
public:
    explicit ComponentLines(std::istream& in) : in_(in) {}
    /// Steps to the next line; 0 when the text has ended.
    int next();
    const std::string& text() const { return text_; }
    /// Counts all lines of the text from 1.
    long long number() const { return number_; }
    /// Non-zero when the line was longer and has been cut.
    int wasCut() const { return cut_; }
    /// Non-zero when the text ended at a line of more than 64 KiB, which is none of a text.
    int isTooLong() const { return tooLong_; }

private:
    int readLine();
    std::istream& in_;
    std::string text_;
    long long number_ = 0;
    int cut_ = 0;
    int tooLong_ = 0;
};

}  // namespace pavane
