#include "traffic/TrafficTypes.h"

#include "traffic/FlowInfo.h"
#include "traffic/VLineInfo.h"

void registerTrafficTypes()
{
    qRegisterMetaType<FlowInfo>("FlowInfo");
    qRegisterMetaType<VLineInfo>("VLineInfo");
    qRegisterMetaType<VLineItems>("VLineItems");
}
