#include "orbelstatctl/paths.h"

#include <charconv>

static constexpr char indexForms[] = "; use [0], [0..3] or [*]";

static bool parseIndex(std::string_view text, uint32_t &index) {
    const char *end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, index);
    return error == std::errc() && rest == end;
}

// Parses the text between brackets: "3", "0..3" or "*". Returns false if it is something else.
static bool parseElements(std::string_view text, Step &step) {
    const size_t dots = std::min(text.find(".."), text.size());
    const bool isOne = dots == text.size() && text != "*";
    step.index = isOne ? Step::one : Step::range;
    return text == "*" || (parseIndex(text.substr(0, dots), step.first) &&
                           parseIndex(isOne ? text : text.substr(dots + 2), step.last));
}

// Returns the first path to a node with this name below `node`, in list order; "" if there is none.
static std::string findName(const Node &node, std::string_view name) {
    for (const Node &member : node.members) {
        std::string path(member.name);
        if (member.name == name) {
            return path;
        }
        if (const std::string below = findName(member, name); !below.empty()) {
            return path.append(".").append(below);
        }
    }
    return "";
}

// Returns why a name is not a member of `parent`. `before` is the path up to the name.
static std::string unknownNameError(std::string_view name, const std::string &before,
                                    const Node &parent, const Node &start) {
    uint32_t index = 0;
    if (parent.count != 0 && parseIndex(name, index)) {
        return "invalid index ." + std::string(name) + indexForms;
    }
    Strings siblings;
    for (const Node &member : parent.members) {
        siblings.emplace_back(member.name);
    }
    const std::string hint = didYouMean(name, siblings, before);
    const std::string other = hint.empty() ? findName(start, name) : "";
    return "no such field" + (other.empty() ? hint : "; did you mean " + other + '?');
}

// Parses an index or a range in brackets of the array `name`. Returns why it is invalid, or "".
static std::string parseBrackets(const std::string &text, Step &step, const std::string &name) {
    const uint32_t last = step.node->lastIndex();
    if (step.node->count == 0) {
        return name + " is not an array";
    }
    if (!text.ends_with(']') || !parseElements(text.substr(1, text.size() - 2), step)) {
        return "invalid index " + text + indexForms;
    }
    if (std::max(step.first, step.last) > last) {
        return "index out of range, " + name + " has elements 0 to " + std::to_string(last);
    }
    return step.first > step.last ? "range runs backwards" : "";
}

Result<Path> parsePath(std::string_view text, const Node &start) {
    if (text.empty()) {
        return {{}, "empty path"};
    }
    Path path;
    const Node *parent = &start;
    for (size_t at = 0; at <= text.size();) {
        const size_t end = std::min(text.find_first_of(".[", at), text.size());
        const std::string_view name = text.substr(at, end - at);
        const auto node = std::ranges::find(parent->members, name, &Node::name);
        if (node == parent->members.end()) {
            return {{}, unknownNameError(name, std::string(text.substr(0, at)), *parent, start)};
        }
        path.push_back({&*node});
        at = end;
        std::string error;
        if (text.substr(end).starts_with('[')) {
            at = std::min(text.find(']', end), text.size() - 1) + 1;
            error = parseBrackets(std::string(text.substr(end, at - end)), path.back(),
                                  std::string(text.substr(0, end)));
        }
        if (error.empty() && at < text.size() && text[at] != '.') {
            error = "no such field";
        }
        if (!error.empty()) {
            return {{}, error};
        }
        ++at; // after the dot
        parent = &*node;
    }
    return {path, ""};
}

std::vector<Path> parsePaths(const Strings &texts, Kind kind) {
    if (texts.empty()) {
        return {Path()};
    }
    return parseAll(texts, [kind](const std::string &text) {
        Result<Path> path = parsePath(text);
        if (path.error.empty() && expandPaths({path.value}, kind, Expansion::members).empty()) {
            path.error = kind == Kind::writable ? "contains no writable field"
                                                : "contains neither a number nor text";
        }
        return path;
    });
}

std::string formatPath(std::span<const Step> path, const std::string &bare) {
    std::string text;
    for (const Step &step : path) {
        text.append(text.empty() ? "" : ".").append(step.node->name);
        if (step.isBareArray() && !bare.empty()) {
            text += bare;
        } else if (step.node->count != 0) {
            text += '[' + std::to_string(step.first) +
                    (step.index == Step::one ? "" : ".." + std::to_string(step.last)) + ']';
        }
    }
    return text;
}

// Adds the fields that the remaining steps select below `node`, the end of the path `done`.
static void expand(Path &done, const Node &node, std::span<const Step> rest, Expansion expansion,
                   std::vector<Path> &fields) {
    if (node.isField()) {
        fields.push_back(done);
        return;
    }
    if (rest.empty()) {
        for (const Node &member : node.members) {
            const Step all{&member};
            expand(done, node, {&all, 1}, expansion, fields);
        }
        return;
    }
    const Step &step = rest[0];
    const bool isSplit = step.node->count != 0 && expansion == Expansion::elements;
    for (uint32_t i = step.first; i <= (isSplit ? step.last : step.first); ++i) {
        done.push_back(isSplit ? Step{step.node, Step::one, i, i} : step);
        expand(done, *step.node, rest.subspan(1), expansion, fields);
        done.pop_back();
    }
}

std::vector<Field> expandPaths(const std::vector<Path> &paths, Kind kind, Expansion expansion) {
    std::vector<Path> expanded;
    for (const Path &path : paths) {
        Path done;
        expand(done, tree(), path, expansion, expanded);
    }
    std::vector<Field> fields;
    for (const Path &steps : expanded) {
        const Node &node = *steps.back().node;
        if (node.is(kind)) {
            Field field{steps, formatPath(steps), node.offset};
            auto stride = node.strides.begin();
            for (const Step &step : steps) {
                field.offset += step.node->count != 0 ? step.first * *stride++ : 0;
            }
            fields.push_back(std::move(field));
        }
    }
    return fields;
}
