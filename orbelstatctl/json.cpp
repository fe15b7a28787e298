#include "orbelstatctl/commands.h"

#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

// Converts Latin-1 to UTF-8: each byte becomes the code point with that number.
static std::string toUtf8(const std::string &text) {
    std::string utf8;
    for (const char character : text) {
        const auto byte = static_cast<uint8_t>(character);
        utf8.append(byte < 0x80 ? 0 : 1, static_cast<char>(0xC0 | byte >> 6));
        utf8 += static_cast<char>(byte < 0x80 ? byte : 0x80 | (byte & 0x3F));
    }
    return utf8;
}

// Returns the JSON value of a field; null if it is not finite or cannot be read.
static Json readJson(Source &source, const Field &field) {
    const auto value = source.readValue(field);
    if (!value) {
        return {};
    }
    if (field.node().isText()) {
        return toUtf8(unescaped(*value));
    }
    if (field.node().isBytes()) {
        return *value;
    }
    const Json number = Json::parse(*value, nullptr, false);
    return number.is_discarded() ? Json() : *value == "-0" ? Json(-0.0) : number;
}

// Returns the field's value in the document, whose root is the value of `path`. Steps of `path` add
// no objects. An array step of `path` adds an array unless it has a single index, such as [3].
static Json &findOrAddJson(Json &document, const Path &path, const Field &field) {
    Json *json = &document;
    for (size_t i = 0; i < field.steps.size(); ++i) {
        const Step &step = field.steps[i];
        const bool isBelow = i >= path.size();
        if (isBelow) {
            json = &(*json)[std::string(step.node->name)];
        }
        if (step.node->count != 0 && (isBelow || path[i].index != Step::one)) {
            json = &(*json)[size_t{step.first} - (isBelow ? 0 : path[i].first)];
        }
    }
    return *json;
}

ExitStatus runJson(const Options &arguments) {
    const Path path = parsePaths(arguments.operands, Kind::any)[0];
    Source source(arguments.last("--from"));
    Json document;
    for (const Field &field : expandPaths({path})) {
        findOrAddJson(document, path, field) = readJson(source, field);
    }
    if (source.hasFailed()) {
        return ExitStatus::failure;
    }
    print(document.dump(2, ' ', true) + '\n');
    return ExitStatus::success;
}

const char jsonHelp[] = R"(Usage: orbelstatctl [--from DIRECTORY] json [PATH]

Print one JSON document, nested like the paths; with PATH, only its value. Prints
nothing if a section cannot be read.

Examples:
  orbelstatctl json 'psu[0..3]'
  orbelstatctl json upm.policies | jq '.[] | select(.state == 1) | .name'
)";
