#include "orbelstatctl/messages.h"

#include "output/standard_streams.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <numeric>

void refuseIf(bool isWrong, const std::string &message) {
    if (isWrong) {
        throw Stop{refused, message};
    }
}

void takeAll(const std::vector<std::string> &words,
             const std::function<void(const std::string &word)> &take) {
    bool areRight = true;
    for (const std::string &word : words) {
        try {
            take(word);
        } catch (const Stop &stop) {
            complain(stop.message);
            areRight = false;
        }
    }
    refuseIf(!areRight, "");
}

std::string escaped(std::string_view text) {
    std::string line;
    for (const char character : text) {
        char code[8] = {character};
        if (character == '\\') {
            snprintf(code, sizeof code, "\\\\");
        } else if (character == '\n' || character == '\t') {
            snprintf(code, sizeof code, "\\%c", character == '\n' ? 'n' : 't');
        } else if (character < ' ' || character > '~') {
            snprintf(code, sizeof code, "\\x%02x", static_cast<uint8_t>(character));
        }
        line += code;
    }
    return line;
}

std::string unescaped(std::string_view line) {
    std::string text;
    while (!line.empty()) {
        const char *digits = line.data() + 2;
        uint8_t byte = 0;
        size_t length = 2;
        if (line.starts_with("\\n") || line.starts_with("\\t")) {
            text += line[1] == 'n' ? '\n' : '\t';
        } else if (line.starts_with("\\\\")) {
            text += '\\';
        } else if (line.starts_with("\\x") && line.size() >= 4 &&
                   std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            text += static_cast<char>(byte);
            length = 4;
        } else {
            text += line[0];
            length = 1;
        }
        line.remove_prefix(length);
    }
    return text;
}

void complain(const std::string &message) {
    fprintf(stderr, "orbelstatctl: %s\n", escaped(message).c_str());
}

void print(std::string_view text) {
    fwrite(text.data(), 1, text.size(), stdout);
    recordOutputError();
}

// How many letters have to be put in, taken out or changed; case does not count.
static size_t distance(std::string_view left, std::string_view right) {
    std::vector<size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const char character : left) {
        size_t diagonal = row[0]++;
        for (size_t i = 0; i < right.size(); ++i) {
            const size_t changed = diagonal + (tolower(character) == tolower(right[i]) ? 0 : 1);
            diagonal = row[i + 1];
            row[i + 1] = std::min({changed, row[i] + 1, diagonal + 1});
        }
    }
    return row.back();
}

std::string didYouMean(std::string_view word, const std::vector<std::string> &names,
                       const std::string &before) {
    const auto best = std::ranges::min_element(
        names, {}, [&](const std::string &name) { return distance(word, name); });
    const bool isLike =
        best != names.end() && distance(word, *best) <= std::max<size_t>(2, best->size() / 3);
    return isLike ? "; did you mean " + before + *best + '?' : "";
}
