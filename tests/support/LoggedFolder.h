#pragma once

#include "tests/support/LogCapture.h"
#include "tests/support/TemporaryFolder.h"

/// An empty current folder, and what is logged in the meantime.
struct LoggedFolder {
    TemporaryFolder folder;
    LogCapture log;
};
