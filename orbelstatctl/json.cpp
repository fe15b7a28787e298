#include "orbelstatctl/commands.h"
#include "orbelstatctl/values.h"

#include <nlohmann/json.hpp>
#include <span>

using Json = nlohmann::ordered_json;
using Steps = std::span<const Step>;

// A string in which every byte stands for the code point of its number.
static Json textJson(const std::string &text) {
    std::string utf8;
    for (const char character : text) {
        const auto byte = static_cast<uint8_t>(character);
        if (byte >= 0x80) {
            utf8 += static_cast<char>(0xC0 | byte >> 6);
        }
        utf8 += static_cast<char>(byte < 0x80 ? byte : 0x80 | (byte & 0x3F));
    }
    return utf8;
}

// A number is written as everywhere else; what is not finite becomes null.
static Json valueJson(const Row &row, const uint8_t *at) {
    if (row.type == Type::text) {
        return textJson(textAt(row, at));
    }
    const std::string value = valueOf(row, at);
    const Json number = value == "-0" ? Json(-0.0) : Json::parse(value, nullptr, false);
    return row.type == Type::bytes ? Json(value) : number.is_discarded() ? Json() : number;
}

static Json jsonOf(Source &source, Steps path, std::vector<uint32_t> indices);

// Of one element of an array, or of what is no array: what the rest of the path names in it. Null
// if that cannot be read.
static Json elementJson(Source &source, const Node &node, Steps rest,
                        const std::vector<uint32_t> &indices) {
    if (!rest.empty()) {
        return jsonOf(source, rest, indices);
    }
    if (node.isPolicyName()) {
        return textJson(source.policyName(indices.at(0)));
    }
    if (node.isField()) {
        const uint8_t *bytes = source.bytesOf(node.section);
        return bytes == nullptr ? Json() : valueJson(*node.row, bytes + node.offsetAt(indices));
    }
    Json object;
    for (const Node &member : node.members) {
        const Step all = allOf(member);
        object[std::string(member.name)] = jsonOf(source, {&all, 1}, indices);
    }
    return object;
}

// Of what a path names: an array, unless it names one element or what is no array.
static Json jsonOf(Source &source, Steps path, std::vector<uint32_t> indices) {
    const auto &[node, index, first, last] = path[0];
    if (node->count == 0) {
        return elementJson(source, *node, path.subspan(1), indices);
    }
    Json array = Json::array();
    indices.push_back(first);
    for (; indices.back() <= last; ++indices.back()) {
        array.push_back(elementJson(source, *node, path.subspan(1), indices));
    }
    return index == Step::one ? array[0] : array;
}

int printJson(Source &source, const std::string &path) {
    const Path steps = path.empty() ? Path() : parsePath(path, path);
    const Json document = elementJson(source, tree(), steps, {});
    if (source.hasFailed()) {
        return failed;
    }
    print(document.dump(2, ' ', true) + '\n');
    return succeeded;
}
