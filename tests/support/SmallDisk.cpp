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

bool coverWithSmallDisk(const QString& folder, int bytes)
{
    const QByteArray size = "size=" + QByteArray::number(bytes);
    return enterNamespaces() &&
           mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, size.constData()) == 0;
}
