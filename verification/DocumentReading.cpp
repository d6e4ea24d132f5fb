#include "verification/DocumentReading.h"

#include "verification/TextScan.h"

#include <algorithm>
#include <utility>

namespace verification
{

namespace
{

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Reads a whole text as a number; ten digits hold every number that a document may carry.
bool parseNumber(const char* text, qint64& value)
{
    constexpr int mostDigits = 10;
    skipBlanks(text);
    const bool negative = *text == '-';
    if (negative)
        ++text;
    qint64 read = 0;
    int digits = 0;
    for (; isDigit(*text); ++text) {
        if (++digits > mostDigits)
            return false;
        read = read * 10 + (*text - '0');
    }
    skipBlanks(text);
    if (digits == 0 || *text != '\0')
        return false;
    value = negative ? -read : read;
    return true;
}

QString quoted(const char* name)
{
    return QStringLiteral("\"%1\"").arg(QString::fromUtf8(name));
}

} // namespace

DocumentReading::DocumentReading(QString document, std::vector<Finding>& damage)
    : m_document(std::move(document)),
      m_damage(damage)
{
}

void DocumentReading::beginPiece(const char* text, const char* piece)
{
    m_text = text;
    m_piece = piece;
}

// Counted when something is to be reported, since counting costs as much as reading.
int DocumentReading::lineOf(Element where) const
{
    return static_cast<int>(std::count(m_text, m_piece, '\n')) + where->GetLineNum();
}

void DocumentReading::report(Element where, const QString& what)
{
    m_damage.push_back(damageOf(
        where
            ? QStringLiteral("%1 line %2: %3").arg(m_document, QString::number(lineOf(where)), what)
            : QStringLiteral("%1: %2").arg(m_document, what)));
}

DocumentReading::Element DocumentReading::child(Element parent, const char* name)
{
    if (!parent)
        return nullptr;
    const Element found = parent->FirstChildElement(name);
    if (!found)
        report(parent, quoted(name) + QStringLiteral(" is missing in ") + quoted(parent->Name()));
    return found;
}

QString DocumentReading::text(Element parent, const char* name)
{
    const Element found = child(parent, name);
    return found ? QString::fromUtf8(found->GetText()) : QString();
}

bool DocumentReading::number(Element parent, const char* name, qint64& value)
{
    const Element found = child(parent, name);
    if (!found)
        return false;
    const char* written = found->GetText();
    if (written && parseNumber(written, value))
        return true;
    report(found, quoted(name) + QStringLiteral(" is no number"));
    return false;
}

// The writer prints the 32 bits of a slot without a sign, also of one before the cycle.
bool DocumentReading::slotNumber(Element parent, const char* name, qint64& value)
{
    if (!number(parent, name, value))
        return false;
    constexpr qint64 half = Q_INT64_C(1) << 31;
    constexpr qint64 wrap = 2 * half;
    if (value >= wrap || value < -half) {
        report(parent->FirstChildElement(name), quoted(name) + QStringLiteral(" is no slot"));
        return false;
    }
    if (value >= half)
        value -= wrap;
    return true;
}

Finding damageOf(const QString& detail)
{
    Finding finding; // begins as damage
    finding.detail = detail;
    return finding;
}

} // namespace verification
