#pragma once

#include <vector>

namespace planner
{

/// Keeps other processes from planning in the current directory while it lives.
///
/// Two runs in one folder would read each other's documents. The lock is on the folders themselves,
/// on the current directory and on those for the documents, which may be links to folders that
/// others share; it leaves no file behind and goes with the process that holds it. Not to be held
/// twice at once in one process. Where a file system knows no locks, every folder counts as free.
class FolderHold
{
public:
    /// Waits two seconds at most for another process that holds one of the folders.
    FolderHold();
    ~FolderHold();
    FolderHold(const FolderHold&) = delete;
    FolderHold& operator=(const FolderHold&) = delete;

    /// False when another process holds one of the folders, and when documents would not come to
    /// the current directory: it was removed, or its path cannot be told in characters.
    bool isHeld() const { return m_isHeld; }

private:
    bool lockAll();
    void letGo();

    std::vector<int> m_folders; ///< open descriptors, each locked or on a file system without locks
    bool m_isHeld = false;
};

} // namespace planner
