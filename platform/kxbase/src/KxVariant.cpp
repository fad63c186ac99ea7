#include <KxBase/KxByteArray.h>
#include <KxBase/KxVariant.h>
#include <KxBase/KxVariantMap.h>

#include <variant>

namespace KxBase {

struct KxVariant::Value
{
    template <int Code>
    struct NotCarried
    {
        friend bool operator==(NotCarried, NotCarried) noexcept { return true; }
    };
    struct OtherKind
    {
        unsigned int code;
        friend bool operator==(OtherKind a, OtherKind b) noexcept { return a.code == b.code; }
    };
    // In the order of the type codes, so that the index is the code, but for the last.
    using Content =
        std::variant<std::monostate, bool, int, long, double, std::string, NotCarried<6>,
                     KxByteArray, KxVariantMap, std::list<KxVariant>, NotCarried<10>, OtherKind>;
    static_assert(std::variant_size_v<Content> == 12);
    static_assert(sizeof(int) == 4 && sizeof(long) == 8);

    template <typename T>
    static std::shared_ptr<const Value> of(const T &content)
    {
        return std::make_shared<const Value>(Value{Content(std::in_place_type<T>, content)});
    }

    template <std::size_t Code = 1>
    static std::shared_ptr<const Value> emptyOf(unsigned int code)
    {
        if constexpr (Code < std::variant_size_v<Content> - 1) {
            if (code == Code)
                return std::make_shared<const Value>(Value{Content(std::in_place_index<Code>)});
            return emptyOf<Code + 1>(code);
        } else {
            return of(OtherKind{code});
        }
    }

    unsigned int code() const noexcept
    {
        const OtherKind *other = std::get_if<OtherKind>(&content);
        return other ? other->code : static_cast<unsigned int>(content.index());
    }

    Content content;
};

KxVariant::KxVariant(bool value)
    : m_value(Value::of(value))
{
}

KxVariant::KxVariant(int value)
    : m_value(Value::of(value))
{
}

KxVariant::KxVariant(long value)
    : m_value(Value::of(value))
{
}

KxVariant::KxVariant(long long value)
    : KxVariant(static_cast<long>(value))
{
}

KxVariant::KxVariant(double value)
    : m_value(Value::of(value))
{
}

KxVariant::KxVariant(const std::string &text)
    : m_value(Value::of(text))
{
}

KxVariant::KxVariant(const char *text)
    : m_value(Value::of(std::string(text ? text : "")))
{
}

KxVariant::KxVariant(const KxByteArray &bytes)
    : m_value(Value::of(bytes))
{
}

KxVariant::KxVariant(const KxVariantMap &map)
    : m_value(Value::of(map))
{
}

KxVariant::KxVariant(const std::list<KxVariant> &list)
    : m_value(Value::of(list))
{
}

KxVariant KxVariant::fromTypeCode(unsigned int code)
{
    KxVariant variant;
    if (code != 0)
        variant.m_value = Value::emptyOf(code);
    return variant;
}

unsigned int KxVariant::type() const noexcept
{
    return m_value ? m_value->code() : 0;
}

template <typename T>
T KxVariant::held() const
{
    const T *content = m_value ? std::get_if<T>(&m_value->content) : nullptr;
    return content ? *content : T();
}

bool KxVariant::toBool() const
{
    return held<bool>();
}

int KxVariant::toInt() const
{
    return held<int>();
}

long KxVariant::toInt64() const
{
    return held<long>();
}

double KxVariant::toDouble() const
{
    return held<double>();
}

std::string KxVariant::toString() const
{
    return held<std::string>();
}

KxByteArray KxVariant::toByteArray() const
{
    return held<KxByteArray>();
}

KxVariantMap KxVariant::toMap() const
{
    return held<KxVariantMap>();
}

std::list<KxVariant> KxVariant::toList() const
{
    return held<std::list<KxVariant>>();
}

bool operator==(const KxVariant &a, const KxVariant &b)
{
    if (!a.m_value || !b.m_value)
        return a.m_value == b.m_value;
    return a.m_value->content == b.m_value->content;
}

} // namespace KxBase
