#include "orbelstatctl/commands.h"
#include "orbelstatctl/section_copies.h"
#include "orbelstatctl/values.h"

int listFields(Words arguments) {
    const std::vector<Field> fields =
        arguments.empty() ? fieldsIn("") : fieldsOrComplaint(arguments[0]);
    TextBuffer out;
    for (const Field &field : fields) {
        const Row &row = *field.row;
        out.put(field.path);
        out.put('\t');
        putType(out, row);
        out.put('\t');
        out.putSigned(field.section.id);
        out.put('\t');
        out.putUnsigned(field.offset);
        if (row.bound && row.type == Type::f64) {
            out.put('\t');
            out.putGeneral(-static_cast<double>(*row.bound));
            out.put("..");
            out.putGeneral(*row.bound);
        } else if (row.bound) {
            out.put("\t0..");
            out.putUnsigned(maxWritable(row));
        }
        out.put('\n');
    }
    return fields.empty() ? refused : succeeded;
}

int getFields(Words arguments) {
    std::vector<Field> fields;
    bool areKnown = true;
    for (const char *path : arguments) {
        const std::vector<Field> named = fieldsOrComplaint(path);
        areKnown = areKnown && !named.empty();
        fields.insert(fields.end(), named.begin(), named.end());
    }
    if (!areKnown) {
        return refused;
    }
    const bool isBare = fields.size() == 1 && fields[0].path == arguments[0];
    SectionCopies copies;
    TextBuffer out;
    int status = succeeded;
    for (const Field &field : fields) {
        const uint8_t *section = copies.of(field.section);
        if (section == nullptr) {
            status = failed;
            continue;
        }
        if (!isBare) {
            out.put(field.path);
            out.put('=');
        }
        putValue(out, field, section);
        out.put('\n');
    }
    return status;
}
