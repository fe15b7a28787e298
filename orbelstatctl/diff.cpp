#include "orbelstatctl/commands.h"

int compareCaptures(const std::string &before, const std::string &after) {
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
    return old.hasFailed() || now.hasFailed() ? 2 : isDifferent ? 1 : 0;
}
