#include "pptdata/PPT_Objects.h"

#include "pptdata/EffectRecord.h"

namespace {

// The end of every reading: an object that could not be read as a whole owns nothing.
bool readOrReleased(const QDataStream &stream, PPT_OBJ &object)
{
    if (isOk(stream))
        return true;
    object.release();
    return false;
}

} // namespace

bool PPT_OBJ::streamTo(CStdDataStream & /*stream*/) const
{
    return true;
}

bool PPT_OBJ::streamFrom(CStdDataStream & /*stream*/)
{
    return true;
}

void PPT_OBJ::release() {}

bool PPT_RECT::streamTo(CStdDataStream &stream) const
{
    RecordWriter<32> record;
    record << left << top << width << height;
    record.writeTo(stream);
    return isOk(stream);
}

bool PPT_RECT::streamFrom(CStdDataStream &stream)
{
    RecordReader<32> record(stream);
    record >> left >> top >> width >> height;
    return readOrReleased(stream, *this);
}

bool PPT_PicDat::streamTo(CStdDataStream &stream) const
{
    PPT_RECT::streamTo(stream);
    stream << picDat;
    return isOk(stream);
}

bool PPT_PicDat::streamFrom(CStdDataStream &stream)
{
    PPT_RECT::streamFrom(stream);
    readByteArray(stream, picDat);
    return readOrReleased(stream, *this);
}

void PPT_PicDat::release()
{
    picDat.clear();
}

bool PPT_Shape::streamTo(CStdDataStream &stream) const
{
    stream << shapeId;
    PPT_PicDat::streamTo(stream);
    return isOk(stream);
}

// Where its bytes lie in memory as a whole, they are taken from there, as a page may have many.
bool PPT_Shape::streamFrom(CStdDataStream &stream)
{
    constexpr int kFixedSize = 2 + 32 + 4; // all but the picture's bytes

    const BytesAhead ahead(stream);
    if (ahead.size >= kFixedSize) {
        quint32 length = 0;
        RecordReader<kFixedSize> record(ahead.data);
        record >> shapeId >> left >> top >> width >> height >> length;
        if (length <= ahead.size - kFixedSize) {
            const auto size = static_cast<int>(length);
            picDat = QByteArray(ahead.data + kFixedSize, size);
            stream.skipRawData(kFixedSize + size);
            return true;
        }
    }
    stream >> shapeId;
    PPT_PicDat::streamFrom(stream);
    return readOrReleased(stream, *this);
}

bool PPT_Timing::streamTo(CStdDataStream &stream) const
{
    RecordWriter<kTimingSize> record;
    record << *this;
    record.writeTo(stream);
    return isOk(stream);
}

bool PPT_Timing::streamFrom(CStdDataStream &stream)
{
    RecordReader<kTimingSize> record(stream);
    record >> *this;
    return readOrReleased(stream, *this);
}

// An effect and its timing are one record, as a page may have thousands of them.
bool PPT_Effect::streamTo(CStdDataStream &stream) const
{
    RecordWriter<kEffectSize> record;
    record << *this;
    record.writeTo(stream);
    return isOk(stream);
}

bool PPT_Effect::streamFrom(CStdDataStream &stream)
{
    RecordReader<kEffectSize> record(stream);
    record >> *this;
    return readOrReleased(stream, *this);
}

void PPT_Effect::release() {}

bool PPT_SlideShowTransition::streamTo(CStdDataStream &stream) const
{
    RecordWriter<14> record;
    record << advanceOnClick << advanceOnTime << advanceTime << entryEffect << hidden
           << loopSoundUntilNext;
    record.writeTo(stream);
    return isOk(stream);
}

bool PPT_SlideShowTransition::streamFrom(CStdDataStream &stream)
{
    RecordReader<14> record(stream);
    record >> advanceOnClick >> advanceOnTime >> advanceTime >> entryEffect >> hidden >>
        loopSoundUntilNext;
    return readOrReleased(stream, *this);
}

bool PPT_FileHead::streamTo(CStdDataStream &stream) const
{
    RecordWriter<24> record;
    record << magic << version << width << height;
    record.writeTo(stream);
    return isOk(stream);
}

bool PPT_FileHead::streamFrom(CStdDataStream &stream)
{
    RecordReader<24> record(stream);
    record >> magic >> version >> width >> height;
    return readOrReleased(stream, *this);
}
