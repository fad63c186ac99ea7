#pragma once

#include <KxBase/KxGlobal.h>

#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <type_traits>

namespace KxBase {

class KxByteArray;
class KxVariantMap;

/// A dynamic value. What it holds is told by its type code:
///
/// | Code | Holds                 | Code | Holds                                 |
/// |------|-----------------------|------|---------------------------------------|
/// | 0    | nothing               | 6    | a kind whose content is not carried   |
/// | 1    | bool                  | 7    | bytes, KxByteArray                    |
/// | 2    | 32-bit integer, int   | 8    | map, KxVariantMap                     |
/// | 3    | 64-bit integer, long  | 9    | list, std::list<KxVariant>            |
/// | 4    | double                | 10   | user data, its content is not carried |
/// | 5    | text, UTF-8           | > 10 | other kinds, likewise                 |
///
/// A value type: copies are independent of one another, and one that was moved from holds nothing.
/// Reentrant: one object must not be changed while another thread uses it; copies may be used by
/// different threads. Include KxByteArray.h and KxVariantMap.h to work with bytes and maps.
/// Nothing here fails, save that memory may run out (std::bad_alloc).
class KXBASE_EXPORT KxVariant
{
public:
    /// Nothing: code 0.
    KxVariant() = default;
    KxVariant(bool value);
    KxVariant(int value);
    KxVariant(long value);
    KxVariant(long long value); ///< The same kind as long: code 3.
    KxVariant(double value);
    KxVariant(const std::string &text);
    KxVariant(const char *text); ///< Up to the first NUL; a null pointer is an empty text.
    KxVariant(const KxByteArray &bytes);
    KxVariant(const KxVariantMap &map);
    KxVariant(const std::list<KxVariant> &list);
    KxVariant(std::nullptr_t) = delete;
    /// Nothing becomes a bool by an implicit conversion: no pointer and no object.
    template <typename T,
              typename = std::enable_if_t<std::is_convertible_v<T, bool> &&
                                          !std::is_convertible_v<T, const char *> &&
                                          !std::is_arithmetic_v<T> && !std::is_enum_v<T>>>
    KxVariant(T) = delete;

    /// A value of the kind `code` names, with that kind's empty value (false, 0, an empty text);
    /// the way to get one whose content is not carried: of code 6, 10 or above.
    static KxVariant fromTypeCode(unsigned int code);

    /// The type code.
    unsigned int type() const noexcept;

    // Each gives a copy of the content, or the empty value of its own type when another kind is
    // held: nothing is converted from one kind to another.
    bool toBool() const;
    int toInt() const;
    long toInt64() const;
    double toDouble() const;
    std::string toString() const;
    KxByteArray toByteArray() const;
    KxVariantMap toMap() const;
    std::list<KxVariant> toList() const;

    /// Equal are values of one kind with equal content; doubles compare as by their own ==.
    friend KXBASE_EXPORT bool operator==(const KxVariant &a, const KxVariant &b);
    friend bool operator!=(const KxVariant &a, const KxVariant &b) { return !(a == b); }

private:
    struct Value;
    template <typename T>
    T held() const;

    std::shared_ptr<const Value> m_value; // null: code 0; shared by copies, as it never changes
};

} // namespace KxBase
