#include "sections/field.h"

#include "sections/time_text.h"

#include <cstdio>

static constexpr int valuesPerLine = 16;
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

void printLead(const Style &style, const Row &row, int element) {
    static constexpr char run[] = "------------------------------------------";
    fputs(style.prefix, stdout);
    if (row.isWholeLead) {
        fputs(row.label, stdout);
        return;
    }
    int length = printf("%s", row.label);
    if (element >= 0) {
        length += printf("[%d]", element);
    }
    printf(" %.*s ", style.column != 0 ? style.column - length : style.hyphens, run);
}

// Prints the value lines of an array, each value followed by a blank.
static void printValues(Kind kind, const uint8_t *values, size_t count) {
    fputs(valueIndent, stdout);
    if (kind == Kind::decimalBytes) {
        fputs("In DEC: ", stdout);
    }
    for (size_t i = 0; i < count; ++i) {
        if (i > 0 && i % valuesPerLine == 0) {
            printf("\n%s", valueIndent);
        }
        switch (kind) {
        case Kind::decimalBytes:
            printf("%d ", values[i]);
            break;
        case Kind::decimalWords:
            printf("%d ", load<uint16_t>(values + 2 * i));
            break;
        case Kind::hexWords:
            printf("0x%02x ", load<uint16_t>(values + 2 * i));
            break;
        case Kind::hexWords4:
            printf("0x%04x ", load<uint16_t>(values + 2 * i));
            break;
        default:
            printf("0x%02x ", values[i]);
        }
    }
    putchar('\n');
}

static void printValue(const Style &style, const Row &row, const uint8_t *at) {
    char text[timeTextSize];
    switch (row.kind) {
    case Kind::u8:
        printf("%d\n", load<uint8_t>(at));
        break;
    case Kind::u16:
        printf("%d\n", load<uint16_t>(at));
        break;
    case Kind::u32:
        printf("%u\n", load<uint32_t>(at));
        break;
    case Kind::u64:
        printf("%lu\n", load<uint64_t>(at));
        break;
    case Kind::i16:
        printf("%u\n", static_cast<uint32_t>(load<int16_t>(at)));
        break;
    case Kind::i32:
        printf(style.unsignedWords ? "%u\n" : "%d\n", load<int32_t>(at));
        break;
    case Kind::f32:
        printf("%.*f\n", style.floatPlaces, static_cast<double>(load<float>(at)));
        break;
    case Kind::f64:
        printf("%g\n", load<double>(at));
        break;
    case Kind::time:
        printf("%s\n", time32ToString(load<time32>(at), text));
        break;
    case Kind::timeUnspaced:
        printf("%s", time32ToString(load<time32>(at), text));
        break;
    case Kind::text:
        printf("%.*s\n", row.count, reinterpret_cast<const char *>(at));
        break;
    case Kind::domain:
        printf("%u (%s)\n", load<uint16_t>(at), domainName(load<uint16_t>(at)));
        break;
    case Kind::hexByte:
        printf("0x%02x\n", load<uint8_t>(at));
        break;
    case Kind::hexBytes:
    case Kind::hexBytesAndText:
    case Kind::hexWords:
    case Kind::hexWords4:
    case Kind::decimalBytes:
    case Kind::decimalWords:
        putchar('\n');
        printValues(row.kind, at, row.count);
        if (row.kind == Kind::hexBytesAndText) {
            printf("%sASCII String - ", valueIndent);
            fwrite(at, 1, row.count, stdout);
            putchar('\n');
        }
        break;
    case Kind::line:
    case Kind::record:
        break;
    }
}

void printRow(const Style &style, const Row &row, const uint8_t *record) {
    if (row.kind == Kind::line) {
        puts(row.label);
        return;
    }
    if (row.count == 0 || row.kind >= Kind::text) {
        printLead(style, row, -1);
        printValue(style, row, record + row.offset);
        return;
    }
    for (size_t i = 0; i < row.count; ++i) {
        printLead(style, row, static_cast<int>(i));
        printValue(style, row, record + row.offset + i * elementSize(row.kind));
    }
}

void printRows(const Style &style, std::span<const Row> rows, const uint8_t *record, Views views) {
    for (const Row &row : rows) {
        if ((row.views & views) != 0) {
            printRow(style, row, record);
        }
    }
}

void printArray(const Style &style, const char *name, std::span<const Row> rows,
                const uint8_t *records, size_t size, int count) {
    for (int i = 0; i < count; ++i) {
        char prefix[64];
        snprintf(prefix, sizeof prefix, "%s%.24s[%d].", style.prefix, name, i);
        Style led = style;
        led.prefix = prefix;
        printRows(led, rows, records + static_cast<size_t>(i) * size);
    }
}
