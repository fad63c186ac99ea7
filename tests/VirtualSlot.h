#pragma once

#include <QtGlobal>

#include <cstring>

/// The place of a virtual operation in the table, in pointers, as both processors' ABI stores it.
template <typename Operation>
qptrdiff slot(Operation operation)
{
    qptrdiff offset = 0;
    static_assert(sizeof operation >= sizeof offset);
    std::memcpy(&offset, &operation, sizeof offset);
#if defined(Q_PROCESSOR_X86)
    offset -= 1;
#endif
    return offset / static_cast<qptrdiff>(sizeof(void *));
}
