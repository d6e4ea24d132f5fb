#include "bench/planner/Measurement.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

#include <cstdio>
#include <ctime>

// The processor's time of this process: that of the wall says little on a busy machine.
static qint64 now_ns()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

Stopwatch::Stopwatch() : m_last_ns(now_ns()) {}

void Stopwatch::lap(const QString& name)
{
    const qint64 now = now_ns();
    m_values[name] += double(now - m_last_ns) / 1e6;
    m_last_ns = now;
}

void Stopwatch::skip()
{
    m_last_ns = now_ns();
}

double peakMemory_kB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble();
    }
    return 0;
}

void printMeasurement(const Measurement& measurement)
{
    for (auto value = measurement.begin(); value != measurement.end(); ++value)
        std::printf("%s %.6f\n", qPrintable(value.key()), value.value());
}

Measurement measureInChild(const QString& folder, const QStringList& arguments, int timeout_s)
{
    QProcess child;
    child.setWorkingDirectory(folder);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), arguments);
    if (!child.waitForFinished(timeout_s * 1000) || child.exitCode() != 0) {
        child.kill();
        child.waitForFinished();
        return {};
    }
    Measurement measurement;
    for (const QByteArray& line : child.readAllStandardOutput().split('\n')) {
        const QList<QByteArray> words = line.split(' ');
        if (words.size() == 2)
            measurement[QString::fromUtf8(words.first())] = words.last().toDouble();
    }
    return measurement;
}
