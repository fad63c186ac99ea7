#pragma once

#include <QByteArray>

/// The flat XML of small decks.
namespace FlatDeck {

inline constexpr char kNamespaces[] =
    " xmlns:office=\"urn:oasis:names:tc:opendocument:xmlns:office:1.0\""
    " xmlns:style=\"urn:oasis:names:tc:opendocument:xmlns:style:1.0\""
    " xmlns:text=\"urn:oasis:names:tc:opendocument:xmlns:text:1.0\""
    " xmlns:draw=\"urn:oasis:names:tc:opendocument:xmlns:drawing:1.0\""
    " xmlns:presentation=\"urn:oasis:names:tc:opendocument:xmlns:presentation:1.0\"";

inline QByteArray deck(const QByteArray &pages, const QByteArray &styles = {},
                       const QByteArray &masters = {})
{
    return QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<office:document") +
           kNamespaces + "><office:automatic-styles>" + styles +
           "</office:automatic-styles><office:master-styles>" + masters +
           "</office:master-styles><office:body><office:presentation>" + pages +
           "</office:presentation></office:body></office:document>";
}

/// What is in the main sequence.
inline QByteArray sequence(const QByteArray &effects)
{
    return "<anim:par presentation:node-type=\"timing-root\">"
           "<anim:seq presentation:node-type=\"main-sequence\">" +
           effects + "</anim:seq></anim:par>";
}

/// What begins with a click, and then after a while.
inline QByteArray click(const QByteArray &effects, const QByteArray &begin = "0s")
{
    return "<anim:par smil:begin=\"next\"><anim:par smil:begin=\"" + begin + "\">" + effects +
           "</anim:par></anim:par>";
}

/// An effect of half a second.
/// \param trigger "on-click", "with-previous" or "after-previous"
/// \param more attributes of it, with a blank before each
inline QByteArray effect(const QByteArray &trigger, const QByteArray &kind,
                         const QByteArray &target, const QByteArray &more = {})
{
    return "<anim:par presentation:node-type=\"" + trigger + "\" presentation:preset-class=\"" +
           kind + "\"" + more + "><anim:set smil:dur=\"0.5s\" smil:targetElement=\"" + target +
           "\"/></anim:par>";
}

inline QByteArray page(const QByteArray &shapes, const QByteArray &effects = {})
{
    return "<draw:page draw:name=\"slide\" draw:style-name=\"dp1\" draw:master-page-name=\"M\">" +
           shapes + (effects.isEmpty() ? QByteArray() : sequence(effects)) + "</draw:page>";
}

/// A shape whose name is its identifier.
inline QByteArray shape(const QByteArray &id, const QByteArray &content = {})
{
    return "<draw:rect draw:name=\"" + id + "\" draw:style-name=\"gr1\" xml:id=\"" + id +
           "\" draw:id=\"" + id + "\">" + content + "</draw:rect>";
}

inline QByteArray group(const QByteArray &id, const QByteArray &shapes)
{
    return "<draw:g draw:name=\"" + id + "\" draw:id=\"" + id + "\">" + shapes + "</draw:g>";
}

inline QByteArray paragraph(const QByteArray &id, const QByteArray &content)
{
    return "<text:p text:id=\"" + id + "\">" + content + "</text:p>";
}

} // namespace FlatDeck
