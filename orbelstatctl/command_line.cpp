#include "orbelstatctl/commands.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <filesystem>
#include <functional>
#include <map>

namespace {

// Adds operands. CLI11 would take "[a,b]" apart as a list; as no path is like that, it is refused.
CLI::Option *addWords(CLI::App *command, const char *name, Words &words, const char *help) {
    command->validate_positionals();
    return command->add_option(name, words, help)
        ->type_name("")
        ->check([](const std::string &word) { return word.starts_with('[') ? "no path" : ""; });
}

CLI::Option *addWord(CLI::App *command, const char *name, std::string &word, const char *help) {
    return command->add_option(name, word, help)->type_name("");
}

// Why a command line is refused, in one line.
std::string complaintOf(const CLI::App &app, const CLI::ParseError &error) {
    const std::vector<std::string> unexpected = app.remaining(true);
    const bool hasCommand = !app.get_subcommands().empty();
    if (hasCommand || unexpected.empty()) {
        return unexpected.empty() ? error.what() : unexpected[0] + ": not expected";
    }
    std::vector<std::string> names;
    for (const CLI::App *command : app.get_subcommands({})) {
        names.push_back(command->get_name());
    }
    return unexpected[0] + ": no such command" + didYouMean(unexpected[0], names);
}

} // namespace

int runCompanion(int argc, const char *const *argv) {
    CLI::App app("Looks into the power-management shared memory and changes it, field by field.",
                 "orbelstatctl");
    app.require_subcommand(1);
    app.footer("A PATH names a field, a group or an array: upm.policies[3].state, psu[0..3], "
               "reporting.");
    app.set_version_flag("--version", "orbelstatctl " ORBELSTATCTL_VERSION);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    std::string from;
    app.add_option("--from", from, "Read a capture, not the live memory")->type_name("DIRECTORY");
    const auto add = [&](const char *name, const char *help) {
        return app.add_subcommand(name, help)->group("Commands")->fallthrough();
    };
    Words words;
    static constexpr char everything[] = "Fields, groups or arrays; all if none is named";

    CLI::App *list = add("list", "Print paths, types, places and bounds");
    bool perElement = false;
    bool onlyWritable = false;
    list->add_flag("-a", perElement, "A line for each element of an array");
    list->add_flag("-w", onlyWritable, "Only what may be written");
    addWords(list, "PATH", words, everything);

    CLI::App *get = add("get", "Print values as PATH=VALUE");
    bool onlyValues = false;
    get->add_flag("-n", onlyValues, "The values alone");
    get->add_flag("-w", onlyWritable, "Only what set takes back");
    addWords(get, "PATH", words, everything);

    CLI::App *set = add("set", "Write fields, after a check of all of them");
    bool isDryRun = false;
    set->add_flag("--dry-run", isDryRun, "Check and show, but write nothing");
    addWords(set, "PATH=VALUE", words, "Assignments, or - for the lines of standard input")
        ->required();

    CLI::App *json = add("json", "Print one JSON document");
    std::string path;
    addWord(json, "PATH", path, "A field, group or array; all if none is named");

    CLI::App *table = add("table", "Print an array of records, a row for each");
    addWord(table, "PATH", path, "The array, or a range of it")->required();
    addWords(table, "FIELD", words, "The columns; all plain members if none is named");

    CLI::App *diff = add("diff", "Compare captures: status 0 the same, 1 different, 2 trouble");
    std::string after;
    addWord(diff, "BEFORE", path, "A capture's directory")
        ->required()
        ->check(CLI::ExistingDirectory);
    addWord(diff, "AFTER", after, "Another; the live memory if it is left out")
        ->check(CLI::ExistingDirectory);

    CLI::App *watch = add("watch", "Print changes as they happen");
    double seconds = 1;
    uint64_t count = 0;
    bool isCsv = false;
    watch->add_option("-i", seconds, "From one look to the next; 1 if left out")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.001, 1e6));
    watch->add_option("-n", count, "How many looks; no end if left out")
        ->type_name("COUNT")
        ->check(
            [](const std::string &word) { return word[0] == '0' ? "not from 1 up: " + word : ""; })
        ->check(CLI::Range(1, 1000000000));
    watch->add_flag("--csv", isCsv, "A row of comma-separated values for each look");
    addWords(watch, "PATH", words, "Fields, groups or arrays")->required();

    CLI::App *metrics = add("metrics", "Print numbers in the text format of Prometheus");
    addWords(metrics, "PATH", words, everything);

    CLI::App *save = add("save", "Save a capture of all sections");
    addWord(save, "DIRECTORY", path, "A new directory")->required();

    try {
        app.parse(argc, argv);
    } catch (const CLI::Success &asked) {
        print(asked.get_name() == "CallForVersion" ? asked.what() + std::string("\n") : app.help());
        return succeeded;
    } catch (const CLI::ParseError &error) {
        throw Stop{refused, complaintOf(app, error) + "; see orbelstatctl --help"};
    }
    const CLI::App *command = app.get_subcommands()[0];
    const bool isLive = command == set || command == diff || command == watch || command == save;
    refuseIf(std::isnan(seconds), "-i: nan is no number of seconds");
    refuseIf(json->count("PATH") != 0 && path.empty(), ": no such field");
    refuseIf(isLive && app.count("--from") != 0, "--from: not for " + command->get_name());
    if (app.count("--from") != 0 && !std::filesystem::is_directory(from)) {
        throw Stop{failed, "--from: no directory: " + from};
    }
    Source source(from);
    const std::map<const CLI::App *, std::function<int()>> runs = {
        {list, [&] { return listFields(words, perElement, onlyWritable); }},
        {get, [&] { return getFields(source, words, onlyValues, onlyWritable); }},
        {set, [&] { return setFields(words, isDryRun); }},
        {json, [&] { return printJson(source, path); }},
        {table, [&] { return printTable(source, path, words); }},
        {diff, [&] { return compareCaptures(path, after); }},
        {watch, [&] { return watchFields(words, seconds, count, isCsv); }},
        {metrics, [&] { return printMetrics(source, words); }},
        {save, [&] { return saveCapture(path); }},
    };
    return runs.at(command)();
}
