#include "orbelstatctl/commands.h"
#include "output/standard_streams.h"

#include <cstdio>
#include <new>

int compareCaptures(const std::string &before, const std::string &after) try {
    Source old(before);
    Source now(after);
    bool isDifferent = false;
    for (const Field &field : fieldsOf({Path()})) {
        if (field.node->isPolicyName() && !(old.hasPolicyNames() && now.hasPolicyNames())) {
            continue;
        }
        const auto was = old.valueOf(field);
        const auto is = now.valueOf(field);
        if (was && is && *was != *is) {
            print(field.path + ": " + *was + " -> " + *is + '\n');
            isDifferent = true;
        }
    }
    flushStandardOutput();
    return old.hasFailed() || now.hasFailed() || ferror(stdout) != 0 ? 2 : isDifferent ? 1 : 0;
} catch (const std::bad_alloc &) {
    throw Stop{refused, "no memory"};
}
