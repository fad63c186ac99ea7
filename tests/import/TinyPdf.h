#pragma once

#include <QByteArray>
#include <QList>

/// PDF documents, small enough to be written by hand.
namespace TinyPdf {

/// A page: the entries of its dictionary, as its size in points, and what is drawn on it.
struct Page
{
    QByteArray entries;
    QByteArray content;
};

/// A filled rectangle of a colour such as "1 0 0", counted from the lower left corner.
inline QByteArray rectangle(const QByteArray &colour, const QByteArray &place)
{
    return colour + " rg " + place + " re f\n";
}

/// A page of `width` x `height` points, all of it of that colour.
inline Page page(int width, int height, const QByteArray &colour)
{
    const QByteArray size = QByteArray::number(width) + ' ' + QByteArray::number(height);
    return {"/MediaBox [0 0 " + size + "]", rectangle(colour, "0 0 " + size)};
}

/// \param trailer further entries of the trailer
inline QByteArray document(const QList<Page> &pages, const QByteArray &trailer = {})
{
    QByteArray pdf = "%PDF-1.4\n";
    QByteArray offsets;
    int count = 0;
    const auto add = [&](const QByteArray &object) {
        offsets += QByteArray::number(pdf.size()).rightJustified(10, '0') + " 00000 n \n";
        pdf += QByteArray::number(++count) + " 0 obj\n" + object + "\nendobj\n";
    };
    QByteArray kids;
    for (int i = 0; i < pages.size(); ++i)
        kids += QByteArray::number(3 + 2 * i) + " 0 R ";
    add("<< /Type /Catalog /Pages 2 0 R >>");
    add("<< /Type /Pages /Count " + QByteArray::number(pages.size()) + " /Kids [" + kids + "] >>");
    for (const Page &page : pages) {
        add("<< /Type /Page /Parent 2 0 R " + page.entries + " /Contents " +
            QByteArray::number(count + 2) + " 0 R >>");
        add("<< /Length " + QByteArray::number(page.content.size()) + " >>\nstream\n" +
            page.content + "\nendstream");
    }
    const QByteArray size = QByteArray::number(count + 1);
    const QByteArray start = QByteArray::number(pdf.size());
    return pdf + "xref\n0 " + size + "\n0000000000 65535 f \n" + offsets + "trailer\n<< /Size " +
           size + " /Root 1 0 R " + trailer + " >>\nstartxref\n" + start + "\n%%EOF\n";
}

/// A document that opens with a password only.
inline QByteArray encryptedDocument()
{
    const QByteArray key = '<' + QByteArray(64, 'a') + '>';
    return document({page(10, 10, "1 0 0")},
                    "/ID [<aa> <aa>] /Encrypt << /Filter /Standard /V 1 /R 2 /P -4 /O " + key +
                        " /U " + key + " >>");
}

} // namespace TinyPdf
