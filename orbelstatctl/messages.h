// What the companion says: results on standard output, messages on standard error.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

enum ExitStatus {
    succeeded = 0,
    failed = 1,  // something could not be read, written, printed or saved
    refused = 2, // the command line or a value
};

// What ends a command. An empty message: all has been said.
struct Stop {
    ExitStatus status;
    std::string message;
};

// Throws Stop for a command line or a value that is wrong.
void refuseIf(bool isWrong, const std::string &message);

// Takes each word; complains of all for which that throws Stop, and then throws Stop itself.
void takeAll(const std::vector<std::string> &words,
             const std::function<void(const std::string &word)> &take);

// The text in printable ASCII, so that none can forge a line or drive a terminal: "\n", "\t", "\\",
// and "\xhh" for every other byte that is a control character or above 0x7E.
std::string escaped(std::string_view text);
std::string unescaped(std::string_view line); // what was escaped

// Prints a message, escaped, as one line on standard error.
void complain(const std::string &message);

// Hands text to standard output.
void print(std::string_view text);

// "; did you mean NAME?" with the name that is most like a misspelt word, after what stands before
// it; "" if none is like it.
std::string didYouMean(std::string_view word, const std::vector<std::string> &names,
                       const std::string &before = "");
