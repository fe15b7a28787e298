#include "orbelstatctl/commands.h"
#include "orbelstatctl/signals.h"

#include <cmath>

// PATH=VALUE and the like.
struct Condition {
    std::string text;
    std::vector<Field> fields; // all must satisfy it
    std::string comparison;    // =, !=, <, <=, > or >=
    std::string value;
};

// Compares two integers of any size, in decimal.
static std::partial_ordering compareIntegers(std::string_view left, std::string_view right) {
    if (left.starts_with('-') && right.starts_with('-')) {
        return compareIntegers(right.substr(1), left.substr(1));
    }
    // Returns the number of significant digits, negative for a negative number, and the digits.
    const auto key = [](std::string_view text) {
        const auto digits = text.substr(std::min(text.find_first_not_of("-0"), text.size()));
        const auto size = static_cast<ptrdiff_t>(digits.size());
        return std::pair(text.starts_with('-') ? -size : size, digits);
    };
    return key(left) <=> key(right);
}

// Whether a value, as `get -n` prints it, satisfies a condition. A NaN satisfies only "!=".
static bool satisfies(const std::string &value, const Condition &condition, const Node &node) {
    const auto &[text, fields, comparison, expected] = condition;
    const std::partial_ordering order = !node.isNumber() ? value <=> expected
                                        : isFloat(*node.row)
                                            ? parseFloat(value).value <=> parseFloat(expected).value
                                            : compareIntegers(value, expected);
    return comparison == "="    ? std::is_eq(order)
           : comparison == "!=" ? std::is_neq(order)
           : comparison == "<"  ? std::is_lt(order)
           : comparison == "<=" ? std::is_lteq(order)
           : comparison == ">"  ? std::is_gt(order)
                                : std::is_gteq(order);
}

// Returns why a field cannot be compared with a value in this way; "" if it can.
static std::string comparisonError(const Node &node, const Condition &condition) {
    if (!node.isField()) {
        return "is a group; compare one of its fields";
    }
    if (!node.isNumber()) {
        return condition.comparison == "=" || condition.comparison == "!="
                   ? ""
                   : "text and bytes can only be compared with = and !=";
    }
    if (!isFloat(*node.row)) {
        return isInteger(condition.value) ? "" : "not an integer: " + condition.value;
    }
    const auto [number, error] = parseFloat(condition.value);
    return std::isnan(number) ? "NaN cannot be compared" : error;
}

static Result<Condition> parseCondition(const std::string &text) {
    const size_t begin = std::min(text.find_first_of("=!<>"), text.size());
    const bool hasEquals = begin + 1 < text.size() && text[begin] != '=' && text[begin + 1] == '=';
    const std::string comparison = text.substr(begin, hasEquals ? 2 : 1);
    if (begin == 0 || comparison.empty() || comparison == "!") {
        return {{}, "not a condition"};
    }
    const auto [path, error] = parsePath(text.substr(0, begin));
    if (!error.empty()) {
        return {{}, error};
    }
    const Condition condition{text, expandPaths({path}), comparison,
                              text.substr(begin + comparison.size())};
    return {condition, comparisonError(*path.back().node, condition)};
}

// Takes a sample. Returns a line for each condition that does not hold, with the first field that
// does not satisfy it: "psu[*].Pin>=0: psu[2].Pin is -1".
static Strings checkAll(const std::vector<Condition> &conditions, Source &source) {
    source.invalidate();
    Strings failures;
    for (const Condition &condition : conditions) {
        for (const Field &field : condition.fields) {
            const auto value = source.readValue(field);
            if (!value || !satisfies(*value, condition, field.node())) {
                const std::string name = condition.fields.size() > 1 ? field.path + ' ' : "";
                failures.push_back(
                    condition.text + ": " +
                    (value ? name + "is " + *value : source.errorOf(field.node().section)));
                break;
            }
        }
    }
    return failures;
}

ExitStatus runWait(const Options &arguments) {
    const auto conditions = parseAll(arguments.operands, parseCondition);
    const Clock::duration interval = toDuration(arguments.number("-i", 0.001, 1e6, 0.1));
    const auto limit = arguments.has("-t") ? toDuration(arguments.number("-t", 0, 1e6, 0))
                                           : Clock::duration::max();
    Source source("", ReadErrors::keep);
    catchInterrupts();
    const auto start = Clock::now();
    while (!isInterrupted()) {
        const bool isLast = Clock::now() - start >= limit;
        const Strings failures = checkAll(conditions, source);
        if (failures.empty()) {
            return ExitStatus::success;
        }
        if (isLast) {
            std::ranges::for_each(failures, printError);
            return ExitStatus::failure;
        }
        const int64_t tick = (Clock::now() - start) / interval + 1;
        sleepUntil(start + std::min(tick * interval, limit), OnReaderExit::ignore);
    }
    return ExitStatus::failure;
}

const char waitHelp[] = R"(Usage: orbelstatctl wait [-i SECONDS] [-t SECONDS] CONDITION ...

Take samples until all conditions hold in one of them. When the time is up, print
those that do not hold and exit with 1. CONDITION is PATH=VALUE, or with
!=, <, <=, > or >=; all elements of an array must satisfy it.

  -i SECONDS  Interval between samples, 0.001 to 1000000 (default: 0.1)
  -t SECONDS  Time limit, 0 to 1000000; 0 takes one sample (default: no limit)

Examples:
  orbelstatctl wait -t 10 'upm.policies[3].PolicyActiveState=1'
  orbelstatctl wait -t 0 'psu[*].Pin>=0' 'config.peakHeadroom>100'
)";
