#include "orbelstatctl/paths.h"

#include "orbelstatctl/messages.h"

#include <algorithm>
#include <regex>

Path parsePath(const std::string &text, const std::string &shown, const Node &start) {
    // A name, its brackets with "*", one index or two, and the point before the next step.
    static const std::regex form(R"(([^.[]*)(\[(?:(\*)|(\d{1,9})(?:\.\.(\d{1,9}))?)\])?(\.|$))");
    Path path;
    const Node *outer = &start;
    auto rest = text.begin();
    std::smatch match;
    do {
        const auto begin = static_cast<size_t>(rest - text.begin());
        const std::string before = text.substr(0, begin);
        const std::string name = text.substr(begin, text.find_first_of(".[", begin) - begin);
        const auto node = std::ranges::find(outer->members, name, &Node::name);
        if (node == outer->members.end()) {
            std::vector<std::string> names;
            for (const Node &member : outer->members) {
                names.emplace_back(member.name);
            }
            throw Stop{refused, shown + ": no such field" + didYouMean(name, names, before)};
        }
        // Only now, since it takes stack for each character of the name.
        const auto flags = std::regex_constants::match_continuous;
        refuseIf(!std::regex_search(rest, text.end(), match, form, flags),
                 shown + ": no such field");
        const bool isIndexed = match[2].matched;
        const bool isOne = match[4].matched && !match[5].matched;
        refuseIf(isIndexed && node->count == 0, shown + ": " + before + name + " is no array");
        Step step = allOf(*node);
        step.index = isOne ? Step::one : isIndexed ? Step::range : Step::none;
        if (match[4].matched) {
            step.first = static_cast<uint32_t>(std::stoul(match[4]));
            step.last = static_cast<uint32_t>(std::stoul(match[isOne ? 4 : 5]));
        }
        refuseIf(step.first > step.last || step.last > node->lastIndex(),
                 shown + ": " + before + name + " has the elements 0 to " +
                     std::to_string(node->lastIndex()));
        path.push_back(step);
        outer = &*node;
        rest = match[0].second;
    } while (match[6].length() != 0);
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

std::vector<Path> membersBelow(const Path &path) {
    const Node &node = path.empty() ? tree() : *path.back().node;
    if (node.isField()) {
        return {path};
    }
    std::vector<Path> below;
    for (const Node &member : node.members) {
        Path longer = path;
        longer.push_back(allOf(member));
        std::ranges::move(membersBelow(longer), std::back_inserter(below));
    }
    return below;
}

// Adds the fields below an element of a node that paths name. The paths lead to the element, which
// is `depth` steps below the roots; `element` has its path and its indices.
static void addFields(const Node &node, size_t depth, const std::vector<Path> &paths,
                      const Field &element, std::vector<Field> &fields) {
    for (const Node &member : node.members) {
        for (uint32_t i = 0; i <= member.lastIndex(); ++i) {
            std::vector<Path> leading;
            std::ranges::copy_if(paths, std::back_inserter(leading), [&](const Path &path) {
                return path.size() <= depth || (path[depth].node == &member &&
                                                path[depth].first <= i && i <= path[depth].last);
            });
            if (leading.empty()) {
                continue;
            }
            Field field{element.path, &member, element.indices, 0};
            field.path += (depth == 0 ? "" : ".") + std::string(member.name);
            if (member.count != 0) {
                field.path += '[' + std::to_string(i) + ']';
                field.indices.push_back(i);
            }
            if (member.isField()) {
                field.offset = member.offsetAt(field.indices);
                fields.push_back(field);
            } else {
                addFields(member, depth + 1, leading, field, fields);
            }
        }
    }
}

std::vector<Field> fieldsOf(const std::vector<Path> &paths) {
    std::vector<Field> fields;
    addFields(tree(), 0, paths, {}, fields);
    return fields;
}

std::vector<Path> parsePaths(const std::vector<std::string> &words, bool (Node::*isWanted)() const,
                             const char *lack) {
    std::vector<Path> paths(words.empty() ? 1 : 0);
    takeAll(words, [&](const std::string &word) {
        paths.push_back(parsePath(word, word));
        const auto isMember = [&](const Path &path) { return (path.back().node->*isWanted)(); };
        refuseIf(std::ranges::none_of(membersBelow(paths.back()), isMember), word + ": " + lack);
    });
    return paths;
}
