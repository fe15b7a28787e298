#include "orbelstatctl/commands.h"

// Returns "orbelstat_upm_policies_state": the names in a path.
static std::string metricName(const Path &member) {
    std::string name = "orbelstat";
    for (const Step &step : member) {
        name.append("_").append(step.node->name);
    }
    return member.back().node->isText() ? name + "_info" : name;
}

static void addLabel(std::string &labels, std::string_view name, const std::string &value) {
    labels.append(labels.empty() ? "{" : ",").append(name).append("=\"" + value + '"');
}

// Returns "{policies="3"} 1": a label for each index, named after its array, or "index" for an
// array of plain values, then the value. Text is one more label, and its value is 1.
static std::string formatSample(const Field &field, const std::string &value) {
    std::string labels;
    for (const Step &step : field.steps) {
        if (step.node->count != 0) {
            addLabel(labels, step.node->isField() ? "index" : step.node->name,
                     std::to_string(step.first));
        }
    }
    std::string number = value == "inf" ? "+Inf" : value == "-inf" ? "-Inf" : value;
    if (field.node().isText()) {
        std::string quoted;
        for (const char character : value) {
            quoted += character == '\\' || character == '"' ? "\\" : "";
            quoted += character;
        }
        addLabel(labels, field.node().name, quoted);
        number = '1';
    } else if (value.ends_with("nan")) {
        number = "NaN";
    }
    return (labels.empty() ? "" : labels + '}') + ' ' + number + '\n';
}

static void printHeading(const std::string &name, const std::string &help) {
    print("# HELP " + name + ' ' + help + "\n# TYPE " + name + " gauge\n");
}

ExitStatus runMetrics(const Options &arguments) {
    const std::vector<Path> paths = parsePaths(arguments.operands, Kind::metric);
    Source source(arguments.last("--from"));
    // The samples of each member by their offsets, so that each appears once.
    std::map<const Node *, std::map<size_t, std::string>> samples;
    std::map<int32_t, bool> readable; // by section number
    for (const Field &field : expandPaths(paths, Kind::metric)) {
        const auto value = source.readValue(field);
        if (!field.node().isPolicyName) {
            readable[field.node().section.id] = value.has_value();
        }
        if (value) {
            samples[&field.node()][field.offset] = formatSample(field, *value);
        }
    }
    if (!readable.empty()) {
        printHeading("orbelstat_section_readable", "whether a section could be read");
    }
    for (const auto &[section, isRead] : readable) {
        print("orbelstat_section_readable{section=\"" + std::to_string(section) + "\"} " +
              (isRead ? "1\n" : "0\n"));
    }
    for (const Field &member : expandPaths({Path()}, Kind::metric, Expansion::members)) {
        const std::string name = metricName(member.steps);
        if (samples.contains(&member.node())) {
            printHeading(name, member.path);
        }
        for (const auto &[offset, sample] : samples[&member.node()]) {
            print(name + sample);
        }
    }
    return ExitStatus::success;
}

const char metricsHelp[] = R"(Usage: orbelstatctl [--from DIRECTORY] metrics [PATH ...]

Print fields in the Prometheus text format. If a section cannot be read, its
orbelstat_section_readable is 0 and its fields are left out.

Examples:
  orbelstatctl metrics 'psu[*].Pout' upm.policies
  orbelstatctl metrics >orbelstat.tmp && mv orbelstat.tmp orbelstat.prom
)";
