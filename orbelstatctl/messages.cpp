#include "orbelstatctl/messages.h"

#include "output/standard_streams.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <numeric>
#include <regex>

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

std::string unescaped(const std::string &line) {
    static const std::regex escape(R"(\\(n|t|\\|x([0-9a-f]{2})))");
    std::string text;
    auto end = line.begin();
    for (std::sregex_iterator match(line.begin(), line.end(), escape);
         match != std::sregex_iterator(); ++match) {
        text.append(end, (*match)[0].first);
        const char kind = *(*match)[1].first;
        text += kind == 'n'   ? '\n'
                : kind == 't' ? '\t'
                : kind == 'x' ? static_cast<char>(std::stoi((*match)[2], nullptr, 16))
                              : '\\';
        end = (*match)[0].second;
    }
    return text.append(end, line.end());
}

void complain(const std::string &message) {
    fprintf(stderr, "orbelstatctl: %s\n", escaped(message).c_str());
}

void print(std::string_view text) {
    fwrite(text.data(), 1, text.size(), stdout);
    noteLostOutput();
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
