#pragma once

#include <QString>

/// Puts an empty disk of so many bytes, in steps of a page, over a folder, for this process and its
/// children alone; false where this system does not let it.
///
/// Nothing takes it off again but the end of the process, which has to have one thread.
bool coverWithSmallDisk(const QString& folder, int bytes);

/// The same with a disk on which there is room for bytes but for no further file.
bool coverWithDiskForNoFile(const QString& folder);
