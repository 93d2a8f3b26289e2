#include "platform/core/command_line.h"

#include "platform/web_handler.h"

#include <utility>

namespace pavane
{

int splitCommand(std::string_view line, std::vector<CString>& words)
{
    words.clear();
    bool isInWord = false;
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (!isQuoted && (c == ' ' || c == '\t' || c == '\n')) {
            isInWord = false;
            continue;
        }
        if (!isInWord)
            words.emplace_back();
        isInWord = true;
        constexpr std::string_view escaped = "\"`$\\";
        if (c == '"')
            isQuoted = !isQuoted;
        else if (isQuoted && c == '\\' && i + 1 < line.size() &&
                 escaped.find(line[i + 1]) != escaped.npos)
            words.back() += line[++i];
        else
            words.back() += c;
    }
    if (isQuoted)
        words.clear();
    return !isQuoted;
}

namespace
{

/// What is put for the field codes of one line.
struct Fields {
    const WebHandler& handler;
    const CString& address;
    bool isAddressDue = true;

    /// The text that stands for a code.
    CString of(char code)
    {
        switch (code) {
        case '%':
            return "%";
        case 'c':
            return handler.name;
        case 'k':
            return handler.file;
        case 'u':
        case 'U':
        case 'f':
        case 'F':
        case '1':
            // a second place would open the address twice
            return std::exchange(isAddressDue, false) ? address : CString();
        default:
            return {};  // those of old, and unknown ones
        }
    }
    CString filled(std::string_view word)
    {
        CString text;
        for (std::size_t i = 0; i < word.size(); ++i) {
            if (word[i] == '%' && i + 1 < word.size())
                text += of(word[++i]);
            else
                text += word[i];
        }
        return text;
    }
};

}  // namespace

std::vector<CString> CommandArguments(const WebHandler& handler, const CString& address)
{
    std::vector<CString> words;
    std::vector<CString> arguments;
    // the program is never what stands for a code
    if (!splitCommand(handler.command, words) || words.empty() ||
        words.front().find('%') != CString::npos)
        return {};
    Fields fields{handler, address};
    for (const CString& word : words) {
        if (word == "%i") {
            if (!handler.icon.empty())
                arguments.insert(arguments.end(), {"--icon", handler.icon});
            continue;
        }
        const CString filled = fields.filled(word);
        // a code that stands for nothing is no argument
        if (!filled.empty() || word.empty())
            arguments.push_back(filled);
    }
    if (fields.isAddressDue)
        arguments.push_back(address);
    return arguments;
}

}  // namespace pavane
