#pragma once

#include <QtGlobal>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/allocator_interface.h>
#else
#include <malloc.h>
#endif

/// Bytes that are allocated now and not freed, of the whole program.
inline qint64 heapUse()
{
#if defined(__SANITIZE_ADDRESS__)
    return qint64(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks + info.hblkhd);
#endif
}
