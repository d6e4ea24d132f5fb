#include "tests/support/Tally.h"

#include "tests/support/Documents.h"

#include <QDir>

Tally Tally::ofAllShards()
{
    Tally all;
    const QDir folder(qEnvironmentVariable("ROTUNDA_TALLIES"));
    for (const QString& name : folder.entryList(QDir::Files)) {
        const QString text = QString::fromUtf8(readFile(folder.filePath(name)));
        for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            all.add(line.section(QLatin1Char('\t'), 1),
                    line.section(QLatin1Char('\t'), 0, 0).toInt());
    }
    return all;
}

int Tally::of(const QString& name) const
{
    const auto found = m_counts.find(name);
    return found == m_counts.end() ? 0 : found->second;
}

std::map<QString, int> Tally::below(const QString& beginning) const
{
    std::map<QString, int> found;
    for (const auto& [name, count] : m_counts) {
        if (name.startsWith(beginning))
            found[name.mid(beginning.size())] = count;
    }
    return found;
}

void Tally::save() const
{
    const QString path = qEnvironmentVariable("ROTUNDA_TALLY");
    if (path.isEmpty())
        return;
    QString text;
    for (const auto& [name, count] : m_counts)
        text += QStringLiteral(u"%1\t%2\n").arg(QString::number(count), name);
    writeFile(path, text.toUtf8());
}
