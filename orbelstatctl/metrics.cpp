#include "orbelstatctl/commands.h"

// "{policies="3"}": each index of a field, named after its array.
static std::string labelsOf(const Path &member, const Field &field) {
    std::string labels;
    auto index = field.indices.begin();
    for (const Step &step : member) {
        if (step.node->count != 0) {
            labels += (labels.empty() ? "{" : ",") + std::string(step.node->name) + "=\"" +
                      std::to_string(*index++) + '"';
        }
    }
    return labels.empty() ? "" : labels + '}';
}

int printMetrics(Source &source, const Words &words) {
    static const std::map<std::string, std::string> spellings = {
        {"inf", "+Inf"}, {"-inf", "-Inf"}, {"nan", "NaN"}, {"-nan", "NaN"}};
    // Of each member the fields by their offsets: all in a row, and each once, however often named.
    std::map<const Node *, std::map<size_t, Field>> fields;
    for (const Field &field : fieldsOf(parsePaths(words, Kind::number), Kind::number)) {
        if (source.valueOf(field)) {
            fields[field.node].emplace(field.offset, field);
        }
    }
    for (const Path &member : membersBelow({}, Kind::number)) {
        const auto named = fields.find(member.back().node);
        if (named == fields.end()) {
            continue;
        }
        std::string name = "orbelstat";
        for (const Step &step : member) {
            name.append("_").append(step.node->name);
        }
        print("# HELP " + name + ' ' + textOf(member) + '\n');
        print("# TYPE " + name + " gauge\n");
        for (const auto &[offset, field] : named->second) {
            const std::string value = *source.valueOf(field);
            const auto spelling = spellings.find(value);
            print(name + labelsOf(member, field) + ' ' +
                  (spelling == spellings.end() ? value : spelling->second) + '\n');
        }
    }
    return source.hasFailed() ? failed : succeeded;
}
