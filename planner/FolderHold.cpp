#include "planner/FolderHold.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <set>
#include <thread>
#include <utility>

namespace planner
{

using Clock = std::chrono::steady_clock;

static constexpr std::chrono::milliseconds patience(2000);
static constexpr std::chrono::milliseconds pause(5);

static bool isSameFile(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// Whether absolute paths that begin with that of the current directory lead into it.
static bool currentFolderHasItsPath()
{
    const QByteArray path = QFile::encodeName(QDir::currentPath());
    struct stat byPath = {};
    struct stat itself = {};
    return stat(path.constData(), &byPath) == 0 && stat(".", &itself) == 0 &&
           isSameFile(byPath, itself);
}

FolderHold::FolderHold()
{
    if (!currentFolderHasItsPath())
        return;
    const auto end = Clock::now() + patience;
    while (!(m_isHeld = lockAll()) && Clock::now() < end)
        std::this_thread::sleep_for(pause);
}

FolderHold::~FolderHold()
{
    letGo();
}

// All or none, so that two processes that share two folders never wait for each other. A folder
// that several names lead to is locked once: a second descriptor would be kept out by the first.
bool FolderHold::lockAll()
{
    std::set<std::pair<dev_t, ino_t>> seen;
    for (const char* name : {".", "ResourceXML", "OutputXML"}) {
        const int folder = open(name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder < 0)
            continue; // not there, or not to be read: then nobody can plan with it either
        m_folders.push_back(folder);
        struct stat status = {};
        fstat(folder, &status);
        if (!seen.emplace(status.st_dev, status.st_ino).second)
            continue;
        if (flock(folder, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
            letGo();
            return false;
        }
    }
    return true;
}

void FolderHold::letGo()
{
    for (const int folder : m_folders)
        close(folder);
    m_folders.clear();
}

} // namespace planner
