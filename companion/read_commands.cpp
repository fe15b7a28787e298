#include "companion/commands.h"
#include "companion/sections.h"
#include "companion/values.h"
#include "upm/writable_fields.h"

int listFields(Words arguments) {
    const std::string_view wanted = arguments.empty() ? "" : arguments[0];
    if (!arguments.empty() && countFields(wanted) == 0) {
        return refused;
    }
    TextBuffer out;
    forEachField(wanted, [&](const Field &field) {
        out.put(field.path);
        out.put('\t');
        putType(out, field);
        out.put('\t');
        out.putSigned(field.section.id);
        out.put('\t');
        out.putSigned(field.offset);
        const std::optional<uint32_t> bound = writeBoundOf(field);
        if (bound && field.type == Kind::f64) {
            out.put('\t');
            out.putGeneral(-maxDouble);
            out.put("..");
            out.putGeneral(maxDouble);
        } else if (bound) {
            out.put("\t0..");
            out.putUnsigned(*bound);
        }
        out.put('\n');
    });
    return succeeded;
}

int getFields(Words arguments) {
    size_t count = 0;
    bool areKnown = true;
    for (const char *path : arguments) {
        const size_t named = countFields(path);
        count += named;
        areKnown = areKnown && named != 0;
    }
    if (!areKnown) {
        return refused;
    }
    SectionCopies copies;
    TextBuffer out;
    int status = succeeded;
    for (const char *path : arguments) {
        forEachField(path, [&](const Field &field) {
            const uint8_t *section = copies.of(field.section);
            if (section == nullptr) {
                status = failed;
                return;
            }
            if (count != 1 || field.path != path) {
                out.put(field.path);
                out.put('=');
            }
            putValue(out, field, section);
            out.put('\n');
        });
    }
    return status;
}
