#include "tools/docpage/deck/PictureReader.h"

#include "tools/docpage/InputFile.h"
#include "tools/docpage/PlainName.h"

QByteArray PictureReader::read(const JsonNode &picture)
{
    if (picture.value().isNull())
        return {};
    if (picture.value().isString())
        return readFile(picture);
    if (!picture.value().isObject())
        picture.mustBe(QStringLiteral("a file name, an object with the key base64 or null"));

    picture.expectKeys({QStringLiteral("base64")});
    const JsonNode inlined = picture.require("base64");
    if (!inlined.value().isString())
        inlined.mustBe(QStringLiteral("a string"));
    const QByteArray text = inlined.value().toString().toUtf8();
    const auto decoded =
        QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || text.size() % 4 != 0)
        inlined.mustBe(QStringLiteral("base64"));
    return text.isEmpty() ? QByteArray("") : *decoded;
}

QByteArray PictureReader::readFile(const JsonNode &picture)
{
    const QString name = picture.value().toString();
    if (name.contains(QChar(0)))
        picture.fail(QStringLiteral("a file name holds no NUL"));
    if (QString::fromUtf8(name.toUtf8()) != name)
        picture.fail(QStringLiteral("a file name holds no lone surrogate"));
    const QString path = m_folder.filePath(plainName(name));
    const auto known = m_files.constFind(path);
    if (known != m_files.constEnd())
        return *known;

    QByteArray bytes;
    const QString fault = name.isEmpty() ? QStringLiteral("no file name") : readInput(path, bytes);
    constexpr int kLongestName = 255; // what a file can be called is told in full
    if (!fault.isEmpty())
        picture.fail(QStringLiteral("cannot read \"%1\": ").arg(shortened(name, kLongestName)) +
                     fault);
    m_files.insert(path, bytes);
    return bytes;
}
