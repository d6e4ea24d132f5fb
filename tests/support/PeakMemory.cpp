#include "tests/support/PeakMemory.h"

#include "tests/support/Failure.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

static qint64 residentMemory()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        failTest("there is no /proc");
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

Measured measured(const std::function<int()>& work)
{
#ifdef __SANITIZE_ADDRESS__
    constexpr rlim_t seconds = 600;
#else
    constexpr rlim_t seconds = 60;
#endif
    const qint64 before = residentMemory();
    const pid_t child = fork();
    if (child < 0) {
        failTest("no process can be made");
        return {};
    }
    if (child == 0) {
        const rlimit limit{seconds, seconds};
        setrlimit(RLIMIT_CPU, &limit);
        _exit(work());
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    Measured measured;
    measured.result = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    measured.memory = std::max<qint64>(0, qint64(usage.ru_maxrss) * 1024 - before);
    return measured;
}

bool staysWithin(const Measured& measured, int multiple, const QString& file)
{
    qint64 allowed = QFileInfo(file).size() * multiple;
#ifdef __SANITIZE_ADDRESS__
    constexpr qint64 quarantine = qint64(512) << 20;
    allowed = allowed * 2 + quarantine;
#endif
    if (measured.memory > allowed)
        qWarning("%lld bytes were taken, %lld allowed", measured.memory, allowed);
    return measured.memory <= allowed;
}

void writeRepeated(const QString& path, const QByteArray& head, const QByteArray& unit, int count,
                   const QByteArray& tail)
{
    constexpr int block = 4096;
    const QByteArray units = unit.repeated(block);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    bool isWritten = file.open(QIODevice::WriteOnly) && file.write(head) == head.size();
    for (int left = count; left > 0; left -= block) {
        const int size = std::min(left, block) * unit.size();
        isWritten = isWritten && file.write(units.constData(), size) == size;
    }
    if (!isWritten || file.write(tail) != tail.size())
        failTest("cannot write " + path.toUtf8());
}
