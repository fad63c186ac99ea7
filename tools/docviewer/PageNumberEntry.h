#pragma once

#include <QObject>

class QKeyEvent;

/// Whether a key is only held for others: Shift and the like.
bool isModifierKey(int key);

/// A page number that is typed without a field to type it in: digits, then Enter. Watches the keys
/// of a widget and takes those that belong to a number.
class PageNumberEntry : public QObject
{
    Q_OBJECT

public:
    explicit PageNumberEntry(QObject *widget);

    /// The digits so far.
    const QString &digits() const { return m_digits; }

    /// Takes a key that was pressed elsewhere, if it belongs to a number. Any other ends the
    /// number.
    bool take(const QKeyEvent &key);

    /// Forgets the digits: something else has been done.
    void clear() { setDigits({}); }

Q_SIGNALS:
    /// The digits are others, or none any more.
    void typed(const QString &digits);
    /// A number was completed.
    void entered(quint32 number);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isWanted(const QKeyEvent &key) const;
    void setDigits(const QString &digits);

    QString m_digits;
};
