#include "rows/print_rows.h"

#include <ctime>

static constexpr uint32_t valuesPerLine = 16;
static constexpr std::string_view valueIndent = "       ";

static const char *domainName(uint16_t domain) {
    static constexpr const char *names[] = {"cpu", "mem", "system", "gpu"};
    return domain < std::size(names) ? names[domain] : "unknown";
}

static void putIndex(TextBuffer &out, int index) {
    if (index != noIndex) {
        out.put('[');
        out.putUnsigned(static_cast<unsigned>(index));
        out.put(']');
    }
}

void putLabel(TextBuffer &out, const Style &style, const Parent *parent, const Row &row,
              int index) {
    if (row.isVerbatim) {
        out.put(row.label);
        return;
    }
    out.put(style.prefix);
    if (parent != nullptr) {
        out.put(parent->row.label);
        putIndex(out, parent->index);
        out.put('.');
    }
    const size_t start = out.size();
    out.put(row.label);
    putIndex(out, index);
    if (isList(row.format)) {
        out.put("[]");
    }
    const bool isInColumn = style.column != 0 && parent == nullptr;
    const int length = static_cast<int>(out.size() - start);
    out.put(' ');
    out.putRepeated('-', isInColumn ? style.column - length : style.hyphens);
    out.put(' ');
}

void putInteger(TextBuffer &out, Type type, const uint8_t *at) {
    switch (type) {
    case Type::u8:
        out.putUnsigned(load<uint8_t>(at));
        break;
    case Type::u16:
    case Type::domain:
        out.putUnsigned(load<uint16_t>(at));
        break;
    case Type::u32:
        out.putUnsigned(load<uint32_t>(at));
        break;
    case Type::u64:
        out.putUnsigned(load<uint64_t>(at));
        break;
    case Type::i16:
        out.putSigned(load<int16_t>(at));
        break;
    case Type::i32:
        out.putSigned(load<int32_t>(at));
        break;
    case Type::none:
    case Type::f32:
    case Type::f64:
    case Type::time:
    case Type::text:
    case Type::bytes:
    case Type::record:
        break; // not an integer
    }
}

static std::string_view stringView(const uint8_t *at, size_t length) {
    return {reinterpret_cast<const char *>(at), length};
}

// Formats the local time as ctime does, "Thu Jan  1 00:00:00 1970\n", in `text`, and returns it.
// ctime_r is faster than ctime: it reads the time zone only once per run.
static const char *time32ToString(Time32 time, char (&text)[26]) {
    const auto seconds = static_cast<time_t>(static_cast<uint32_t>(time));
    return ctime_r(&seconds, text);
}

static void putTime(TextBuffer &out, const uint8_t *at) {
    char text[26];
    out.put(time32ToString(load<Time32>(at), text));
}

// Writes a value in the usual format of its type, and ends the line.
static void putPlain(TextBuffer &out, const Style &style, const Row &row, const uint8_t *at) {
    switch (row.type) {
    case Type::f32:
        out.putFixed(load<float>(at), style.floatPlaces);
        break;
    case Type::f64:
        out.putGeneral(load<double>(at));
        break;
    case Type::time:
        putTime(out, at);
        break;
    case Type::domain:
        putInteger(out, row.type, at);
        out.put(" (");
        out.put(domainName(load<uint16_t>(at)));
        out.put(')');
        break;
    case Type::text:
        out.put(stringView(at, strnlen(reinterpret_cast<const char *>(at), row.size)));
        break;
    case Type::u8:
    case Type::u16:
    case Type::u32:
    case Type::u64:
    case Type::i16:
    case Type::i32:
        putInteger(out, row.type, at);
        break;
    case Type::none:
    case Type::bytes: // always a list
    case Type::record:
        break;
    }
    out.put('\n');
}

// Writes the values of a list, each followed by a blank, and ends the line.
static void putList(TextBuffer &out, const Row &row, const uint8_t *at) {
    out.put('\n');
    out.put(valueIndent);
    if (row.format == Format::labelledDecimalList) {
        out.put("In DEC: ");
    }
    const bool isDecimal =
        row.format == Format::labelledDecimalList || row.format == Format::decimalList;
    const uint32_t values = isByteString(row.type) ? row.size : row.count;
    const uint32_t valueSize = isByteString(row.type) ? 1 : row.size;
    for (uint32_t i = 0; i < values; ++i, at += valueSize) {
        if (i > 0 && i % valuesPerLine == 0) {
            out.put('\n');
            out.put(valueIndent);
        }
        if (isDecimal) {
            putInteger(out, row.type, at);
        } else if (row.type == Type::u16) {
            out.putHex(load<uint16_t>(at), row.format == Format::hexList4 ? 4 : 2);
        } else {
            out.putHexByte(load<uint8_t>(at));
        }
        out.put(' ');
    }
    out.put('\n');
}

// Writes the value of a row, or of one of its elements, and ends the line.
static void putFormatted(TextBuffer &out, const Style &style, const Row &row, const uint8_t *at) {
    switch (row.format) {
    case Format::plain:
        putPlain(out, style, row, at);
        return;
    case Format::signedDecimal:
        out.putSigned(load<int32_t>(at));
        break;
    case Format::unsignedDecimal:
        out.putUnsigned(load<uint32_t>(at));
        break;
    case Format::signExtended:
        out.putUnsigned(static_cast<uint32_t>(load<int16_t>(at)));
        break;
    case Format::hex:
        out.putHexByte(load<uint8_t>(at));
        break;
    case Format::threePlaces:
        out.putPadded(load<uint8_t>(at), 3);
        break;
    case Format::timeOnly:
        putTime(out, at); // ends in a newline
        return;
    case Format::hexListAndText:
        putList(out, row, at);
        out.put(valueIndent);
        out.put("ASCII String - ");
        out.put(stringView(at, row.size));
        break;
    case Format::hexList:
    case Format::hexList4:
    case Format::decimalList:
    case Format::labelledDecimalList:
        putList(out, row, at);
        return;
    }
    out.put('\n');
}

// Writes the lines of a row that is not a struct.
static void putLines(TextBuffer &out, const Style &style, const Parent *parent, const Row &row,
                     const uint8_t *record) {
    const uint8_t *at = record + row.offset;
    const uint32_t lines = isList(row.format) ? 1 : row.elementCount();
    for (uint32_t i = 0; i < lines; ++i, at += row.size) {
        putLabel(out, style, parent, row, isList(row.format) ? noIndex : row.indexOf(i));
        putFormatted(out, style, row, at);
    }
}

void putRow(TextBuffer &out, const Style &style, const Row &row, const uint8_t *record,
            Views view) {
    if (row.nested.empty()) {
        putLines(out, style, nullptr, row, record);
        return;
    }
    const uint8_t *at = record + row.offset;
    for (uint32_t i = 0; i < row.elementCount(); ++i, at += row.size) {
        const Parent parent{row, row.indexOf(i)};
        for (const Row &member : row.nested) {
            if ((member.views & view) != 0) {
                putLines(out, style, &parent, member, at);
            }
        }
    }
}

void printRows(const Style &style, std::span<const Row> rows, const uint8_t *record, Views view) {
    TextBuffer out;
    for (const Row &row : rows) {
        if ((row.views & view) != 0) {
            putRow(out, style, row, record, view);
        }
    }
}
