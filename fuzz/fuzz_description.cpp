// Any bytes as an animation model: what can be read is described in full, and the model of its
// description is the same.
#include "fuzz/Fuzz.h"
#include "fuzz/Mutators.h"
#include "tools/docpage/LibraryLog.h"
#include "tools/docpage/deck/DeckReader.h"
#include "tools/docpage/deck/DeckWriter.h"
#include "tools/docpage/deck/ModelText.h"

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t most, unsigned int seed)
{
    return mutateModel(data, size, most, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    LibraryLog::divert();
    const QByteArray bytes = byteArray(data, size);
    SlideModels models;
    SlideModel &model = models.emplace_back();
    if (!model.read(bytes).isEmpty())
        return 0;
    const QByteArray payload = model.payload();
    require(payload.size() == model.payloadSize());
    require(model.bytesAfter >= 0 && model.bytesAfter < qMax<qint64>(bytes.size(), 1));
    require(!modelSummary(model).isEmpty());
    require(modelText(model.data).isEmpty() == model.data.pages.empty());

    static const MemoryFile file;
    file.write(deckJson(models, nullptr).toUtf8());
    Deck deck;
    deck.read(file.path());
    require(deck.fault.isEmpty() && deck.inputs.size() == 1);
    require(deck.models.size() == 1 && deck.models.front().payload() == payload);
    return 0;
}
