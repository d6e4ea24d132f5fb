#include "app/NaturalOrder.h"

#include <QString>

static bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

/// The digits that begin at a place, without leading zeros; the place moves behind them.
static QStringRef takeNumber(const QString& text, int& place)
{
    while (place < text.size() && text.at(place) == QLatin1Char('0'))
        ++place;
    const int start = place;
    while (place < text.size() && isDigit(text.at(place)))
        ++place;
    return text.midRef(start, place - start);
}

bool isBeforeNaturally(const QString& left, const QString& right)
{
    int l = 0;
    int r = 0;
    while (l < left.size() && r < right.size()) {
        if (isDigit(left.at(l)) && isDigit(right.at(r))) {
            const QStringRef a = takeNumber(left, l);
            const QStringRef b = takeNumber(right, r);
            if (a.size() != b.size())
                return a.size() < b.size();
            if (const int order = a.compare(b))
                return order < 0;
        } else if (left.at(l) != right.at(r)) {
            return left.at(l) < right.at(r);
        } else {
            ++l;
            ++r;
        }
    }
    return left.size() - l < right.size() - r;
}
