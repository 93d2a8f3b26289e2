#pragma once

#include "apps/options/program_text.h"

#include <algorithm>
#include <string>
#include <vector>

namespace pavane
{

/// One option of a program: what its help says and what it does to the program's options.
template <class Options>
struct Option : OptionText {
    /// 0 when the value is of no use; `error` is then one line that names the option. Switches get
    /// an empty value.
    int (*apply)(const std::string& value, Options& options, std::string& error);
    /// Any bits that the program wants to know of the options that were given.
    int traits = 0;
    int repeats = 0;     ///< non-zero: it may stand more than once
    int mayBeEmpty = 0;  ///< non-zero: an empty value is one
};

template <class Options>
using OptionTable = std::vector<Option<Options>>;

/// What stood on a command line beside the values that went into the options.
template <class Options>
struct GivenArguments {
    std::vector<const Option<Options>*> options;  ///< in the order given; into the table
    std::vector<std::string> operands;            ///< what is no option
};

/// The option of a name, "--png" or "-h"; null for none.
template <class Options>
const Option<Options>* findOption(const OptionTable<Options>& table, const std::string& name)
{
    const auto found = std::find_if(table.begin(), table.end(), [&](const Option<Options>& o) {
        return o.name == name || (!o.letter.empty() && o.letter == name);
    });
    return found == table.end() ? nullptr : &*found;
}

/// Reads the arguments behind the program's name: "--name value", "--name=value", "--" before what
/// only looks like an option. Options that do not repeat may stand once. Non-zero on success; else
/// 0 and `error` is one line.
template <class Options>
int readArguments(const std::vector<std::string>& arguments, const OptionTable<Options>& table,
                  Options& options, GivenArguments<Options>& given, std::string& error)
{
    int onlyOperands = 0;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (onlyOperands || argument.size() < 2 || argument[0] != '-') {
            given.operands.push_back(argument);
            continue;
        }
        if (argument == "--") {
            onlyOperands = 1;
            continue;
        }
        const std::size_t equals =
            argument.rfind("--", 0) == 0 ? argument.find('=') : argument.npos;
        const std::string name = argument.substr(0, equals);
        const Option<Options>* const option = findOption(table, name);
        if (!option)
            error = "there is no option '" + name + "'";
        else if (!option->repeats && std::find(given.options.begin(), given.options.end(),
                                               option) != given.options.end())
            error = name + " is given twice";
        else if (option->value.empty() && equals != argument.npos)
            error = name + " takes no value";
        if (!error.empty())
            return 0;
        std::string value = equals == argument.npos ? "" : argument.substr(equals + 1);
        int hasValue = equals != argument.npos;
        if (!option->value.empty() && equals == argument.npos && i + 1 < arguments.size() &&
            !findOption(table, arguments[i + 1])) {
            value = arguments[++i];
            hasValue = 1;
        }
        if (!option->value.empty() && value.empty() && !(hasValue && option->mayBeEmpty)) {
            error = name + " wants a value";
            return 0;
        }
        if (!option->apply(value, options, error))
            return 0;
        given.options.push_back(option);
    }
    return 1;
}

/// The texts of a table whose traits are `traits`, for help and man page.
template <class Options>
std::vector<OptionText> textsOf(const OptionTable<Options>& table, int traits)
{
    std::vector<OptionText> texts;
    for (const Option<Options>& option : table)
        if (option.traits == traits)
            texts.push_back(option);
    return texts;
}

}  // namespace pavane
