#include "upm/writable_fields.h"

#include <span>

static std::optional<WritableValue> findValue(const Rows &fields, std::span<const uint32_t> bounds,
                                              size_t offset) {
    for (size_t i = 0; i < fields.size(); ++i) {
        const RowShape shape = fields[i].shape;
        const size_t distance = offset - shape.offset; // enormous before the field
        const size_t elements = std::max<size_t>(shape.count, 1);
        if (distance % shape.size == 0 && distance / shape.size < elements) {
            return WritableValue{shape.size, bounds[i]};
        }
    }
    return std::nullopt;
}

std::optional<WritableValue> writableValueAt(size_t offset) {
    const size_t inPolicies = offset - policyOffset(0); // enormous before the policies
    if (inPolicies < sizeof(sUpmBlock::policies)) {
        return findValue(tableOf<policyFields>(), boundsOf<policyFields>,
                         inPolicies % sizeof(sPolicy));
    }
    return findValue(tableOf<limitAndThermalFields>(), boundsOf<limitAndThermalFields>, offset);
}
