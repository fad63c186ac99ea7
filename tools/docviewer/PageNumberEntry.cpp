#include "tools/docviewer/PageNumberEntry.h"

#include <QKeyEvent>

namespace {

constexpr int kMostDigits = 9;

bool isDigit(const QKeyEvent &key)
{
    constexpr Qt::KeyboardModifiers kOthers = Qt::ControlModifier | Qt::AltModifier;
    return key.key() >= Qt::Key_0 && key.key() <= Qt::Key_9 && !(key.modifiers() & kOthers);
}

} // namespace

bool isModifierKey(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt ||
           key == Qt::Key_Meta || key == Qt::Key_AltGr;
}

PageNumberEntry::PageNumberEntry(QObject *widget)
    : QObject(widget)
{
    widget->installEventFilter(this);
}

bool PageNumberEntry::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // Accepted, the key comes as a press and is no shortcut.
        const auto *key = static_cast<QKeyEvent *>(event);
        if (isWanted(*key))
            event->accept();
        else if (!isModifierKey(key->key()))
            clear(); // whatever is done now has nothing to do with the number
        return isWanted(*key);
    }
    if (event->type() == QEvent::FocusOut)
        clear();
    return event->type() == QEvent::KeyPress && take(*static_cast<QKeyEvent *>(event));
}

bool PageNumberEntry::isWanted(const QKeyEvent &key) const
{
    if (isDigit(key))
        return true;
    switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Backspace:
    case Qt::Key_Escape:
        return !m_digits.isEmpty();
    default:
        return false;
    }
}

bool PageNumberEntry::take(const QKeyEvent &key)
{
    if (!isWanted(key)) {
        if (!isModifierKey(key.key()))
            clear();
        return false;
    }
    if (isDigit(key)) {
        if (m_digits.size() < kMostDigits)
            setDigits(m_digits + QChar(key.key()));
    } else if (key.key() == Qt::Key_Backspace) {
        setDigits(m_digits.chopped(1));
    } else {
        const quint32 number = key.key() == Qt::Key_Escape ? 0 : m_digits.toUInt();
        const bool isEntered = key.key() != Qt::Key_Escape;
        clear();
        if (isEntered)
            Q_EMIT entered(number);
    }
    return true;
}

void PageNumberEntry::setDigits(const QString &digits)
{
    if (m_digits == digits)
        return;
    m_digits = digits;
    Q_EMIT typed(digits);
}
