#pragma once

#include "foundation/Log.h"

// The lines of the duplicate finder name the method and the line that they come from. `method` is
// a text such as "-[algorithm getMD5:]".
#define QRX_FORMAT "[qrx]fun:%s line:%d"
#define QRX_LOG(method, format, ...)                                                               \
    ::brightsweep::NSLog(QRX_FORMAT format, method, __LINE__ __VA_OPT__(, ) __VA_ARGS__)
#define QRX_OBJECT_LOG(objectLog, method, format, ...)                                             \
    (objectLog).log(QRX_FORMAT format, method, __LINE__ __VA_OPT__(, ) __VA_ARGS__)
