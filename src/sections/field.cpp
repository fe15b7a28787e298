#include "sections/field.h"

#include "sections/time_text.h"

#include <cstdio>

static constexpr size_t valuesPerLine = 16;
static constexpr char valueIndent[] = "       ";

size_t elementSize(Kind kind) {
    switch (kind) {
    case Kind::u16:
    case Kind::i16:
    case Kind::domain:
        return 2;
    case Kind::u32:
    case Kind::i32:
    case Kind::f32:
    case Kind::time:
    case Kind::timeUnspaced:
        return 4;
    case Kind::u64:
    case Kind::f64:
        return 8;
    default:
        return 1;
    }
}

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

void putLead(Output &out, const Style &style, const Row &row, int element) {
    out.put(style.prefix);
    const size_t labelStart = out.length();
    out.put(row.label);
    if (row.shape.isWholeLead) {
        return;
    }
    if (element >= 0) {
        out.put('[');
        out.putSigned(element);
        out.put(']');
    }
    const auto labelLength = static_cast<int>(out.length() - labelStart);
    out.put(' ');
    out.putRun('-', style.column != 0 ? style.column - labelLength : style.hyphens);
    out.put(' ');
}

static void putArrayValue(Output &out, Kind kind, const uint8_t *values, size_t i) {
    switch (kind) {
    case Kind::decimalBytes:
        out.putUnsigned(values[i]);
        break;
    case Kind::decimalWords:
        out.putUnsigned(load<uint16_t>(values + 2 * i));
        break;
    case Kind::hexWords:
        out.putHex(load<uint16_t>(values + 2 * i), 2);
        break;
    case Kind::hexWords4:
        out.putHex(load<uint16_t>(values + 2 * i), 4);
        break;
    default:
        out.putHex(values[i], 2);
    }
    out.put(' ');
}

// Puts the value lines of an array; every value is followed by a blank.
static void putArrayValues(Output &out, Kind kind, const uint8_t *values, size_t count) {
    out.put(valueIndent);
    if (kind == Kind::decimalBytes) {
        out.put("In DEC: ");
    }
    for (size_t i = 0; i < count; ++i) {
        if (i > 0 && i % valuesPerLine == 0) {
            out.put('\n');
            out.put(valueIndent);
        }
        putArrayValue(out, kind, values, i);
    }
    out.put('\n');
}

// Puts the value or values of a row and what ends the line.
static void putValue(Output &out, const Style &style, const Row &row, const uint8_t *at) {
    char text[timeTextSize];
    switch (row.shape.kind) {
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
    case Kind::i16:
        out.putUnsigned(static_cast<uint32_t>(load<int16_t>(at)));
        break;
    case Kind::i32:
        if (style.unsignedWords) {
            out.putUnsigned(load<uint32_t>(at));
        } else {
            out.putSigned(load<int32_t>(at));
        }
        break;
    case Kind::f32:
        out.putFixed(load<float>(at), style.floatPlaces);
        break;
    case Kind::f64:
        out.putGeneral(load<double>(at));
        break;
    case Kind::time:
        out.put(time32ToString(load<time32>(at), text));
        break;
    case Kind::timeUnspaced:
        out.put(time32ToString(load<time32>(at), text));
        return; // the line ends with the text
    case Kind::text:
        out.put(reinterpret_cast<const char *>(at),
                strnlen(reinterpret_cast<const char *>(at), row.shape.count));
        break;
    case Kind::domain:
        out.putUnsigned(load<uint16_t>(at));
        out.put(" (");
        out.put(domainName(load<uint16_t>(at)));
        out.put(')');
        break;
    case Kind::hexByte:
        out.putHex(load<uint8_t>(at), 2);
        break;
    case Kind::hexBytes:
    case Kind::hexWords:
    case Kind::hexWords4:
    case Kind::decimalBytes:
    case Kind::decimalWords:
        out.put('\n');
        putArrayValues(out, row.shape.kind, at, row.shape.count);
        return;
    case Kind::hexBytesAndText:
        out.put('\n');
        putArrayValues(out, row.shape.kind, at, row.shape.count);
        out.put(valueIndent);
        out.put("ASCII String - ");
        out.put(reinterpret_cast<const char *>(at), row.shape.count);
        break;
    case Kind::line:
    case Kind::record:
        break;
    }
    out.put('\n');
}

void putRow(Output &out, const Style &style, const Row &row, const uint8_t *record) {
    if (row.shape.kind == Kind::line) {
        out.putLine(row.label);
    } else if (row.shape.count == 0 || row.shape.kind >= Kind::text) {
        putLead(out, style, row, -1);
        putValue(out, style, row, record + row.shape.offset);
    } else {
        for (size_t i = 0; i < row.shape.count; ++i) {
            putLead(out, style, row, static_cast<int>(i));
            putValue(out, style, row, record + row.shape.offset + i * elementSize(row.shape.kind));
        }
    }
}

void putRows(Output &out, const Style &style, const Rows &rows, const uint8_t *record,
             Views views) {
    for (size_t i = 0; i < rows.count; ++i) {
        const Row row = rows[i];
        if ((row.shape.views & views) != 0) {
            putRow(out, style, row, record);
        }
    }
}

void printRows(const Style &style, const Rows &rows, const uint8_t *record, Views views) {
    Output out;
    putRows(out, style, rows, record, views);
}

void putArray(Output &out, const Style &style, const char *name, const Rows &rows,
              const uint8_t *records, size_t size, int count) {
    for (int i = 0; i < count; ++i) {
        char prefix[64];
        snprintf(prefix, sizeof prefix, "%s%.24s[%d].", style.prefix, name, i);
        Style led = style;
        led.prefix = prefix;
        putRows(out, led, rows, records + static_cast<size_t>(i) * size);
    }
}
