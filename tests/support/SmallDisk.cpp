#include "tests/support/SmallDisk.h"

#include <QFile>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

static bool tell(const char* path, const QByteArray& text)
{
    QFile file(QString::fromUtf8(path));
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
           file.write(text) == text.size();
}

/// Any user may mount inside a user namespace in which the user counts as the superuser.
static bool enterNamespaces()
{
    const QByteArray user = QByteArray::number(geteuid());
    const QByteArray group = QByteArray::number(getegid());
    return unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && tell("/proc/self/setgroups", "deny") &&
           tell("/proc/self/uid_map", user + ' ' + user + " 1") &&
           tell("/proc/self/gid_map", group + ' ' + group + " 1");
}

static bool cover(const QString& folder, const QByteArray& limits)
{
    return enterNamespaces() && mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0,
                                      limits.constData()) == 0;
}

bool coverWithSmallDisk(const QString& folder, int bytes)
{
    return cover(folder, "size=" + QByteArray::number(bytes));
}

bool coverWithDiskForNoFile(const QString& folder)
{
    return cover(folder, "nr_inodes=1"); // its root is one
}
