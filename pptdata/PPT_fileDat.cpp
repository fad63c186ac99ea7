#include "pptdata/PPT_fileDat.h"

#include "pptdata/EffectRecord.h"

#include <algorithm>

// Children are deleted by their own types on purpose: the model's classes have no virtual
// destructor.
#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wdelete-non-virtual-dtor"
#endif

namespace {

template <typename Child>
void releaseAndDelete(Child *child)
{
    if (child) {
        child->release();
        delete child;
    }
}

template <typename Child>
void writeList(CStdDataStream &stream, const std::list<Child *> &list)
{
    stream << static_cast<qint32>(list.size());
    for (const Child *child : list) {
        if (child)
            child->streamTo(stream);
    }
}

// The count is only a claim. Once the stream is exhausted every further child would be empty, and
// all of them would be released in the end, so the rest is not made.
template <typename Child>
void readList(CStdDataStream &stream, std::list<Child *> &list)
{
    qint32 count = 0;
    stream >> count;
    for (qint32 i = 0; i < count && !isExhausted(stream); ++i) {
        auto *child = new Child;
        child->Child::streamFrom(stream);
        list.push_back(child);
    }
}

// Effects are many and small: as long as whole ones are there, they are taken from where they lie.
void readList(CStdDataStream &stream, std::list<PPT_Effect *> &list)
{
    qint32 count = 0;
    stream >> count;
    const BytesAhead ahead(stream);
    const auto whole = static_cast<qint32>(qBound<qint64>(0, count, ahead.size / kEffectSize));
    for (qint32 i = 0; i < whole; ++i) {
        list.push_back(new PPT_Effect);
        RecordReader<kEffectSize> record(ahead.data + qptrdiff{i} * kEffectSize);
        record >> *list.back();
    }
    if (whole > 0)
        stream.skipRawData(whole * kEffectSize);
    for (qint32 i = whole; i < count && !isExhausted(stream); ++i) {
        list.push_back(new PPT_Effect);
        list.back()->PPT_Effect::streamFrom(stream);
    }
}

} // namespace

bool PPT_Page::streamTo(CStdDataStream &stream) const
{
    stream << static_cast<qint16>(pageId);
    // By the plain stream: a null image is written as such, unlike a shape's picture.
    static_cast<QDataStream &>(stream) << pageImage;
    transition.PPT_SlideShowTransition::streamTo(stream);
    writeList(stream, shapes);
    writeList(stream, effects);
    return isOk(stream);
}

bool PPT_Page::streamFrom(CStdDataStream &stream)
{
    stream >> pageId;
    readByteArray(stream, pageImage);
    transition.PPT_SlideShowTransition::streamFrom(stream);
    readList(stream, shapes);
    readList(stream, effects);
    if (isOk(stream))
        return true;
    release();
    return false;
}

void PPT_Page::release()
{
    ClearDat(shapes);
    ClearDat(effects);
}

void PPT_Page::ClearDat(std::list<PPT_Shape *> &list)
{
    std::for_each(list.begin(), list.end(), releaseAndDelete<PPT_Shape>);
    list.clear();
}

void PPT_Page::ClearDat(std::list<PPT_Effect *> &list)
{
    std::for_each(list.begin(), list.end(), releaseAndDelete<PPT_Effect>);
    list.clear();
}

PPT_Shape *PPT_Page::getPage(unsigned short id)
{
    const auto found = std::find_if(shapes.begin(), shapes.end(), [id](const PPT_Shape *shape) {
        return shape && shape->shapeId == id;
    });
    return found == shapes.end() ? nullptr : *found;
}

bool PPT_fileDat::streamTo(CStdDataStream &stream) const
{
    head.PPT_FileHead::streamTo(stream);
    stream << static_cast<qint32>(pages.size());
    for (const auto &entry : pages) {
        if (entry.second)
            entry.second->streamTo(stream);
    }
    return isOk(stream);
}

bool PPT_fileDat::streamFrom(CStdDataStream &stream)
{
    head.PPT_FileHead::streamFrom(stream);
    if (!isOk(stream) || head.magic != PPT_FileHead::kMagic ||
        head.version != PPT_FileHead::kVersion)
        return false;

    qint32 count = 0;
    stream >> count;
    for (qint32 i = 0; i < count && !isExhausted(stream); ++i) {
        auto *page = new PPT_Page;
        page->PPT_Page::streamFrom(stream);
        PPT_Page *&entry = pages[page->pageId];
        releaseAndDelete(entry);
        entry = page;
    }
    if (isOk(stream))
        return true;
    release();
    return false;
}

void PPT_fileDat::release()
{
    ClearDat(pages);
}

PPT_Page *PPT_fileDat::getPage(unsigned short pageId)
{
    const auto found = pages.find(pageId);
    return found == pages.end() ? nullptr : found->second;
}

void PPT_fileDat::ClearDat(std::map<unsigned short, PPT_Page *> &map)
{
    for (const auto &entry : map)
        releaseAndDelete(entry.second);
    map.clear();
}

bool PPT_fileDat::makePageFileDat(unsigned short pageId, PPT_fileDat &dst)
{
    PPT_Page *page = getPage(pageId);
    if (!page)
        return false;
    dst.release();
    dst.head = head;
    dst.pages[page->pageId] = page;
    return true;
}

void PPT_fileDat::appendPageFileDat(PPT_fileDat &src)
{
    for (auto entry = src.pages.begin(); entry != src.pages.end();) {
        if (getPage(entry->first)) {
            ++entry;
        } else {
            pages[entry->first] = entry->second;
            entry = src.pages.erase(entry);
        }
    }
    src.release();
}
