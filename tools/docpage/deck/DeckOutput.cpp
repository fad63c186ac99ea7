#include "tools/docpage/deck/DeckOutput.h"

#include "tools/docpage/Console.h"
#include "tools/docpage/deck/DeckWriter.h"
#include "tools/docpage/deck/PictureExtractor.h"

#include <QFile>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <system_error>

namespace {

namespace fs = std::filesystem;

/// Where a JSON file and the folder of its pictures are, without symbolic links on the way: ".."
/// behind one leads elsewhere. Neither need be there yet.
struct Places
{
    fs::path json; ///< when the file itself is a link, that is replaced
    fs::path pictures;

    /// The folder's name in the JSON, empty when it is the same; none when it is not UTF-8.
    std::optional<QString> nameOfPictures() const;

    /// Why the JSON file cannot be written beside the pictures; empty when it can.
    QString refusal(const QStringList &pictureNames) const;
};

fs::path pathOf(const QString &name)
{
    return QFile::encodeName(name).constData();
}

bool isWithin(const fs::path &path, const fs::path &folder)
{
    const fs::path way = path.lexically_relative(folder);
    return !way.empty() && *way.begin() != "..";
}

std::optional<QString> Places::nameOfPictures() const
{
    const fs::path way = pictures.lexically_relative(json.parent_path());
    const std::string bytes = way == "." ? std::string() : way.string();
    const QString name = QString::fromStdString(bytes);
    return name.toStdString() == bytes ? std::optional<QString>(name) : std::nullopt;
}

QString Places::refusal(const QStringList &pictureNames) const
{
    if (isWithin(pictures, json))
        return QStringLiteral("is to be a folder of the pictures");
    for (const QString &name : pictureNames) {
        if (pictures / pathOf(name) == json)
            return QStringLiteral("is to be the file of a picture");
    }
    const fs::path folder = json.parent_path();
    std::error_code error;
    if (!fs::is_directory(folder, error) && !isWithin(pictures, folder))
        return qt_error_string(fs::exists(folder, error) ? ENOTDIR : ENOENT);
    return {};
}

// Says why there are no places to be had.
std::optional<Places> locate(const DeckOutput &output)
{
    std::error_code error;
    const fs::path here = fs::current_path(error);
    const fs::path json = here / pathOf(output.json);
    Places places;
    if (!error)
        places.json = fs::weakly_canonical(json.parent_path(), error) / json.filename();
    if (error) {
        reportFault(output.json, qt_error_string(error.value()));
        return std::nullopt;
    }
    places.pictures = fs::weakly_canonical(here / pathOf(output.pictures), error);
    if (error) {
        reportFault(output.pictures, qt_error_string(error.value()));
        return std::nullopt;
    }
    if (!places.nameOfPictures()) {
        reportFault(output.pictures, QStringLiteral("the name as seen from the JSON is not UTF-8"));
        return std::nullopt;
    }
    return places;
}

int saveJson(const QString &path, const OutputRules &rules, const QString &text)
{
    const QString fault = saveFile(path, rules, {text.toUtf8()});
    return fault.isEmpty() ? ExitStatus::Done : reportFault(path, fault);
}

} // namespace

int DeckOutput::write(const SlideModels &models, const OutputRules &rules) const
{
    std::optional<Places> places;
    if (!json.isEmpty() && !pictures.isEmpty()) {
        places = locate(*this);
        if (!places)
            return ExitStatus::Failed;
    }
    PictureExtractor extractor(pictures, places ? *places->nameOfPictures() : pictures);
    const QString text = deckJson(models, pictures.isEmpty() ? nullptr : &extractor);

    int status = extractor.reportRefusals(rules);
    QString refusal = json.isEmpty() ? QString() : rules.refusal(json);
    if (refusal.isEmpty() && places)
        refusal = places->refusal(extractor.fileNames());
    if (!refusal.isEmpty())
        status = reportFault(json, refusal);
    if (status == ExitStatus::Done)
        status = extractor.save(rules);
    if (status != ExitStatus::Done)
        return status;
    if (!json.isEmpty())
        return saveJson(json, rules, text);
    print(text);
    return ExitStatus::Done;
}
