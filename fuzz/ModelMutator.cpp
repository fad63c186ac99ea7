// Changes animation models as such: what follows a change still belongs to what it belonged to.
#include "fuzz/Fuzz.h"
#include "fuzz/Mutators.h"
#include "tests/PlainModel.h"
#include "tests/TinyPictures.h"

#include <cstring>
#include <iterator>
#include <limits>
#include <random>

namespace {

constexpr std::size_t kMostChildren = 200;

class Change
{
    template <typename Container>
    auto anyOf(Container &container)
    {
        const auto place = number() % static_cast<unsigned int>(std::size(container));
        return std::next(std::begin(container), static_cast<int>(place));
    }

public:
    Change(PPT_fileDat &changed, unsigned int seed)
        : model(changed)
        , random(seed)
    {
    }

    /// One change, somewhere.
    void make()
    {
        if (model.pages.empty() || oneIn(20))
            addPage();
        PPT_Page &page = *anyOf(model.pages)->second;
        switch (number() % 8) {
        case 0:
            changeHead();
            break;
        case 1:
            changePage(page);
            break;
        case 2:
        case 3:
            changeList(page.shapes);
            break;
        case 4:
            changeList(page.effects);
            break;
        case 5:
            play(page);
            break;
        case 6:
            if (!page.shapes.empty())
                changeShape(**anyOf(page.shapes));
            break;
        default:
            if (!page.effects.empty())
                changeEffect(page, **anyOf(page.effects));
            break;
        }
    }

private:
    unsigned int number() { return static_cast<unsigned int>(random() >> 4); }
    bool oneIn(unsigned int times) { return number() % times == 0; }

    float place()
    {
        const float places[] = {0,
                                1,
                                -1,
                                0.5F,
                                3,
                                20,
                                -40,
                                1073741760.0F,
                                -1073741760.0F,
                                2147483520.0F,
                                -2147483648.0F,
                                1e30F};
        return oneIn(16) ? std::numeric_limits<float>::quiet_NaN() : *anyOf(places);
    }

    float seconds()
    {
        const float lengths[] = {0, 0.001F, 0.04F, 0.5F, 1, -1, 60, 1000000, 4294967.296F, 8589934};
        return oneIn(16) ? std::numeric_limits<float>::infinity() : *anyOf(lengths);
    }

    QByteArray picture()
    {
        switch (number() % 5) {
        case 0:
            return {};
        case 1:
            return {""};
        case 2:
            return TinyPictures::jpg();
        default:
            return TinyPictures::png();
        }
    }

    void addPage()
    {
        const auto id = static_cast<quint16>(oneIn(4) ? number() : model.pages.size());
        PPT_Page *&page = model.pages[id];
        if (!page)
            page = new PPT_Page;
        page->pageId = id;
        page->pageImage = TinyPictures::png();
    }

    void changeHead() { (oneIn(2) ? model.head.width : model.head.height) = place(); }

    void changePage(PPT_Page &page)
    {
        if (oneIn(2))
            page.pageImage = picture();
        else
            setAny(page.transition);
    }

    // Sets one of the fields to any value.
    template <typename Object>
    void setAny(Object &object)
    {
        QRandomGenerator any(number());
        unsigned int skipped = number() % 20;
        PlainModel::eachField(object, [&](const char *, auto &field) {
            if (skipped-- == 0)
                PlainModel::setRandom(any, field);
        });
    }

    void changeShape(PPT_Shape &shape)
    {
        switch (number() % 4) {
        case 0:
            shape.picDat = picture();
            break;
        case 1:
            setAny(shape);
            break;
        default:
            (oneIn(2) ? shape.left : shape.width) = place();
            (oneIn(2) ? shape.top : shape.height) = place();
            break;
        }
    }

    void changeEffect(PPT_Page &page, PPT_Effect &effect)
    {
        switch (number() % 6) {
        case 0:
            effect.timing.triggerType = static_cast<qint8>(number() % 5);
            break;
        case 1:
            effect.timing.duration = seconds();
            break;
        case 2:
            effect.exit = oneIn(2) ? -1 : 0;
            break;
        case 3:
            effect.effectNo = static_cast<qint16>(oneIn(8) ? -1 : int(number() % 4));
            break;
        case 4:
            if (!page.shapes.empty())
                effect.shapeId = (*anyOf(page.shapes))->shapeId;
            break;
        default:
            setAny(effect);
            break;
        }
    }

    // Makes one more of a list's elements, another order of them, or one less.
    template <typename Child>
    void changeList(std::list<Child *> &list)
    {
        if (list.size() > kMostChildren || (!list.empty() && oneIn(3))) {
            const auto doomed = anyOf(list);
            std::list<Child *> out;
            out.splice(out.end(), list, doomed);
            PPT_Page().ClearDat(out);
        } else if (!list.empty() && oneIn(3)) {
            list.splice(anyOf(list), list, anyOf(list));
        } else if (!list.empty() && oneIn(2)) {
            list.insert(anyOf(list), new Child(**anyOf(list)));
        } else {
            list.push_back(new Child);
            setUp(*list.back());
        }
    }

    void setUp(PPT_Shape &shape)
    {
        shape.shapeId = static_cast<quint16>(number() % 6);
        shape.picDat = TinyPictures::png();
        shape.width = 4;
        shape.height = 3;
        shape.left = place();
    }

    void setUp(PPT_Effect &effect)
    {
        effect.effectNo = static_cast<qint16>(number() % 6);
        effect.shapeId = static_cast<quint16>(number() % 6);
        effect.exit = oneIn(2) ? -1 : 0;
        effect.timing.triggerType = static_cast<qint8>(number() % 3 + 1);
        effect.timing.duration = seconds();
    }

    // A few steps of groups for the shapes that are there.
    void play(PPT_Page &page)
    {
        for (unsigned int i = number() % 8; i > 0 && page.effects.size() < kMostChildren; --i) {
            page.effects.push_back(new PPT_Effect);
            setUp(*page.effects.back());
            if (!page.shapes.empty())
                page.effects.back()->shapeId = (*anyOf(page.shapes))->shapeId;
        }
    }

    PPT_fileDat &model;
    std::minstd_rand random;
};

QByteArray changed(const QByteArray &bytes, unsigned int seed)
{
    PPT_fileDat model;
    CStdDataStream in(bytes);
    model.streamFrom(in);
    Change change(model, seed);
    for (unsigned int changes = seed % 5 + 1; changes > 0; --changes)
        change.make();
    QByteArray out;
    {
        model.head.magic = PPT_FileHead::kMagic;
        model.head.version = PPT_FileHead::kVersion;
        CStdDataStream stream(&out, QIODevice::WriteOnly);
        require(model.streamTo(stream));
    }
    model.release();
    return out;
}

} // namespace

std::size_t mutateModel(std::uint8_t *data, std::size_t size, std::size_t most, unsigned int seed)
{
    const QByteArray model = seed % 8 == 0 ? QByteArray() : changed(byteArray(data, size), seed);
    if (!model.isEmpty() && static_cast<std::size_t>(model.size()) <= most) {
        size = static_cast<std::size_t>(model.size());
        std::memcpy(data, model.constData(), size);
        if (seed % 8 != 1)
            return size;
    }
    return LLVMFuzzerMutate(data, size, most);
}
