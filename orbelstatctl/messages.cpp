#include "orbelstatctl/messages.h"

#include "output/standard_streams.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <numeric>

void rejectIf(bool isInvalid, const std::string &message) {
    if (isInvalid) {
        throw CommandError{ExitStatus::usageError, {message}};
    }
}

void fail(const std::string &message) {
    throw CommandError{ExitStatus::failure, {message}};
}

std::string escaped(std::string_view text) {
    std::string line;
    for (const char character : text) {
        char code[8] = {character};
        if (const size_t place = std::string_view("\\\n\t").find(character);
            place != std::string_view::npos) {
            snprintf(code, sizeof code, "\\%c", "\\nt"[place]);
        } else if (character < ' ' || character > '~') {
            snprintf(code, sizeof code, "\\x%02x", static_cast<uint8_t>(character));
        }
        line += code;
    }
    return line;
}

std::string unescaped(std::string_view line) {
    std::string text;
    for (; !line.empty(); line.remove_prefix(1)) {
        const char kind = line[0] == '\\' && line.size() > 1 ? line[1] : '\0';
        uint8_t byte = 0;
        if (kind == 'x' && line.size() > 3 &&
            std::from_chars(&line[2], &line[2] + 2, byte, 16).ptr == &line[2] + 2) {
            text += static_cast<char>(byte);
            line.remove_prefix(3);
        } else if (kind == 'n' || kind == 't' || kind == '\\') {
            text += kind == 'n' ? '\n' : kind == 't' ? '\t' : '\\';
            line.remove_prefix(1);
        } else {
            text += line[0];
        }
    }
    return text;
}

void printError(const std::string &message) {
    // One call, so that messages of several processes do not mix within a line.
    fputs(("orbelstatctl: " + escaped(message) + '\n').c_str(), stderr);
}

void print(std::string_view text) {
    fwrite(text.data(), 1, text.size(), stdout);
    recordOutputError();
}

std::string formatCsvRow(const Strings &cells) {
    std::string line;
    for (const std::string &cell : cells) {
        const bool isQuoted = cell.find_first_of(",\"\r\n") != std::string::npos;
        line += &cell == cells.data() ? "" : ",";
        line += isQuoted ? "\"" : "";
        for (const char character : cell) {
            line.append(character == '"' ? 2 : 1, character);
        }
        line += isQuoted ? "\"" : "";
    }
    return line + '\n';
}

// Returns the Levenshtein distance, ignoring case.
static size_t editDistance(std::string_view left, std::string_view right) {
    const auto lower = [](char letter) {
        return 'A' <= letter && letter <= 'Z' ? letter + 32 : letter;
    };
    std::vector<size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const char character : left) {
        size_t diagonal = row[0]++;
        for (size_t i = 0; i < right.size(); ++i) {
            const size_t changed = diagonal + (lower(character) == lower(right[i]) ? 0 : 1);
            diagonal = row[i + 1];
            row[i + 1] = std::min({changed, row[i] + 1, diagonal + 1});
        }
    }
    return row.back();
}

std::string didYouMean(std::string_view word, const Strings &names, const std::string &before) {
    std::string best;
    size_t least = SIZE_MAX;
    for (const std::string &name : names) {
        const size_t limit = std::max<size_t>(name.size() < 4 ? 1 : 2, name.size() / 3);
        const bool isTooLong = word.size() > name.size() + limit; // perhaps by a megabyte
        const size_t distance = isTooLong ? SIZE_MAX : editDistance(word, name);
        best = distance <= limit && distance < least ? name : best;
        least = std::min(distance, least);
    }
    return best.empty() ? "" : "; did you mean " + before + best + '?';
}
