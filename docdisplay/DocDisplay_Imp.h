#pragma once

#include "docdisplay/DocDisplayMgr.h"

#include <memory>
#include <vector>

class PPTAnimDisplayBase;

/// The display manager: a table of page result files, a position in it, and a player for the slide
/// at that position of an animated deck. Page files are not cached; every image reads its file
/// again. What is kept is the model of the player's slide with its decoded pictures.
class DocDisplay_Imp : public DocDisplayMgr
{
public:
    DocDisplay_Imp();
    ~DocDisplay_Imp() override;

    void Destroy() override;
    void Init(DocCovRslt::DOCRSLT_TYPE type, int pageCount) override;
    bool AddDocPage(unsigned int page, const QString &file) override;
    bool IsPageCanDisplay(unsigned int page) override;
    unsigned int GetPageCount() override;
    bool SetCurPage(unsigned int page) override;
    unsigned int GetCurPage() override;
    bool IsDocHaveAnimation() override;
    bool SetAnimStatus(const AnimStatus &status) override;
    void GetAnimStatus(AnimStatus &status) override;
    int GetActionState() override;
    bool NextAction() override;
    bool PrevAction() override;
    QImage GetImg() override;
    QImage GetImg(const AnimStatus &status) override;
    void ClearPicCach() override;

    /// The file of a slot, which is empty where the slot is; false when there is no such slot.
    bool GetPageFileName(unsigned int page, QString &name);

    /// The picture of a page; null when its file is missing, refused, not a picture or broken.
    QImage GetNoPPTAnimPageImage(unsigned int page);

    /// Reads the payload of a page of the table.
    /// \return whether it is slide animation data; false also, with `data` untouched, while the
    ///         file of the current page is missing.
    bool GetPPTAnimPageDat(unsigned int page, QByteArray &data);

    /// The frame of a slide: the live player's present one when it plays that slide, otherwise that
    /// of `status` by a player of its own; null when the slide cannot be shown.
    QImage GetPPTAnimPageImage(const AnimStatus &status);

protected:
    DocCovRslt::DOCRSLT_TYPE docType = DocCovRslt::DOCRSLT_NONE;
    std::vector<QString> pageFileNames; // one per slot; an empty string is an unfilled slot
    AnimStatus animStatus = {0, 0, 0};  // its page has a slot, but for page 0 without any slots
    const std::unique_ptr<PPTAnimDisplayBase> animDisplayer; // never replaced; one page at most

private:
    bool isLive(quint32 page) const;
    bool loadCurPage();
    void takePlayerPosition();
};
