#include "orbelstatctl/commands.h"
#include "orbelstatctl/values.h"

#include <cstring>

// Why setFields would not bring back what a field holds; "" if it would.
static std::string lossOf(const Row &row, const std::string &value, const uint8_t *at) {
    std::string bytes;
    const std::string error = parseValue(row, value, bytes);
    const bool isOther = error.empty() && memcmp(bytes.data(), at, row.size) != 0;
    return isOther ? "not with the same bytes" : error;
}

int getFields(Source &source, const Words &words, bool onlyValues, bool onlyWritable) {
    const Kind kind = onlyWritable ? Kind::writable : Kind::any;
    bool isLost = false;
    for (const Field &field : fieldsOf(parsePaths(words, kind), kind)) {
        const auto value = source.valueOf(field);
        if (!value) {
            continue;
        }
        if (onlyWritable) {
            const uint8_t *at = source.bytesOf(field.node->section) + field.offset;
            if (const std::string loss = lossOf(*field.node->row, *value, at); !loss.empty()) {
                complain(field.path + '=' + *value + ": cannot be set back, " + loss);
                isLost = true;
                continue;
            }
        }
        print((onlyValues ? "" : field.path + '=') + *value + '\n');
    }
    return source.hasFailed() || isLost ? failed : succeeded;
}
