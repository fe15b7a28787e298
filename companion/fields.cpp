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

bool areRelated(std::string_view one, std::string_view other) {
    const std::string_view outer = one.size() < other.size() ? one : other;
    const std::string_view inner = one.size() < other.size() ? other : one;
    if (memcmp(outer.data(), inner.data(), outer.size()) != 0) {
        return false;
    }
    if (outer.empty() || outer.size() == inner.size()) {
        return true;
    }
    const char next = inner[outer.size()];
    return next == '.' || next == '[';
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

// The bound of the field at `offset` in one of the tables of writable fields; null if there is
// none.
static const uint32_t *findBound(const Rows &rows, std::span<const uint32_t> bounds,
                                 size_t offset) {
    for (size_t i = 0; i < rows.size(); ++i) {
        const RowShape shape = rows[i].shape;
        const size_t elements = std::max<size_t>(shape.count, 1);
        if (offset >= shape.offset && offset < shape.offset + elements * shape.size) {
            return &bounds[i];
        }
    }
    return nullptr;
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

WriteBound writeBoundOf(const Field &field) {
    const auto start = static_cast<int32_t>(upmBlockOffset);
    if (field.section.id != powerReportingSection.id || field.offset < start) {
        return {false, 0};
    }
    const auto offset = static_cast<size_t>(field.offset - start);
    const uint32_t *max = nullptr;
    if (offset >= policyOffset(0) && offset < policyOffset(policyCount)) {
        max = findBound(tableOf<policyFields>(), boundsOf<policyFields>,
                        (offset - policyOffset(0)) % sizeof(sPolicy));
    } else {
        max = findBound(tableOf<limitAndThermalFields>(), boundsOf<limitAndThermalFields>, offset);
    }
    if (max == nullptr) {
        return {false, 0};
    }
    return {true, std::min(*max, greatestOf(field.type))};
}
