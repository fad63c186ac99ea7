#pragma once

#include <QTextCodec>

/// As long as it lives the locale's bytes are not those of UTF-8, as in hosts that set another one.
class LatinLocale
{
public:
    LatinLocale() { QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1")); }
    ~LatinLocale() { QTextCodec::setCodecForLocale(m_before); }
    Q_DISABLE_COPY_MOVE(LatinLocale)

private:
    QTextCodec *const m_before = QTextCodec::codecForLocale();
};
