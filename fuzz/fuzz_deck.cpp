// Any text as the description of a deck: no file that it names is there. What can be read is
// described in full, and its description is then read the same.
#include "fuzz/Fuzz.h"
#include "fuzz/OnlyFile.h"
#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/deck/DeckReader.h"
#include "tools/docpage/deck/DeckWriter.h"
#include "tools/docpage/deck/ModelText.h"

namespace {

constexpr int kLongestFault = 1000; // characters; it is told on one line

void read(Deck &deck, const QByteArray &text)
{
    static const MemoryFile file;
    file.write(text);
    const OnlyFile only(file.path());
    deck.read(file.path());
    require(deck.inputs.size() == 1);
}

QList<QByteArray> payloads(const SlideModels &models)
{
    QList<QByteArray> all;
    for (const SlideModel &model : models) {
        all << model.payload();
        require(all.last().size() == model.payloadSize());
    }
    return all;
}

} // namespace

// Qt's parser leaks an object or array that a second value of the same key replaces. Its frames
// have no names; leaks of what the reader itself allocates are not among its.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the sanitizer's name
extern "C" Q_DECL_EXPORT const char *__lsan_default_suppressions()
{
    return "leak:libQt5Core";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    LibraryLog::divert();
    Deck deck;
    read(deck, byteArray(data, size));
    require(deck.fault.size() <= kLongestFault);
    if (!deck.fault.isEmpty())
        return 0;

    Deck again;
    read(again, deckJson(deck.models, nullptr).toUtf8());
    require(again.fault.isEmpty());
    require(payloads(again.models) == payloads(deck.models));
    for (const SlideModel &model : deck.models) {
        SlideModel built;
        require(built.read(model.payload()).isEmpty());
        require(built.payload() == model.payload());
        require(!modelSummary(model).isEmpty());
        require(modelText(model.data).isEmpty() == model.data.pages.empty());
    }
    return 0;
}
