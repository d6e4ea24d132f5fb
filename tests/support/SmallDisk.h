#pragma once

#include <QString>

/// Puts an empty disk of so many bytes, in steps of a page, over a folder, for this process and its
/// children alone; false where this system does not let it.
///
/// Nothing takes it off again but the end of the process, which has to have one thread.
bool coverWithSmallDisk(const QString& folder, int bytes);
