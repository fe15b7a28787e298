#include "companion/fields.h"

#include "sections/global_section.h"
#include "sections/power_config.h"
#include "sections/power_reporting.h"
#include "sections/psu_info.h"
#include "sections/rows/fields.h"
#include "upm/policy_report.h"
#include "upm/views.h"
#include "upm/writable_fields.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>

static constexpr auto policyAndTimestampRows = [] {
    using Record = sUpmBlock;
    return rowsOf(nested(ROW(policies), policyFields), ROW(timestamp));
}();

static Rows policyAndTimestampFields() {
    return fieldsOf<policyAndTimestampRows>();
}

std::span<const Root> allRoots() {
    static constexpr RecordPlace global[] = {{"", 0, 0, globalSectionFields}};
    static constexpr RecordPlace psu[] = {
        {"", offsetof(sPSUInfoSection, units), sizeof(sTolmAbsPSUInfo), psuFields},
        {"psuBus", offsetof(sPSUInfoSection, buses), sizeof(sPSUBusInfo), psuBusFields},
    };
    static constexpr RecordPlace reporting[] = {{"", 0, 0, powerReportingFields}};
    static constexpr RecordPlace upm[] = {
        {"", upmBlockOffset, 0, powerLimitFields},
        {"", upmBlockOffset, 0, thermalFields},
        {"", upmBlockOffset, 0, policyStateFields},
        {"", upmBlockOffset, 0, policyAndTimestampFields},
    };
    static constexpr RecordPlace config[] = {{"", 0, 0, powerConfigFields}};
    static constexpr Root roots[] = {
        {"global", 0, globalPowerSection, global},          {"psu", psuCount, psuInfoSection, psu},
        {"reporting", 0, powerReportingSection, reporting}, {"upm", 0, powerReportingSection, upm},
        {"config", 0, powerConfigSection, config},
    };
    return roots;
}

void Path::append(std::string_view piece) {
    if (used != 0) {
        text[used++] = '.';
    }
    memcpy(text + used, piece.data(), piece.size());
    used += piece.size();
}

void Path::appendIndex(size_t index) {
    text[used++] = '[';
    used = static_cast<size_t>(std::to_chars(text + used, text + sizeof text, index).ptr - text);
    text[used++] = ']';
}

bool isIn(std::string_view wanted, std::string_view path) {
    const size_t size = wanted.size();
    if (size > path.size() || memcmp(path.data(), wanted.data(), size) != 0) {
        return false;
    }
    return size == 0 || size == path.size() || path[size] == '.' || path[size] == '[';
}

size_t countFields(std::string_view path) {
    size_t count = 0;
    if (!path.empty()) {
        forEachField(path, [&](const Field & /*field*/) { ++count; });
    }
    if (count == 0) {
        fprintf(stderr, "orbelstatctl: %.*s: no such field\n", static_cast<int>(path.size()),
                path.data());
    }
    return count;
}

static uint32_t greatestOf(Kind type) {
    switch (type) {
    case Kind::u16:
    case Kind::domain:
        return UINT16_MAX;
    case Kind::i16:
        return INT16_MAX;
    case Kind::i32:
        return INT32_MAX;
    default:
        return UINT32_MAX;
    }
}

std::optional<uint32_t> writeBoundOf(const Field &field) {
    const auto start = static_cast<int32_t>(upmBlockOffset);
    if (field.section.id != powerReportingSection.id || field.offset < start) {
        return std::nullopt;
    }
    const auto value = writableValueAt(static_cast<size_t>(field.offset - start));
    return value ? std::optional(std::min(value->max, greatestOf(field.type))) : std::nullopt;
}
