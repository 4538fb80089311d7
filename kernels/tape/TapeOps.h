// TapeOps.h - every kernel operation by its number on a tape: its row's place
// in kernel_ops.h.
#ifndef QUINDLE_TAPE_OPS_H
#define QUINDLE_TAPE_OPS_H

#include "kernel_ops.h"

#include <cstdint>
#include <string>
#include <vector>

enum TapeOp : std::uint8_t {
#define QUINDLE_TAPE_ENUM(R, name, ...) kTapeOp##name,
    QUINDLE_KERNEL_OPS(QUINDLE_TAPE_ENUM)
#undef QUINDLE_TAPE_ENUM
        kTapeOpCount
};

// "UpdateScreenItem(plane 20000, item 7, ..., x 120, y 300, ...)": a call as a report shows it.
std::string TapeDescribeCall(std::uint8_t op, const std::vector<std::int64_t>& args);

#endif
