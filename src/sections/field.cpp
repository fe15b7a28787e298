#include "sections/field.h"

#include "sections/time_text.h"

#include <cstdio>

static constexpr size_t valuesPerLine = 16;
static constexpr char valueIndent[] = "       ";

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

static void putArrayValue(Output &out, Kind kind, const uint8_t *at) {
    const unsigned value = elementSize(kind) == 1 ? load<uint8_t>(at) : load<uint16_t>(at);
    if (kind == Kind::decimalBytes || kind == Kind::decimalWords) {
        out.putUnsigned(value);
    } else {
        out.putHex(value, kind == Kind::hexWords4 ? 4 : 2);
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
        putArrayValue(out, kind, values + i * elementSize(kind));
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

void putArray(Output &out, const Style &style, const Row &array, const Rows &rows,
              const uint8_t *record, size_t size) {
    for (size_t i = 0; i < array.shape.count; ++i) {
        char prefix[64];
        snprintf(prefix, sizeof prefix, "%s%.24s[%zu].", style.prefix, array.label, i);
        Style led = style;
        led.prefix = prefix;
        putRows(out, led, rows, record + array.shape.offset + i * size);
    }
}
