#pragma once

#include <QStringList>

/// Collects the debug lines that are written while the object lives; they are not printed.
///
/// One capture at a time. Warnings and worse still reach the handler that was installed before.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    const QStringList& lines() const { return m_lines; }
    bool contains(const QString& line) const { return m_lines.contains(line); }
    int count(const QString& line) const { return m_lines.count(line); }
    void clear() { m_lines.clear(); }

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& message);

    QStringList m_lines;
    QtMessageHandler m_previous;
};
