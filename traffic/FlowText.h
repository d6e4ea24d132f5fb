#pragma once

#include "traffic/FlowInfo.h"

// The windows of a flow as its table shows them.

/// Talker and send window, "{A,[0,2000]}".
QString sendWindowText(const FlowInfo& flow);

/// Listener and receive window, "{B,[400,4000]}".
QString receiveWindowText(const DstNodeInfo& listener);
