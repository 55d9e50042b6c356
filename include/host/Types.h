// Basic types shared by the host libraries and the plug-ins they load.
#pragma once

#include <cstdint>

// Result of every fallible host or plug-in operation: 0 is success, negative values are errors.
typedef int32_t TErrorCode;

// Host codes that plug-ins see.
const TErrorCode HOST_ERROR_BAD_ARGUMENT = -101;          // a null or invalid argument
const TErrorCode HOST_ERROR_NOT_SUPPORTED = -102;         // operation not supported
const TErrorCode HOST_ERROR_OUT_OF_RANGE = -103;          // index past the end
const TErrorCode HOST_ERROR_KEY_NOT_FOUND = -1001;        // no entry under that name
const TErrorCode HOST_ERROR_UNKNOWN_EXPRESSION = -10008;  // unknown expression type name
