#pragma once

#include "tests/app/walk/WalkedStudio.h"

/// What is wrong; empty when drawing, tables, lists, schedule and open windows agree.
QString findFault(WalkedStudio& walked);
