#include <KxBase/KxByteArray.h>
#include <KxBase/KxVariant.h>
#include <KxBase/KxVariantMap.h>

#include <QtTest>

#include <cmath>
#include <limits>
#include <list>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

using KxBase::KxByteArray;
using KxBase::KxVariant;
using KxBase::KxVariantMap;

using KxList = std::list<KxVariant>;

Q_DECLARE_METATYPE(KxByteArray)
Q_DECLARE_METATYPE(KxVariant)
Q_DECLARE_METATYPE(KxVariantMap)
Q_DECLARE_METATYPE(KxList)
Q_DECLARE_METATYPE(std::string)

namespace {

struct Switch
{
    operator bool() const { return true; }
};

// What would become a bool or be ambiguous is refused by the compiler.
static_assert(!std::is_constructible_v<KxVariant, const void *>);
static_assert(!std::is_constructible_v<KxVariant, void *>);
static_assert(!std::is_constructible_v<KxVariant, const int *>);
static_assert(!std::is_constructible_v<KxVariant, const wchar_t *>);
static_assert(!std::is_constructible_v<KxVariant, const volatile char *>);
static_assert(!std::is_constructible_v<KxVariant, KxVariant *>);
static_assert(!std::is_constructible_v<KxVariant, std::string *>);
static_assert(!std::is_constructible_v<KxVariant, void (*)()>);
static_assert(!std::is_constructible_v<KxVariant, int Switch::*>);
static_assert(!std::is_constructible_v<KxVariant, Switch>);
static_assert(!std::is_constructible_v<KxVariant, std::nullptr_t>);
static_assert(!std::is_constructible_v<KxVariant, unsigned int>);
static_assert(!std::is_constructible_v<KxVariant, unsigned long>);
static_assert(!std::is_convertible_v<KxVariant, bool>);

// What the interface offers converts by itself.
static_assert(std::is_convertible_v<bool, KxVariant>);
static_assert(std::is_convertible_v<int, KxVariant>);
static_assert(std::is_convertible_v<long, KxVariant>);
static_assert(std::is_convertible_v<long long, KxVariant>);
static_assert(std::is_convertible_v<double, KxVariant>);
static_assert(std::is_convertible_v<const char *, KxVariant>);
static_assert(std::is_convertible_v<char *, KxVariant>);
static_assert(std::is_convertible_v<std::string, KxVariant>);
static_assert(std::is_convertible_v<KxByteArray, KxVariant>);
static_assert(std::is_convertible_v<KxVariantMap, KxVariant>);
static_assert(std::is_convertible_v<KxList, KxVariant>);
static_assert(std::is_nothrow_move_constructible_v<KxVariant>);
static_assert(std::is_nothrow_move_assignable_v<KxVariant>);

KxVariantMap sampleMap()
{
    KxVariantMap map;
    map["a"] = 1;
    map["b"] = "two";
    return map;
}

KxList sampleList()
{
    return {KxVariant(1), KxVariant(), KxVariant("three")};
}

} // namespace

class tst_KxVariant : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void content_data();
    void content();
    void fromTypeCode_data();
    void fromTypeCode();
    void textEndsAtNul();
    void textKeepsNuls();
    void nullTextIsEmpty();
    void charArrayIsText();
    void longLongIsLong();
    void smallKindsArePromoted();

    void equality_data();
    void equality();
    void notANumberDiffersFromItself();

    void copyIsIndependent();
    void argumentIsCopied();
    void resultIsCopied();
    void movedFromHoldsNothing();
    void selfAssignment();
    void containerOfItself();
    void nestedContainers();
    void copiesInSeveralThreads();

    void byteArray_data();
    void byteArray();
    void byteArrayIsDeepCopy();
    void byteArrayEquality();

    void mapInsertsOnAccess();
    void mapFind();
    void mapKeepsKeyOrder();
    void mapEquality();
    void mapIsCopied();
};

void tst_KxVariant::content_data()
{
    QTest::addColumn<KxVariant>("value");
    QTest::addColumn<unsigned int>("type");
    QTest::addColumn<bool>("asBool");
    QTest::addColumn<int>("asInt");
    QTest::addColumn<long>("asInt64");
    QTest::addColumn<double>("asDouble");
    QTest::addColumn<std::string>("asString");
    QTest::addColumn<KxByteArray>("asByteArray");
    QTest::addColumn<KxVariantMap>("asMap");
    QTest::addColumn<KxList>("asList");

    const std::string noText;
    const KxByteArray noBytes;
    const KxVariantMap noMap;
    const KxList noList;
    const KxByteArray bytes("a\0b", 3);

    QTest::newRow("nothing: code 0")
        << KxVariant() << 0U << false << 0 << 0L << 0.0 << noText << noBytes << noMap << noList;
    QTest::newRow("true: code 1") << KxVariant(true) << 1U << true << 0 << 0L << 0.0 << noText
                                  << noBytes << noMap << noList;
    QTest::newRow("false: code 1") << KxVariant(false) << 1U << false << 0 << 0L << 0.0 << noText
                                   << noBytes << noMap << noList;
    QTest::newRow("int: code 2") << KxVariant(7) << 2U << false << 7 << 0L << 0.0 << noText
                                 << noBytes << noMap << noList;
    QTest::newRow("int 0: code 2")
        << KxVariant(0) << 2U << false << 0 << 0L << 0.0 << noText << noBytes << noMap << noList;
    QTest::newRow("smallest int: code 2")
        << KxVariant(std::numeric_limits<int>::min()) << 2U << false << -2147483647 - 1 << 0L << 0.0
        << noText << noBytes << noMap << noList;
    QTest::newRow("long: code 3") << KxVariant(7L) << 3U << false << 0 << 7L << 0.0 << noText
                                  << noBytes << noMap << noList;
    QTest::newRow("long beyond int: code 3")
        << KxVariant(-5000000000L) << 3U << false << 0 << -5000000000L << 0.0 << noText << noBytes
        << noMap << noList;
    QTest::newRow("double: code 4")
        << KxVariant(2.5) << 4U << false << 0 << 0L << 2.5 << noText << noBytes << noMap << noList;
    QTest::newRow("text: code 5") << KxVariant(std::string("text")) << 5U << false << 0 << 0L << 0.0
                                  << std::string("text") << noBytes << noMap << noList;
    QTest::newRow("text of a pointer: code 5") << KxVariant("text") << 5U << false << 0 << 0L << 0.0
                                               << std::string("text") << noBytes << noMap << noList;
    QTest::newRow("text of a number: code 5, not converted")
        << KxVariant("1") << 5U << false << 0 << 0L << 0.0 << std::string("1") << noBytes << noMap
        << noList;
    QTest::newRow("code 6: nothing to read") << KxVariant::fromTypeCode(6) << 6U << false << 0 << 0L
                                             << 0.0 << noText << noBytes << noMap << noList;
    QTest::newRow("bytes: code 7")
        << KxVariant(bytes) << 7U << false << 0 << 0L << 0.0 << noText << bytes << noMap << noList;
    QTest::newRow("map: code 8") << KxVariant(sampleMap()) << 8U << false << 0 << 0L << 0.0
                                 << noText << noBytes << sampleMap() << noList;
    QTest::newRow("list: code 9") << KxVariant(sampleList()) << 9U << false << 0 << 0L << 0.0
                                  << noText << noBytes << noMap << sampleList();
    QTest::newRow("code 10: nothing to read") << KxVariant::fromTypeCode(10) << 10U << false << 0
                                              << 0L << 0.0 << noText << noBytes << noMap << noList;
    QTest::newRow("code 11: nothing to read") << KxVariant::fromTypeCode(11) << 11U << false << 0
                                              << 0L << 0.0 << noText << noBytes << noMap << noList;
    QTest::newRow("largest code: nothing to read")
        << KxVariant::fromTypeCode(4294967295U) << 4294967295U << false << 0 << 0L << 0.0 << noText
        << noBytes << noMap << noList;
}

void tst_KxVariant::content()
{
    QFETCH(KxVariant, value);
    QTEST(value.type(), "type");
    QTEST(value.toBool(), "asBool");
    QTEST(value.toInt(), "asInt");
    QTEST(value.toInt64(), "asInt64");
    QTEST(value.toDouble(), "asDouble");
    QTEST(value.toString(), "asString");
    QTEST(value.toByteArray(), "asByteArray");
    QTEST(value.toMap(), "asMap");
    QTEST(value.toList(), "asList");
}

void tst_KxVariant::fromTypeCode_data()
{
    QTest::addColumn<unsigned int>("code");
    QTest::addColumn<KxVariant>("equalTo");
    QTest::addColumn<unsigned int>("type");

    QTest::newRow("0: nothing") << 0U << KxVariant() << 0U;
    QTest::newRow("1: false") << 1U << KxVariant(false) << 1U;
    QTest::newRow("2: 0") << 2U << KxVariant(0) << 2U;
    QTest::newRow("3: 0") << 3U << KxVariant(0L) << 3U;
    QTest::newRow("4: 0") << 4U << KxVariant(0.0) << 4U;
    QTest::newRow("5: an empty text") << 5U << KxVariant(std::string()) << 5U;
    QTest::newRow("6: itself") << 6U << KxVariant::fromTypeCode(6) << 6U;
    QTest::newRow("7: no bytes") << 7U << KxVariant(KxByteArray()) << 7U;
    QTest::newRow("8: an empty map") << 8U << KxVariant(KxVariantMap()) << 8U;
    QTest::newRow("9: an empty list") << 9U << KxVariant(KxList()) << 9U;
    QTest::newRow("10: itself") << 10U << KxVariant::fromTypeCode(10) << 10U;
    QTest::newRow("11: itself") << 11U << KxVariant::fromTypeCode(11) << 11U;
    QTest::newRow("4294967295: itself")
        << 4294967295U << KxVariant::fromTypeCode(4294967295U) << 4294967295U;
}

void tst_KxVariant::fromTypeCode()
{
    QFETCH(unsigned int, code);
    const KxVariant value = KxVariant::fromTypeCode(code);
    QTEST(value.type(), "type");
    QTEST(value, "equalTo");
}

void tst_KxVariant::textEndsAtNul()
{
    QCOMPARE(KxVariant("a\0b").toString(), std::string("a"));
}

void tst_KxVariant::textKeepsNuls()
{
    QCOMPARE(KxVariant(std::string("a\0b", 3)).toString(), std::string("a\0b", 3));
}

void tst_KxVariant::nullTextIsEmpty()
{
    const char *none = nullptr;
    const KxVariant value(none);
    QCOMPARE(value.type(), 5U);
    QCOMPARE(value.toString(), std::string());
}

void tst_KxVariant::charArrayIsText()
{
    char text[] = "text";
    char *pointer = text;
    QCOMPARE(KxVariant(text), KxVariant(std::string("text")));
    QCOMPARE(KxVariant(pointer), KxVariant(std::string("text")));
}

void tst_KxVariant::longLongIsLong()
{
    const KxVariant value(9223372036854775807LL);
    QCOMPARE(value.type(), 3U);
    QCOMPARE(value.toInt64(), 9223372036854775807L);
    QCOMPARE(value, KxVariant(9223372036854775807L));
}

void tst_KxVariant::smallKindsArePromoted()
{
    enum Colour { Red = 3 };
    QCOMPARE(KxVariant(static_cast<short>(-2)), KxVariant(-2));
    QCOMPARE(KxVariant('A'), KxVariant(65));
    QCOMPARE(KxVariant(Red).toInt(), 3);
    QCOMPARE(KxVariant(0.5F), KxVariant(0.5));
}

void tst_KxVariant::equality_data()
{
    QTest::addColumn<KxVariant>("a");
    QTest::addColumn<KxVariant>("b");
    QTest::addColumn<bool>("equal");

    KxVariantMap otherMap = sampleMap();
    otherMap["b"] = "other";
    KxList longerList = sampleList();
    longerList.push_back(KxVariant());

    QTest::newRow("nothing and nothing: equal") << KxVariant() << KxVariant() << true;
    QTest::newRow("nothing and false: different") << KxVariant() << KxVariant(false) << false;
    QTest::newRow("false and nothing: different") << KxVariant(false) << KxVariant() << false;
    QTest::newRow("true and true: equal") << KxVariant(true) << KxVariant(true) << true;
    QTest::newRow("true and false: different") << KxVariant(true) << KxVariant(false) << false;
    QTest::newRow("1 and 1: equal") << KxVariant(1) << KxVariant(1) << true;
    QTest::newRow("1 and 2: different") << KxVariant(1) << KxVariant(2) << false;
    QTest::newRow("1 and true: different") << KxVariant(1) << KxVariant(true) << false;
    QTest::newRow("int 1 and long 1: different") << KxVariant(1) << KxVariant(1L) << false;
    QTest::newRow("int 1 and double 1: different") << KxVariant(1) << KxVariant(1.0) << false;
    QTest::newRow("0.0 and -0.0: equal") << KxVariant(0.0) << KxVariant(-0.0) << true;
    QTest::newRow("equal texts: equal") << KxVariant("a") << KxVariant("a") << true;
    QTest::newRow("different texts: different") << KxVariant("a") << KxVariant("A") << false;
    QTest::newRow("text and bytes: different")
        << KxVariant("a") << KxVariant(KxByteArray("a", 1)) << false;
    QTest::newRow("equal bytes: equal")
        << KxVariant(KxByteArray("a\0b", 3)) << KxVariant(KxByteArray("a\0b", 3)) << true;
    QTest::newRow("bytes different behind a NUL: different")
        << KxVariant(KxByteArray("a\0b", 3)) << KxVariant(KxByteArray("a\0c", 3)) << false;
    QTest::newRow("equal maps: equal") << KxVariant(sampleMap()) << KxVariant(sampleMap()) << true;
    QTest::newRow("different maps: different")
        << KxVariant(sampleMap()) << KxVariant(otherMap) << false;
    QTest::newRow("equal lists: equal")
        << KxVariant(sampleList()) << KxVariant(sampleList()) << true;
    QTest::newRow("list and a longer one: different")
        << KxVariant(sampleList()) << KxVariant(longerList) << false;
    QTest::newRow("empty map and empty list: different")
        << KxVariant(KxVariantMap()) << KxVariant(KxList()) << false;
    QTest::newRow("code 6 and code 6: equal")
        << KxVariant::fromTypeCode(6) << KxVariant::fromTypeCode(6) << true;
    QTest::newRow("code 6 and code 10: different")
        << KxVariant::fromTypeCode(6) << KxVariant::fromTypeCode(10) << false;
    QTest::newRow("code 11 and code 11: equal")
        << KxVariant::fromTypeCode(11) << KxVariant::fromTypeCode(11) << true;
    QTest::newRow("code 11 and code 12: different")
        << KxVariant::fromTypeCode(11) << KxVariant::fromTypeCode(12) << false;
    QTest::newRow("code 11 and nothing: different")
        << KxVariant::fromTypeCode(11) << KxVariant() << false;
}

void tst_KxVariant::equality()
{
    QFETCH(KxVariant, a);
    QFETCH(KxVariant, b);
    QFETCH(bool, equal);
    QCOMPARE(a == b, equal);
    QCOMPARE(b == a, equal);
    QCOMPARE(a != b, !equal);
}

void tst_KxVariant::notANumberDiffersFromItself()
{
    const KxVariant value(std::nan(""));
    const KxVariant copy = value;
    QVERIFY(value != copy);
    QVERIFY(value != value);
}

void tst_KxVariant::copyIsIndependent()
{
    KxVariant original(1);
    const KxVariant copy = original;
    KxVariant assigned;
    assigned = original;
    original = "changed";
    QCOMPARE(copy, KxVariant(1));
    QCOMPARE(assigned, KxVariant(1));
    QCOMPARE(original, KxVariant("changed"));
}

void tst_KxVariant::argumentIsCopied()
{
    std::string text = "text";
    KxVariantMap map = sampleMap();
    KxList list = sampleList();
    const KxVariant ofText(text);
    const KxVariant ofMap(map);
    const KxVariant ofList(list);
    text = "changed";
    map["c"] = 3;
    list.clear();
    QCOMPARE(ofText.toString(), std::string("text"));
    QCOMPARE(ofMap.toMap(), sampleMap());
    QCOMPARE(ofList.toList(), sampleList());
}

void tst_KxVariant::resultIsCopied()
{
    const KxVariant value(sampleMap());
    KxVariantMap result = value.toMap();
    result["c"] = 3;
    QCOMPARE(value.toMap(), sampleMap());
}

void tst_KxVariant::movedFromHoldsNothing()
{
    KxVariant source(sampleList());
    KxVariant target(std::move(source));
    QCOMPARE(target, KxVariant(sampleList()));
    QCOMPARE(source.type(), 0U);
    QCOMPARE(source.toList(), KxList());

    KxVariant assigned(1);
    assigned = std::move(target);
    QCOMPARE(assigned, KxVariant(sampleList()));
    QCOMPARE(target.type(), 0U);

    target = 5;
    QCOMPARE(target, KxVariant(5));
}

void tst_KxVariant::selfAssignment()
{
    KxVariant value(sampleMap());
    KxVariant &same = value;
    value = same;
    QCOMPARE(value, KxVariant(sampleMap()));
    value = std::move(same);
    QCOMPARE(value, KxVariant(sampleMap()));
}

void tst_KxVariant::containerOfItself()
{
    KxVariantMap map = sampleMap();
    map["self"] = map;
    QCOMPARE(map["self"].toMap(), sampleMap());

    KxVariant value(1);
    value = KxList{value, value};
    QCOMPARE(value.toList(), (KxList{KxVariant(1), KxVariant(1)}));
    value = value.toList().front();
    QCOMPARE(value, KxVariant(1));
}

void tst_KxVariant::nestedContainers()
{
    KxVariantMap inner;
    inner["leaf"] = 42;
    KxVariantMap outer;
    outer["list"] = KxList{KxVariant(inner), KxVariant()};
    const KxVariant value(outer);

    KxVariantMap map = value.toMap();
    const KxList list = map["list"].toList();
    QCOMPARE(list.size(), std::size_t(2));
    QCOMPARE(list.front().toMap()["leaf"].toInt(), 42);
    QCOMPARE(list.back().type(), 0U);
}

void tst_KxVariant::copiesInSeveralThreads()
{
    const KxVariant value(sampleMap());
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([copy = value]() mutable {
            for (int n = 0; n < 1000; ++n) {
                KxVariantMap map = copy.toMap();
                map["n"] = n;
                copy = map;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(value.toMap(), sampleMap());
}

void tst_KxVariant::byteArray_data()
{
    QTest::addColumn<KxByteArray>("value");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("default: empty") << KxByteArray() << QByteArray();
    QTest::newRow("bytes: kept") << KxByteArray("abc", 3) << QByteArray("abc");
    QTest::newRow("part of the bytes: only these") << KxByteArray("abc", 2) << QByteArray("ab");
    QTest::newRow("NULs: kept") << KxByteArray("\0a\0", 3) << QByteArray("\0a\0", 3);
    QTest::newRow("bytes above 127: kept") << KxByteArray("\x80\xFF", 2) << QByteArray("\x80\xFF");
    QTest::newRow("size 0: empty") << KxByteArray("abc", 0) << QByteArray();
    QTest::newRow("size -1: empty") << KxByteArray("abc", -1) << QByteArray();
    QTest::newRow("smallest size: empty")
        << KxByteArray("abc", std::numeric_limits<int>::min()) << QByteArray();
    QTest::newRow("null pointer: empty") << KxByteArray(nullptr, 3) << QByteArray();
}

void tst_KxVariant::byteArray()
{
    QFETCH(KxByteArray, value);
    QFETCH(QByteArray, expected);
    QCOMPARE(value.size(), expected.size());
    QVERIFY(value.constData() != nullptr);
    QCOMPARE(QByteArray(value.constData(), value.size()), expected);
    QCOMPARE(value.constData()[value.size()], '\0');
}

void tst_KxVariant::byteArrayIsDeepCopy()
{
    char data[] = "abc";
    const KxByteArray value(data, 3);
    data[0] = 'x';
    QCOMPARE(value, KxByteArray("abc", 3));
}

void tst_KxVariant::byteArrayEquality()
{
    QVERIFY(KxByteArray("a\0b", 3) == KxByteArray("a\0b", 3));
    QVERIFY(KxByteArray("a\0b", 3) != KxByteArray("a\0c", 3));
    QVERIFY(KxByteArray("a", 1) != KxByteArray("a\0", 2));
    QVERIFY(!(KxByteArray("a", 1) != KxByteArray("a", 1)));
}

void tst_KxVariant::mapInsertsOnAccess()
{
    KxVariantMap map;
    QVERIFY(map.empty());
    QCOMPARE(map.size(), std::size_t(0));

    QCOMPARE(map["key"].type(), 0U);
    QVERIFY(!map.empty());
    QCOMPARE(map.size(), std::size_t(1));

    map["key"] = 1;
    map["key"] = 2;
    QCOMPARE(map.size(), std::size_t(1));
    QCOMPARE(map["key"].toInt(), 2);
}

void tst_KxVariant::mapFind()
{
    KxVariantMap map = sampleMap();
    const KxVariantMap &constant = map;
    QCOMPARE(constant.find("b")->second.toString(), std::string("two"));
    QVERIFY(constant.find("c") == constant.end());
    QVERIFY(constant.find("A") == constant.end());

    map.find("a")->second = "changed";
    QVERIFY(map.find("c") == map.end());
    QCOMPARE(constant.find("a")->second.toString(), std::string("changed"));
    QCOMPARE(map.size(), std::size_t(2));
}

void tst_KxVariant::mapKeepsKeyOrder()
{
    KxVariantMap map;
    for (const char *key : {"b", "\xC3\xA9", "", "a", "B", "ab"})
        map[key] = key;
    std::string keys;
    for (const auto &entry : std::as_const(map))
        keys += '<' + entry.first + '=' + entry.second.toString() + '>';
    QCOMPARE(keys, std::string("<=><B=B><a=a><ab=ab><b=b><\xC3\xA9=\xC3\xA9>"));

    for (auto &entry : map)
        entry.second = 1;
    QCOMPARE(map["ab"].toInt(), 1);
}

void tst_KxVariant::mapEquality()
{
    KxVariantMap map = sampleMap();
    QVERIFY(map == sampleMap());
    QVERIFY(!(map != sampleMap()));
    map["b"] = "other";
    QVERIFY(map != sampleMap());
    map = sampleMap();
    map["c"];
    QVERIFY(map != sampleMap());
}

void tst_KxVariant::mapIsCopied()
{
    KxVariantMap map = sampleMap();
    KxVariantMap copy = map;
    copy["a"] = 2;
    QCOMPARE(map, sampleMap());
    map = copy;
    copy["a"] = 3;
    QCOMPARE(map["a"].toInt(), 2);
}

QTEST_APPLESS_MAIN(tst_KxVariant)
#include "tst_kxvariant.moc"
