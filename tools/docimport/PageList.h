#pragma once

#include <QString>
#include <QVector>

#include <optional>

/// Which pages of a document are wanted: "1,3-5,8-", counted from 1.
class PageList
{
public:
    /// All pages.
    PageList() = default;

    /// Nothing when the text is no such list.
    static std::optional<PageList> read(const QString &text);

    /// The pages of a document of `count` pages, counted from 0, each once and in their order.
    /// \return what is wrong; empty when all that are named are there
    QString pagesOf(int count, QVector<int> &pages) const;

private:
    struct Range
    {
        int first;
        int last; // 0: that of the document
    };

    QVector<Range> m_ranges;
};
