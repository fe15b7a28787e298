#include "orbelstatctl/paths.h"

#include "orbelstatctl/messages.h"

#include <algorithm>
#include <charconv>

static bool parseNumber(std::string_view text, uint32_t &number) {
    const char *end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end;
}

// Understands what stands in brackets: "3", "0..3" or "*", which leaves first and last as they are.
static bool parseElements(std::string_view text, Step &step) {
    const size_t dots = std::min(text.find(".."), text.size());
    const bool isOne = dots == text.size() && text != "*";
    step.index = isOne ? Step::one : Step::range;
    return text == "*" || (parseNumber(text.substr(0, dots), step.first) &&
                           parseNumber(isOne ? text : text.substr(dots + 2), step.last));
}

Path parsePath(const std::string &text, const std::string &shown, const Node &start) {
    Path path;
    const Node *outer = &start;
    std::string_view rest = text;
    bool isMore = true;
    do {
        const std::string before = text.substr(0, text.size() - rest.size());
        const std::string name(rest.substr(0, rest.find_first_of(".[")));
        const auto node = std::ranges::find(outer->members, name, &Node::name);
        if (node == outer->members.end()) {
            std::vector<std::string> names;
            for (const Node &member : outer->members) {
                names.emplace_back(member.name);
            }
            throw Stop{refused, shown + ": no such field" + didYouMean(name, names, before)};
        }
        Step step = allOf(*node);
        rest.remove_prefix(name.size());
        if (rest.starts_with('[')) {
            const size_t end = std::min(rest.find(']'), rest.size() - 1);
            refuseIf(rest[end] != ']' || !parseElements(rest.substr(1, end - 1), step),
                     shown + ": no such field");
            refuseIf(node->count == 0, shown + ": " + before + name + " is no array");
            refuseIf(step.first > step.last || step.last > node->lastIndex(),
                     shown + ": " + before + name + " has the elements 0 to " +
                         std::to_string(node->lastIndex()));
            rest.remove_prefix(end + 1);
        }
        path.push_back(step);
        outer = &*node;
        isMore = !rest.empty();
        refuseIf(isMore && rest[0] != '.', shown + ": no such field");
        rest.remove_prefix(isMore ? 1 : 0);
    } while (isMore);
    return path;
}

std::string textOf(const Path &path, const std::string &bare) {
    std::string text;
    for (const Step &step : path) {
        text += (text.empty() ? "" : ".") + std::string(step.node->name);
        if (step.index == Step::none && step.node->count != 0 && !bare.empty()) {
            text += bare;
        } else if (step.node->count != 0) {
            text += '[' + std::to_string(step.first) +
                    (step.index == Step::one ? "" : ".." + std::to_string(step.last)) + ']';
        }
    }
    return text;
}

std::vector<Path> membersBelow(const Path &path, Kind kind) {
    const Node &node = path.empty() ? tree() : *path.back().node;
    if (node.isField()) {
        return node.is(kind) ? std::vector<Path>{path} : std::vector<Path>();
    }
    std::vector<Path> below;
    for (const Node &member : node.members) {
        Path longer = path;
        longer.push_back(allOf(member));
        std::ranges::move(membersBelow(longer, kind), std::back_inserter(below));
    }
    return below;
}

// Adds the fields that the steps of a path lead to from an element of a node; without steps, all.
static void addFields(const Node &node, std::span<const Step> steps, const Field &element,
                      std::vector<Field> &fields) {
    if (steps.empty()) {
        for (const Node &member : node.members) {
            const Step all = allOf(member);
            addFields(node, {&all, 1}, element, fields);
        }
        return;
    }
    const Node &member = *steps[0].node;
    for (uint32_t i = steps[0].first; i <= steps[0].last; ++i) {
        Field field{element.path, &member, element.indices, 0};
        field.path += (element.path.empty() ? "" : ".") + std::string(member.name);
        if (member.count != 0) {
            field.path += '[' + std::to_string(i) + ']';
            field.indices.push_back(i);
        }
        if (member.isField()) {
            field.offset = member.offsetAt(field.indices);
            fields.push_back(field);
        } else {
            addFields(member, steps.subspan(1), field, fields);
        }
    }
}

std::vector<Field> fieldsOf(const std::vector<Path> &paths, Kind kind) {
    std::vector<Field> fields;
    for (const Path &path : paths) {
        addFields(tree(), path, {}, fields);
    }
    std::erase_if(fields, [&](const Field &field) { return !field.node->is(kind); });
    return fields;
}

std::vector<Path> parsePaths(const std::vector<std::string> &words, Kind kind) {
    if (words.empty()) {
        return {Path()};
    }
    std::vector<Path> paths;
    takeAll(words, [&](const std::string &word) {
        paths.push_back(parsePath(word, word));
        refuseIf(membersBelow(paths.back(), kind).empty(),
                 word + (kind == Kind::number ? ": names no number"
                                              : ": names nothing that may be written"));
    });
    return paths;
}
