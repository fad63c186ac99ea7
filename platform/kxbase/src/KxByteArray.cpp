#include <KxBase/KxByteArray.h>

namespace KxBase {

KxByteArray::KxByteArray(const char *data, int size)
{
    if (data && size > 0)
        m_bytes.assign(data, static_cast<std::string::size_type>(size));
}

} // namespace KxBase
