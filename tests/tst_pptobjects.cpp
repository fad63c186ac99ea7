#include "Hex.h"
#include "LargestBlock.h"
#include "LogSpy.h"
#include "PlainModel.h"
#include "VirtualSlot.h"
#include "pptdata/PPT_Objects.h"

#include <QtTest>

#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <thread>
#include <type_traits>
#include <vector>

// The model's classes have no virtual destructor, nor have those derived from them here.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace {

struct Calls
{
    int to = 0;
    int from = 0;
    int released = 0;
};

// Counts what arrives through the virtual table.
template <typename T>
class Counting : public T
{
public:
    bool streamTo(CStdDataStream &stream) const override
    {
        ++calls.to;
        return T::streamTo(stream);
    }
    bool streamFrom(CStdDataStream &stream) override
    {
        ++calls.from;
        return T::streamFrom(stream);
    }
    void release() override
    {
        ++calls.released;
        T::release();
    }
    mutable Calls calls;
};

using Object = std::shared_ptr<PPT_OBJ>;

// One leaf class with an object of it and that object's bytes, for tables over all classes.
struct Kind
{
    QByteArray name;
    QByteArray bytes;
    Object golden;

    std::function<Object()> fresh;
    std::function<Object(const PPT_OBJ &)> copy;
    std::function<QStringList(const PPT_OBJ &)> fields;
    std::function<void(PPT_OBJ &, QRandomGenerator &)> setRandom;
    std::function<void(PPT_OBJ &, QDataStream &)> readPlainly;
    std::function<void(const PPT_OBJ &, QDataStream &)> writePlainly;
    // The golden fields that lie within the first bytes; the others zero, the picture gone.
    std::function<QStringList(int)> fieldsWithin;
    std::function<Calls(CStdDataStream &)> callsOfReading;
    std::function<Calls(CStdDataStream &)> callsOfWriting;
};

template <typename T>
Kind kindOf(const char *name, const char *bytes, const T &golden)
{
    const int size = hex(bytes).size();
    Kind kind{name, hex(bytes), std::make_shared<T>(golden), {}, {}, {}, {}, {}, {}, {}, {}, {}};
    kind.fresh = [] { return std::make_shared<T>(); };
    kind.copy = [](const PPT_OBJ &o) { return std::make_shared<T>(static_cast<const T &>(o)); };
    kind.fields = [](const PPT_OBJ &o) { return PlainModel::fields<T>(static_cast<const T &>(o)); };
    kind.setRandom = [](PPT_OBJ &o, QRandomGenerator &random) {
        PlainModel::setRandom(random, static_cast<T &>(o));
    };
    kind.readPlainly = [](PPT_OBJ &o, QDataStream &stream) {
        PlainModel::read(stream, static_cast<T &>(o));
        if (stream.status() != QDataStream::Ok)
            o.release();
    };
    kind.writePlainly = [](const PPT_OBJ &o, QDataStream &stream) {
        PlainModel::write(stream, static_cast<const T &>(o));
    };
    kind.fieldsWithin = [golden, size](int cut) {
        T object = golden;
        PlainModel::cutAfter(cut, object);
        if (cut < size)
            object.release();
        return PlainModel::fields<T>(object);
    };
    kind.callsOfReading = [](CStdDataStream &stream) {
        Counting<T> object;
        object.T::streamFrom(stream);
        return object.calls;
    };
    kind.callsOfWriting = [](CStdDataStream &stream) {
        const Counting<T> object;
        object.T::streamTo(stream);
        return object.calls;
    };
    return kind;
}

#define RECT_BYTES "3FB99999A0000000 C004000000000000 4059000000000000 3FE0000000000000 "
#define TIMING_BYTES \
    "3FF0000000000000 FF 4000000000000000 4008000000000000 4010000000000000 12 " \
    "4014000000000000 80 34 FE 7F 4018000000000000 03"

void setRect(PPT_RECT &rect)
{
    rect.left = 0.1F;
    rect.top = -2.5F;
    rect.width = 100;
    rect.height = 0.5F;
}

void setTiming(PPT_Timing &timing)
{
    timing.accelerate = 1;
    timing.autoReverse = -1;
    timing.decelerate = 2;
    timing.duration = 3;
    timing.timingF5 = 4;
    timing.timingB6 = 0x12;
    timing.timingF7 = 5;
    timing.timingB8 = -128;
    timing.timingB9 = 0x34;
    timing.timingB10 = -2;
    timing.timingB11 = 127;
    timing.timingF12 = 6;
    timing.triggerType = 3;
}

// No two fields of an object have the same value, and no value looks the same backwards.
std::vector<Kind> kinds()
{
    PPT_RECT rect;
    setRect(rect);
    PPT_PicDat picture;
    setRect(picture);
    picture.picDat = hex("FF00D8");
    PPT_Shape shape;
    setRect(shape);
    shape.picDat = hex("89504E470D");
    shape.shapeId = 0xA1B2;
    PPT_Timing timing;
    setTiming(timing);
    PPT_Effect effect;
    effect.effectNo = -2;
    effect.shapeId = 0xA1B2;
    effect.effectParamA = 0x0102;
    effect.effectParamB = -32767;
    effect.exit = -1;
    setTiming(effect.timing);
    PPT_SlideShowTransition transition;
    transition.advanceOnClick = -1;
    transition.advanceOnTime = 2;
    transition.advanceTime = 7;
    transition.entryEffect = -32510;
    transition.hidden = -127;
    transition.loopSoundUntilNext = 127;
    PPT_FileHead head;
    head.dpi = 300;
    head.width = 720;
    head.height = 540;
    PPT_FileHead foreign = head;
    foreign.magic = -2130574328;
    foreign.version = 0x12345678;

    return {
        kindOf("PPT_RECT: 32 bytes", RECT_BYTES, rect),
        kindOf("PPT_PicDat: 36 bytes and the picture", RECT_BYTES "00000003 FF00D8", picture),
        kindOf("PPT_Shape: 38 bytes and the picture", "A1B2" RECT_BYTES "00000005 89504E470D",
               shape),
        kindOf("PPT_Timing: 55 bytes", TIMING_BYTES, timing),
        kindOf("PPT_Effect: 64 bytes", "FFFE A1B2 0102 8001 FF" TIMING_BYTES, effect),
        kindOf("PPT_SlideShowTransition: 14 bytes", "FF 02 401C000000000000 8102 81 7F",
               transition),
        kindOf("PPT_FileHead: 24 bytes", "5054414D 00000002 4086800000000000 4080E00000000000",
               head),
        kindOf("PPT_FileHead: nothing is judged",
               "81020408 12345678 4086800000000000 4080E00000000000", foreign),
    };
}

const std::vector<quint32> kSeeds{1, 20, 300, 4000};

} // namespace

Q_DECLARE_METATYPE(Kind)

class TestPptObjects : public QObject
{
    Q_OBJECT

private:
    std::optional<LogSpy> log;

    static void everyKind()
    {
        QTest::addColumn<Kind>("kind");
        for (const Kind &kind : kinds())
            QTest::newRow(kind.name.constData()) << kind;
    }

    static QByteArray written(const PPT_OBJ &object)
    {
        QByteArray bytes;
        CStdDataStream stream(&bytes, QIODevice::WriteOnly);
        return object.streamTo(stream) ? bytes : QByteArray("(failed)");
    }

private Q_SLOTS:
    void init() { log.emplace(); }
    void cleanup()
    {
        QCOMPARE(log->takeLines(), QStringList());
        log.reset();
    }

    void classes()
    {
        QVERIFY((std::is_base_of_v<QDataStream, CStdDataStream>));
        QVERIFY((std::is_base_of_v<PPT_OBJ, PPT_RECT>));
        QVERIFY((std::is_base_of_v<PPT_RECT, PPT_PicDat>));
        QVERIFY((std::is_base_of_v<PPT_PicDat, PPT_Shape>));
        QVERIFY((std::is_base_of_v<PPT_OBJ, PPT_Timing>));
        QVERIFY((std::is_base_of_v<PPT_OBJ, PPT_Effect>));
        QVERIFY((std::is_base_of_v<PPT_OBJ, PPT_SlideShowTransition>));
        QVERIFY((std::is_base_of_v<PPT_OBJ, PPT_FileHead>));

        QVERIFY(!std::has_virtual_destructor_v<PPT_OBJ>);
        QVERIFY(!std::has_virtual_destructor_v<PPT_RECT>);
        QVERIFY(!std::has_virtual_destructor_v<PPT_PicDat>);
        QVERIFY(!std::has_virtual_destructor_v<PPT_Shape>);
        QVERIFY(!std::has_virtual_destructor_v<PPT_Timing>);
        QVERIFY(!std::has_virtual_destructor_v<PPT_Effect>);
        QVERIFY(!std::has_virtual_destructor_v<PPT_SlideShowTransition>);
        QVERIFY(!std::has_virtual_destructor_v<PPT_FileHead>);
    }

    void fieldTypes()
    {
        QVERIFY((std::is_same_v<decltype(PPT_RECT::left), float>));
        QVERIFY((std::is_same_v<decltype(PPT_PicDat::picDat), QByteArray>));
        QVERIFY((std::is_same_v<decltype(PPT_Shape::shapeId), quint16>));
        QVERIFY((std::is_same_v<decltype(PPT_Timing::autoReverse), qint8>));
        QVERIFY((std::is_same_v<decltype(PPT_Timing::timingB6), qint8>));
        QVERIFY((std::is_same_v<decltype(PPT_Timing::timingB8), qint8>));
        QVERIFY((std::is_same_v<decltype(PPT_Timing::timingB9), qint8>));
        QVERIFY((std::is_same_v<decltype(PPT_Timing::timingB10), qint8>));
        QVERIFY((std::is_same_v<decltype(PPT_Timing::timingB11), qint8>));
        QVERIFY((std::is_same_v<decltype(PPT_Timing::triggerType), qint8>));
        QVERIFY((std::is_same_v<decltype(PPT_Effect::effectNo), qint16>));
        QVERIFY((std::is_same_v<decltype(PPT_Effect::shapeId), quint16>));
        QVERIFY((std::is_same_v<decltype(PPT_Effect::effectParamA), qint16>));
        QVERIFY((std::is_same_v<decltype(PPT_Effect::effectParamB), qint16>));
        QVERIFY((std::is_same_v<decltype(PPT_Effect::exit), qint8>));
        QVERIFY((std::is_same_v<decltype(PPT_Effect::timing), PPT_Timing>));
        QVERIFY((std::is_same_v<decltype(PPT_SlideShowTransition::advanceOnClick), qint8>));
        QVERIFY((std::is_same_v<decltype(PPT_SlideShowTransition::advanceOnTime), qint8>));
        QVERIFY((std::is_same_v<decltype(PPT_SlideShowTransition::entryEffect), qint16>));
        QVERIFY((std::is_same_v<decltype(PPT_SlideShowTransition::hidden), qint8>));
        QVERIFY((std::is_same_v<decltype(PPT_SlideShowTransition::loopSoundUntilNext), qint8>));
        QVERIFY((std::is_same_v<decltype(PPT_FileHead::magic), qint32>));
        QVERIFY((std::is_same_v<decltype(PPT_FileHead::version), qint32>));
        QVERIFY((std::is_same_v<decltype(PPT_FileHead::dpi), float>));
    }

    // The table's order, and which class has an operation of its own.
    void virtualTable()
    {
        class Next : public PPT_Shape
        {
        public:
            virtual void next() {}
        };
        QCOMPARE(slot(&PPT_OBJ::streamTo), qptrdiff(0));
        QCOMPARE(slot(&PPT_OBJ::streamFrom), qptrdiff(1));
        QCOMPARE(slot(&PPT_OBJ::release), qptrdiff(2));
        QCOMPARE(slot(&Next::next), qptrdiff(3));

        using Release = void (PPT_OBJ::*)();
        QVERIFY((std::is_same_v<decltype(&PPT_RECT::release), Release>));
        QVERIFY((std::is_same_v<decltype(&PPT_PicDat::release), void (PPT_PicDat::*)()>));
        QVERIFY((std::is_same_v<decltype(&PPT_Shape::release), void (PPT_PicDat::*)()>));
        QVERIFY((std::is_same_v<decltype(&PPT_Timing::release), Release>));
        QVERIFY((std::is_same_v<decltype(&PPT_Effect::release), void (PPT_Effect::*)()>));
        QVERIFY((std::is_same_v<decltype(&PPT_SlideShowTransition::release), Release>));
        QVERIFY((std::is_same_v<decltype(&PPT_FileHead::release), Release>));
        QVERIFY((std::is_same_v<decltype(&PPT_Shape::streamTo),
                                bool (PPT_Shape::*)(CStdDataStream &) const>));
        QVERIFY((std::is_same_v<decltype(&PPT_Shape::streamFrom),
                                bool (PPT_Shape::*)(CStdDataStream &)>));
    }

    void anObjectAsSuchHasNoData()
    {
        PPT_OBJ object;
        QByteArray bytes;
        CStdDataStream out(&bytes, QIODevice::WriteOnly);
        QVERIFY(object.streamTo(out));
        QCOMPARE(bytes, QByteArray());
        CStdDataStream in(QByteArray("x"));
        QVERIFY(object.streamFrom(in));
        QCOMPARE(in.device()->pos(), 0);
        object.release();

        out.setStatus(QDataStream::WriteFailed);
        in.setStatus(QDataStream::ReadPastEnd);
        QVERIFY(object.streamTo(out));
        QVERIFY(object.streamFrom(in));
    }

    void theStreamHasDefaultSettings()
    {
        QByteArray bytes;
        const CStdDataStream out(&bytes, QIODevice::WriteOnly);
        const CStdDataStream in(bytes);
        const QDataStream plain;
        for (const QDataStream *stream :
             {static_cast<const QDataStream *>(&out), static_cast<const QDataStream *>(&in)}) {
            QCOMPARE(stream->byteOrder(), QDataStream::BigEndian);
            QCOMPARE(stream->version(), plain.version());
            QCOMPARE(stream->floatingPointPrecision(), QDataStream::DoublePrecision);
            QCOMPARE(stream->status(), QDataStream::Ok);
        }
    }

    void theStreamReadsItsOwnCopy()
    {
        QByteArray bytes = hex("0102");
        CStdDataStream stream(bytes);
        bytes.fill('\x7F');
        quint16 value = 0;
        stream >> value;
        QCOMPARE(value, quint16(0x0102));
        QVERIFY(stream.atEnd());
    }

    void byteArrays_data()
    {
        QTest::addColumn<QByteArray>("array");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("plainBytes");
        QTest::newRow("null: as empty") << QByteArray() << hex("00000000") << hex("FFFFFFFF");
        QTest::newRow("empty") << QByteArray("") << hex("00000000") << hex("00000000");
        QTest::newRow("a NUL") << QByteArray("\0", 1) << hex("00000001 00") << hex("00000001 00");
        QTest::newRow("every length byte has its place")
            << QByteArray(0x010203, 'x') << hex("00010203") + QByteArray(0x010203, 'x')
            << hex("00010203") + QByteArray(0x010203, 'x');
    }
    void byteArrays()
    {
        QFETCH(QByteArray, array);
        QByteArray written;
        CStdDataStream stream(&written, QIODevice::WriteOnly);
        CStdDataStream &returned = stream << array;
        QCOMPARE(&returned, &stream);
        QCOMPARE(stream.status(), QDataStream::Ok);
        QTEST(written, "bytes");

        QByteArray writtenPlainly;
        CStdDataStream other(&writtenPlainly, QIODevice::WriteOnly);
        static_cast<QDataStream &>(other) << array;
        QTEST(writtenPlainly, "plainBytes");
    }

    void nullByteArraysFromSeveralThreads()
    {
        std::atomic<int> right{0};
        std::vector<std::thread> writers;
        for (int t = 0; t < 8; ++t) {
            writers.emplace_back([&] {
                for (int i = 0; i < 100; ++i)
                    right += written(PPT_Shape()) == QByteArray(38, '\0');
            });
        }
        for (std::thread &writer : writers)
            writer.join();
        QCOMPARE(right.load(), 800);
    }

    // Whatever was in the memory before.
    void freshObjectsAreZero()
    {
        const auto fresh = [](auto type) {
            using T = decltype(type);
            alignas(T) std::array<unsigned char, sizeof(T)> memory;
            memory.fill(0xAA);
            T *object = new (memory.data()) T;
            const T copy = *object;
            object->T::~T();
            return copy;
        };
        QCOMPARE(
            PlainModel::fields(fresh(PPT_RECT())),
            QStringList({QStringLiteral("left=0 (00000000)"), QStringLiteral("top=0 (00000000)"),
                         QStringLiteral("width=0 (00000000)"),
                         QStringLiteral("height=0 (00000000)")}));
        QCOMPARE(PlainModel::fields(fresh(PPT_PicDat())).constLast(),
                 QStringLiteral("picDat=null"));
        QCOMPARE(written(fresh(PPT_PicDat())), QByteArray(36, '\0'));
        QCOMPARE(written(fresh(PPT_Shape())), QByteArray(38, '\0'));
        QCOMPARE(written(fresh(PPT_Timing())), QByteArray(55, '\0'));
        QCOMPARE(written(fresh(PPT_Effect())), QByteArray(64, '\0'));
        QCOMPARE(written(fresh(PPT_SlideShowTransition())), QByteArray(14, '\0'));
        const PPT_FileHead head = fresh(PPT_FileHead());
        QCOMPARE(written(head), hex("5054414D 00000002") + QByteArray(16, '\0'));
        QCOMPARE(head.magic, 0x5054414D);
        QCOMPARE(head.version, 2);
        QCOMPARE(head.dpi, 72.0F);
        QCOMPARE(head.width, 0.0F);
        QCOMPARE(head.height, 0.0F);
    }

    void golden_data() { everyKind(); }
    void golden()
    {
        QFETCH(Kind, kind);
        QByteArray bytes("before");
        CStdDataStream out(&bytes, QIODevice::WriteOnly | QIODevice::Append);
        QCOMPARE(kind.golden->streamTo(out), true);
        QCOMPARE(out.status(), QDataStream::Ok);
        QCOMPARE(bytes.toHex(), ("before" + kind.bytes).toHex());

        // Exactly the object's bytes are taken, also into an object that has been used.
        QRandomGenerator random(1);
        CStdDataStream in(kind.bytes + kind.bytes + "after");
        const Object object = kind.fresh();
        for (int i = 1; i <= 2; ++i) {
            QCOMPARE(object->streamFrom(in), true);
            QCOMPARE(in.status(), QDataStream::Ok);
            QCOMPARE(in.device()->pos(), qint64(i * kind.bytes.size()));
            QCOMPARE(kind.fields(*object), kind.fields(*kind.golden));
            kind.setRandom(*object, random);
        }
    }

    void goldenSizes()
    {
        QVector<int> sizes;
        for (const Kind &kind : kinds())
            sizes << kind.bytes.size();
        QCOMPARE(sizes, (QVector<int>{32, 32 + 4 + 3, 2 + 32 + 4 + 5, 55, 64, 14, 24, 24}));
    }

    void everyPrefix_data() { everyKind(); }
    void everyPrefix()
    {
        QFETCH(Kind, kind);
        QRandomGenerator random(2);
        const Object used = kind.fresh();
        for (int cut = 0; cut < kind.bytes.size(); ++cut) {
            const QStringList where{QStringLiteral("of %1 bytes").arg(cut)};
            kind.setRandom(*used, random);
            for (const Object &before : {kind.fresh(), used}) {
                CStdDataStream stream(kind.bytes.left(cut));
                const Object object = kind.copy(*before);
                QCOMPARE(object->streamFrom(stream), false);
                QCOMPARE(where + kind.fields(*object), where + kind.fieldsWithin(cut));
                QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
                QVERIFY(stream.atEnd());

                QDataStream plain(kind.bytes.left(cut));
                const Object reference = kind.copy(*before);
                kind.readPlainly(*reference, plain);
                QCOMPARE(where + kind.fields(*object), where + kind.fields(*reference));
            }
        }
    }

    void randomBytes_data() { everyKind(); }
    void randomBytes()
    {
        QFETCH(Kind, kind);
        for (const quint32 seed : kSeeds) {
            qInfo("seed %u", seed);
            QRandomGenerator random(seed);
            for (int i = 0; i < 300; ++i) {
                QByteArray bytes(int(random.bounded(2 * kind.bytes.size())), '\0');
                for (char &byte : bytes)
                    byte = char(random.bounded(256));
                // A picture's length among them, of which few are there otherwise.
                if (bytes.size() > 37 && random.bounded(2) == 0)
                    bytes.replace(random.bounded(2) == 0 ? 34 : 32, 3, QByteArray(3, '\0'));

                CStdDataStream stream(bytes);
                const Object object = kind.fresh();
                kind.setRandom(*object, random);
                const Object reference = kind.copy(*object);
                const bool ok = object->streamFrom(stream);

                QDataStream plain(bytes);
                kind.readPlainly(*reference, plain);
                QCOMPARE(ok, plain.status() == QDataStream::Ok);
                QCOMPARE(stream.status(), plain.status());
                QCOMPARE(stream.device()->pos(), plain.device()->pos());
                QCOMPARE(kind.fields(*object), kind.fields(*reference));
            }
        }
    }

    void roundTrips_data() { everyKind(); }
    void roundTrips()
    {
        QFETCH(Kind, kind);
        for (const quint32 seed : kSeeds) {
            qInfo("seed %u", seed);
            QRandomGenerator random(seed);
            for (int i = 0; i < 300; ++i) {
                const Object object = kind.fresh();
                kind.setRandom(*object, random);
                const QByteArray bytes = written(*object);

                QByteArray plainBytes;
                QDataStream plain(&plainBytes, QIODevice::WriteOnly);
                kind.writePlainly(*object, plain);
                QCOMPARE(bytes.toHex(), plainBytes.toHex());

                CStdDataStream stream(bytes);
                const Object again = kind.fresh();
                QVERIFY(again->streamFrom(stream));
                QVERIFY(stream.atEnd());
                QCOMPARE(kind.fields(*again), kind.fields(*object));
            }
        }
    }

    void floats_data()
    {
        using Limits = std::numeric_limits<float>;
        QTest::addColumn<float>("value");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("0.1") << 0.1F << hex("3FB99999A0000000");
        QTest::newRow("0") << 0.0F << hex("0000000000000000");
        QTest::newRow("-0") << -0.0F << hex("8000000000000000");
        QTest::newRow("largest") << Limits::max() << hex("47EFFFFFE0000000");
        QTest::newRow("smallest") << Limits::denorm_min() << hex("36A0000000000000");
        QTest::newRow("smallest normal") << Limits::min() << hex("3810000000000000");
        QTest::newRow("infinity") << Limits::infinity() << hex("7FF0000000000000");
        QTest::newRow("-infinity") << -Limits::infinity() << hex("FFF0000000000000");
        QTest::newRow("not a number") << Limits::quiet_NaN() << hex("7FF8000000000000");
    }
    void floats()
    {
        QFETCH(float, value);
        QFETCH(QByteArray, bytes);
        PPT_RECT rect;
        rect.top = value;
        QCOMPARE(written(rect).toHex(),
                 (QByteArray(8, '\0') + bytes + QByteArray(16, '\0')).toHex());
        CStdDataStream stream(written(rect));
        PPT_RECT again;
        QVERIFY(again.streamFrom(stream));
        QCOMPARE(PlainModel::fields(again), PlainModel::fields(rect));
    }

    void doublesAreNarrowed_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<float>("value");
        QTest::newRow("the double 0.1") << hex("3FB999999999999A") << 0.1F;
        QTest::newRow("just above 1") << hex("3FF0000000400000") << 1.0F;
        QTest::newRow("below the smallest") << hex("3680000000000000") << 0.0F;
    }
    void doublesAreNarrowed()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(float, value);
        CStdDataStream stream(bytes + QByteArray(24, '\0'));
        PPT_RECT rect;
        QVERIFY(rect.streamFrom(stream));
        QCOMPARE(PlainModel::inWords(rect.left), PlainModel::inWords(value));
    }

    void signedBytes()
    {
        for (int byte = 0; byte < 256; ++byte) {
            const int value = byte < 128 ? byte : byte - 256;
            const QByteArray one(1, char(byte));

            const QByteArray effectBytes = QByteArray(8, '\0') + one + QByteArray(54, '\0') + one;
            CStdDataStream effectStream(effectBytes);
            PPT_Effect effect;
            QVERIFY(effect.streamFrom(effectStream));
            QCOMPARE(int(effect.exit), value);
            QCOMPARE(int(effect.timing.triggerType), value);
            QCOMPARE(written(effect), effectBytes);

            const QByteArray transitionBytes = one + one + QByteArray(10, '\0') + one + one;
            CStdDataStream transitionStream(transitionBytes);
            PPT_SlideShowTransition transition;
            QVERIFY(transition.streamFrom(transitionStream));
            QCOMPARE(int(transition.advanceOnClick), value);
            QCOMPARE(int(transition.advanceOnTime), value);
            QCOMPARE(int(transition.hidden), value);
            QCOMPARE(int(transition.loopSoundUntilNext), value);
            QCOMPARE(written(transition), transitionBytes);
        }
    }

    void resolutionIsNotStreamed()
    {
        PPT_FileHead head;
        head.dpi = 300;
        QCOMPARE(written(head).size(), 24);
        PPT_FileHead fresh;
        CStdDataStream first(written(head));
        QVERIFY(fresh.streamFrom(first));
        QCOMPARE(fresh.dpi, 72.0F);
        fresh.dpi = 96;
        CStdDataStream second(written(head));
        QVERIFY(fresh.streamFrom(second));
        QCOMPARE(fresh.dpi, 96.0F);
        CStdDataStream none((QByteArray()));
        QVERIFY(!fresh.streamFrom(none));
        QCOMPARE(fresh.dpi, 96.0F);
    }

    void picturesWritten_data()
    {
        QTest::addColumn<QByteArray>("picture");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("null: length 0") << QByteArray() << hex("00000000");
        QTest::newRow("empty: length 0") << QByteArray("") << hex("00000000");
        QTest::newRow("a NUL") << QByteArray("\0", 1) << hex("00000001 00");
        QTest::newRow("three bytes") << hex("0A0B0C") << hex("00000003 0A0B0C");
    }
    void picturesWritten()
    {
        QFETCH(QByteArray, picture);
        QFETCH(QByteArray, bytes);
        PPT_Shape shape;
        shape.shapeId = 7;
        shape.picDat = picture;
        QCOMPARE(written(shape).toHex(), (hex("0007") + QByteArray(32, '\0') + bytes).toHex());
        QCOMPARE(shape.picDat.isNull(), picture.isNull());

        PPT_Shape again;
        CStdDataStream stream(written(shape));
        QVERIFY(again.streamFrom(stream));
        QCOMPARE(again.picDat, picture);
        QVERIFY(!again.picDat.isNull());
    }

    void picturesRead_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("complete");
        QTest::addColumn<QByteArray>("picture");
        const QByteArray megabytes(3 * 1024 * 1024, 'm');
        QTest::newRow("length 0: empty") << hex("00000000") << true << QByteArray("");
        QTest::newRow("length 0xFFFFFFFF: null") << hex("FFFFFFFF") << true << QByteArray();
        QTest::newRow("one byte") << hex("00000001 80") << true << hex("80");
        QTest::newRow("megabytes") << hex("00300000") + megabytes << true << megabytes;
        QTest::newRow("one missing: cleared") << hex("00000003 0102") << false << QByteArray();
        QTest::newRow("all missing: cleared") << hex("00000001") << false << QByteArray();
        QTest::newRow("one of megabytes missing: cleared")
            << hex("00300001") + megabytes << false << QByteArray();
        QTest::newRow("0x7FFFFFFF announced: cleared")
            << hex("7FFFFFFF") + megabytes << false << QByteArray();
        QTest::newRow("0x80000000 announced: cleared")
            << hex("80000000 01") << false << QByteArray();
        QTest::newRow("0xFFFFFFFE announced: cleared")
            << hex("FFFFFFFE 01") << false << QByteArray();
    }
    void picturesRead()
    {
        QFETCH(QByteArray, bytes);
        CStdDataStream stream(hex("A1B2" RECT_BYTES) + bytes);
        PPT_Shape shape;
        shape.picDat = "before";
        QTEST(shape.streamFrom(stream), "complete");
        QTEST(shape.picDat, "picture");
        QFETCH(QByteArray, picture);
        QCOMPARE(shape.picDat.isNull(), picture.isNull());
        QVERIFY(stream.atEnd());
        QCOMPARE(shape.shapeId, quint16(0xA1B2));
        QCOMPARE(shape.left, 0.1F);
        QCOMPARE(shape.height, 0.5F);
    }

    void thePictureIsTheShapesOwn()
    {
        QByteArray bytes = written(PPT_PicDat());
        bytes.replace(32, 4, hex("00000004 01020304"));
        CStdDataStream stream(bytes);
        PPT_PicDat picture;
        QVERIFY(picture.streamFrom(stream));
        const char *begin = bytes.constData();
        QVERIFY(picture.picDat.constData() < begin ||
                picture.picDat.constData() >= begin + bytes.size());
        QVERIFY(picture.picDat.isDetached());
    }

    // A length is only a claim: no more is allocated than is there.
    void announcedLengthIsNotAllocated_data()
    {
        QTest::addColumn<quint32>("announced");
        QTest::addColumn<int>("there");
        QTest::newRow("3001 of 3000") << 3001U << 3000;
        QTest::newRow("1 MB of 3000") << 0x100000U << 3000;
        QTest::newRow("16 MB of 3000") << 0x1000000U << 3000;
        QTest::newRow("16 MB of 15 MB") << 0x1000000U << 0xF00000;
        QTest::newRow("0x7FFFFFFF of none") << 0x7FFFFFFFU << 0;
        QTest::newRow("0x7FFFFFFF of 3 MB") << 0x7FFFFFFFU << 0x300000;
        QTest::newRow("0x80000000 of 3000") << 0x80000000U << 3000;
        QTest::newRow("0xFFFFFFFE of 3000") << 0xFFFFFFFEU << 3000;
    }
    void announcedLengthIsNotAllocated()
    {
        QFETCH(quint32, announced);
        QFETCH(int, there);
        const QByteArray length = QByteArray::number(announced, 16).rightJustified(8, '0');
        const QByteArray bytes =
            QByteArray(32, 'p') + QByteArray::fromHex(length) + QByteArray(there, 'p');
        CStdDataStream stream(bytes);
        PPT_PicDat picture;
        largestBlock = 0;
        const bool complete = picture.streamFrom(stream);
        const size_t largest = largestBlock;
        QVERIFY(!complete);
        QVERIFY(picture.picDat.isNull());
        QVERIFY(stream.atEnd());
        QVERIFY2(largest <= size_t(there) + 100, qPrintable(QString::number(largest)));
    }

    void whatIsThereIsAllocatedOnce()
    {
        const QByteArray bytes = QByteArray(32, 'p') + hex("00300001") + QByteArray(0x300001, 'p');
        CStdDataStream stream(bytes);
        PPT_PicDat picture;
        largestBlock = 0;
        const bool complete = picture.streamFrom(stream);
        const size_t largest = largestBlock;
        QVERIFY(complete);
        QVERIFY(picture.picDat == bytes.mid(36));
        QVERIFY2(largest <= 0x300001 + 100, qPrintable(QString::number(largest)));
        QVERIFY(kSanitized || largest > 0x300000);
    }

    void releaseEmptiesThePictureOnly_data() { everyKind(); }
    void releaseEmptiesThePictureOnly()
    {
        QFETCH(Kind, kind);
        QStringList expected = kind.fields(*kind.golden);
        expected.replaceInStrings(QRegularExpression(QStringLiteral("^picDat=.*")),
                                  QStringLiteral("picDat=null"));
        kind.golden->release();
        QCOMPARE(kind.fields(*kind.golden), expected);
        kind.golden->release();
        QCOMPARE(kind.fields(*kind.golden), expected);
    }

    // Parts are read and written by their classes' own functions; release() goes through the table,
    // once for every part that notices the end of the data.
    void virtualCalls_data() { everyKind(); }
    void virtualCalls()
    {
        QFETCH(Kind, kind);
        QByteArray bytes;
        CStdDataStream out(&bytes, QIODevice::WriteOnly);
        const Calls writing = kind.callsOfWriting(out);
        QCOMPARE(writing.to, 0);
        QCOMPARE(writing.from, 0);
        QCOMPARE(writing.released, 0);

        const bool isShape = kind.name.startsWith("PPT_Shape");
        const bool isPicture = isShape || kind.name.startsWith("PPT_PicDat");
        const int rectEnd = isShape ? 34 : 32;
        for (int cut = 0; cut <= kind.bytes.size(); ++cut) {
            CStdDataStream in(kind.bytes.left(cut));
            const Calls reading = kind.callsOfReading(in);
            QCOMPARE(reading.to, 0);
            QCOMPARE(reading.from, 0);
            const int notice = cut == kind.bytes.size() ? 0
                               : !isPicture             ? 1
                                                        : 1 + int(isShape) + int(cut < rectEnd);
            QVERIFY2(reading.released == notice,
                     qPrintable(QStringLiteral("%1 of %2 bytes: released %3 times")
                                    .arg(cut)
                                    .arg(kind.bytes.size())
                                    .arg(reading.released)));
        }
    }

    void writingThatFails_data() { everyKind(); }
    void writingThatFails()
    {
        QFETCH(Kind, kind);
        const QStringList before = kind.fields(*kind.golden);

        CStdDataStream readOnly((QByteArray()));
        QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (QBuffer): ReadOnly device");
        QCOMPARE(kind.golden->streamTo(readOnly), false);
        QCOMPARE(readOnly.status(), QDataStream::WriteFailed);

        // A stream that has failed takes nothing more, and stays failed.
        QByteArray bytes;
        CStdDataStream failed(&bytes, QIODevice::WriteOnly);
        failed.setStatus(QDataStream::WriteFailed);
        QCOMPARE(kind.golden->streamTo(failed), false);
        QCOMPARE(bytes, QByteArray());
        QCOMPARE(kind.fields(*kind.golden), before);
    }

    // Also where the data would do.
    void readingFromAFailedStream_data() { everyKind(); }
    void readingFromAFailedStream()
    {
        QFETCH(Kind, kind);
        CStdDataStream stream(kind.bytes + kind.bytes);
        stream.setStatus(QDataStream::ReadCorruptData);
        const Object object = kind.fresh();
        QCOMPARE(object->streamFrom(stream), false);
        QCOMPARE(stream.status(), QDataStream::ReadCorruptData);
        QCOMPARE(stream.device()->pos(), qint64(kind.bytes.size()));
        kind.golden->release();
        QCOMPARE(kind.fields(*object), kind.fields(*kind.golden));
    }

    void anEffectWithoutItsTiming()
    {
        CStdDataStream stream(hex("FFFE A1B2 0102 8001 FF"));
        PPT_Effect effect;
        setTiming(effect.timing);
        QVERIFY(!effect.streamFrom(stream));
        QCOMPARE(effect.exit, qint8(-1));
        QCOMPARE(effect.effectParamB, qint16(-32767));
        QCOMPARE(written(effect.timing), QByteArray(55, '\0'));
    }
};

QTEST_APPLESS_MAIN(TestPptObjects)
#include "tst_pptobjects.moc"
