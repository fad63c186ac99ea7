#pragma once

#include "docdisplay/DocDisplayMgr.h"

#include <vector>

/// The display manager: a table of page result files and a position in it. Nothing is cached; every
/// image reads its page file again.
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

private:
    DocCovRslt::DOCRSLT_TYPE docType = DocCovRslt::DOCRSLT_NONE;
    std::vector<QString> pageFileNames; // one per slot; an empty string is an unfilled slot
    AnimStatus animStatus = {0, 0, 0};  // its page has a slot, but for page 0 without any slots
};
