#include "sections/rows/print_rows.h"

#include "sections/rows/time_text.h"

#include <algorithm>

static constexpr size_t valuesPerLine = 16;
static constexpr std::string_view valueIndent = "       ";

static const char *domainName(uint16_t domain) {
    switch (domain) {
    case 0:
        return "cpu";
    case 1:
        return "mem";
    case 2:
        return "system";
    case 3:
        return "gpu";
    default:
        return "unknown";
    }
}

// An element of an array of structs, or a struct of its own (element -1), whose rows are put.
struct Parent {
    std::string_view label;
    int element;
};

static void putIndex(TextBuffer &out, int element) {
    if (element >= 0) {
        out.put('[');
        out.putUnsigned(static_cast<unsigned>(element));
        out.put(']');
    }
}

// Length of what putIndex puts.
static int indexLength(int element) {
    if (element < 0) {
        return 0;
    }
    return element < 10 ? 3 : 4;
}

static void putLabel(TextBuffer &out, const Style &style, const Parent *parent, const RowView &row,
                     int element) {
    if (row.shape.isVerbatim) {
        out.put(row.label);
        return;
    }
    out.put(style.prefix);
    if (parent != nullptr) {
        out.put(parent->label);
        putIndex(out, parent->element);
        out.put('.');
    }
    out.put(row.label);
    putIndex(out, element);
    int hyphens = style.hyphens;
    if (style.column != 0 && parent == nullptr) {
        hyphens = style.column - static_cast<int>(row.label.size()) - indexLength(element);
    }
    out.put(' ');
    out.putRun('-', hyphens);
    out.put(' ');
}

void putLabel(TextBuffer &out, const Style &style, const RowView &row, int element) {
    putLabel(out, style, nullptr, row, element);
}

static void putArrayValue(TextBuffer &out, Kind kind, size_t size, const uint8_t *at) {
    const unsigned value = size == 1 ? load<uint8_t>(at) : load<uint16_t>(at);
    if (kind == Kind::decimalBytes || kind == Kind::decimalWords) {
        out.putUnsigned(value);
    } else {
        out.putHex(value, kind == Kind::hexWords4 ? 4 : 2);
    }
    out.put(' ');
}

// Puts the value lines of an array; every value is followed by a blank.
static void putArrayValues(TextBuffer &out, const RowShape &shape, const uint8_t *values) {
    out.put(valueIndent);
    if (shape.kind == Kind::decimalBytes) {
        out.put("In DEC: ");
    }
    for (size_t i = 0; i < shape.count; ++i) {
        if (i > 0 && i % valuesPerLine == 0) {
            out.put('\n');
            out.put(valueIndent);
        }
        putArrayValue(out, shape.kind, shape.size, values + i * shape.size);
    }
    out.put('\n');
}

static std::string_view asText(const uint8_t *at, size_t length) {
    return {reinterpret_cast<const char *>(at), length};
}

void putInteger(TextBuffer &out, Kind kind, const uint8_t *at) {
    switch (kind) {
    case Kind::u8:
        out.putUnsigned(load<uint8_t>(at));
        break;
    case Kind::u16:
        out.putUnsigned(load<uint16_t>(at));
        break;
    case Kind::u32:
        out.putUnsigned(load<uint32_t>(at));
        break;
    case Kind::u64:
        out.putUnsigned(load<uint64_t>(at));
        break;
    default:
        out.putSigned(load<int32_t>(at));
    }
}

// Puts the value of a row and what ends the line.
static void putValue(TextBuffer &out, const Style &style, const RowShape &shape,
                     const uint8_t *at) {
    char text[timeTextSize];
    switch (shape.kind) {
    case Kind::u8:
    case Kind::u16:
    case Kind::u32:
    case Kind::u64:
    case Kind::i32:
        putInteger(out, shape.kind, at);
        break;
    case Kind::i16:
        out.putUnsigned(static_cast<uint32_t>(load<int16_t>(at)));
        break;
    case Kind::f32:
        out.putFixed(load<float>(at), style.floatPlaces);
        break;
    case Kind::f64:
        out.putGeneral(load<double>(at));
        break;
    case Kind::time:
        out.put(time32ToString(load<Time32>(at), text));
        break;
    case Kind::timeUnspaced:
        out.put(time32ToString(load<Time32>(at), text));
        return; // the line ends with the text
    case Kind::domain:
        out.putUnsigned(load<uint16_t>(at));
        out.put(" (");
        out.put(domainName(load<uint16_t>(at)));
        out.put(')');
        break;
    case Kind::hexByte:
        out.putHex(load<uint8_t>(at), 2);
        break;
    case Kind::sample:
        out.putUnsigned(load<uint8_t>(at), 3);
        break;
    case Kind::reading:
        out.putUnsigned(load<uint16_t>(at), 3);
        return; // others follow on the line
    case Kind::text:
        out.put(asText(at, strnlen(reinterpret_cast<const char *>(at), shape.count)));
        break;
    case Kind::hexBytes:
    case Kind::hexWords:
    case Kind::hexWords4:
    case Kind::decimalBytes:
    case Kind::decimalWords:
        out.put('\n');
        putArrayValues(out, shape, at);
        return;
    case Kind::hexBytesAndText:
        out.put('\n');
        putArrayValues(out, shape, at);
        out.put(valueIndent);
        out.put("ASCII String - ");
        out.put(asText(at, shape.count));
        break;
    case Kind::line:
    case Kind::record:
    case Kind::readings:
        break;
    }
    out.put('\n');
}

static void putRow(TextBuffer &out, const Style &style, const Parent *parent, const RowView &row,
                   const uint8_t *record) {
    const uint8_t *at = record + row.shape.offset;
    if (row.shape.count == 0 || showsArrayWhole(row.shape.kind)) {
        putLabel(out, style, parent, row, -1);
        putValue(out, style, row.shape, at);
        return;
    }
    for (size_t i = 0; i < row.shape.count; ++i) {
        putLabel(out, style, parent, row, static_cast<int>(i));
        putValue(out, style, row.shape, at + i * row.shape.size);
    }
}

void putRow(TextBuffer &out, const Style &style, const RowView &row, const uint8_t *record) {
    putRow(out, style, nullptr, row, record);
}

// Puts the rows nested in a row, once for each element.
static void putNestedRows(TextBuffer &out, const Style &style, const RowView &row,
                          const Rows &nested, const uint8_t *record) {
    const uint8_t *at = record + row.shape.offset;
    const int last = row.shape.count - 1; // -1 for a struct of its own
    for (int element = std::min(last, 0); element <= last; ++element, at += row.shape.size) {
        const Parent parent{row.label, element};
        if (row.shape.kind == Kind::readings) {
            out.put(row.label);
            out.putUnsigned(static_cast<unsigned>(element), 2);
        }
        forEachRow(nested, allViews, [&](const RowView &inner, const Rows & /*none*/) {
            putRow(out, style, &parent, inner, at);
        });
        if (row.shape.kind == Kind::readings) {
            out.put('\n');
        }
    }
}

void putRows(TextBuffer &out, const Style &style, const Rows &rows, const uint8_t *record,
             Views views) {
    forEachRow(rows, views, [&](const RowView &row, const Rows &nested) {
        if (nested.size() != 0) {
            putNestedRows(out, style, row, nested, record);
        } else {
            putRow(out, style, row, record);
        }
    });
}

void printRows(const Style &style, const Rows &rows, const uint8_t *record, Views views) {
    TextBuffer out;
    putRows(out, style, rows, record, views);
}
