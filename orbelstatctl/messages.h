// Errors, results and text: the output of the commands and their exit status.
#pragma once

#include <string>
#include <string_view>
#include <vector>

using Strings = std::vector<std::string>;

// The exit status. diff has its own meanings: see diff.cpp.
enum class ExitStatus {
    success = 0,
    failure = 1,    // something could not be read, written, printed or saved
    usageError = 2, // the command line or a value is invalid, and nothing was written
};

// Thrown to end a command with a status. The messages have not been printed yet.
struct CommandError {
    ExitStatus status;
    Strings messages;
};

// Throws a usage error with this message if `isInvalid` holds.
void rejectIf(bool isInvalid, const std::string &message);

// Throws a failure with this message.
[[noreturn]] void fail(const std::string &message);

// A value or, if `error` is not empty, the reason why there is none.
template <typename Value> struct Result {
    Value value;
    std::string error;
};

// Returns the text by which messages name an item that is being parsed.
inline const std::string &description(const std::string &text) {
    return text;
}

// Parses each item with `parse`, which returns a Result, and returns the values. Throws a usage
// error with a message for each item that is invalid.
template <typename Items, typename Parse> auto parseAll(const Items &items, Parse parse) {
    std::vector<decltype(parse(*items.begin()).value)> values;
    Strings messages;
    for (const auto &item : items) {
        auto [value, error] = parse(item);
        values.push_back(std::move(value));
        if (!error.empty()) {
            std::string message = description(item);
            message.append(message.empty() ? "" : ": ").append(error);
            messages.push_back(message);
        }
    }
    if (!messages.empty()) {
        throw CommandError{ExitStatus::usageError, messages};
    }
    return values;
}

// Escapes everything that is not printable ASCII, so that a text can neither fake an output line
// nor control the terminal: "\n", "\t", "\\", and "\xhh" for any other byte.
std::string escaped(std::string_view text);

// Undoes `escaped`. Backslashes that do not begin an escape are kept.
std::string unescaped(std::string_view line);

// Prints a message, escaped, as one line on standard error.
void printError(const std::string &message);

// Writes text to standard output. closeStandardOutput reports a failure.
void print(std::string_view text);

// Returns cells as comma-separated values, with a newline. Quotes them as RFC 4180 requires.
std::string formatCsvRow(const Strings &cells);

// Returns "; did you mean NAME?" with `before` and the name that is closest to a misspelt word, or
// "" if none is close. Ignores case.
std::string didYouMean(std::string_view word, const Strings &names, const std::string &before = "");
