#pragma once

#include <QtGlobal>

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
// The compiler has the function, but not the header that declares it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
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
