#include "verification/Findings.h"

namespace verification
{

Severity severityOf(Kind kind)
{
    switch (kind) {
    case Kind::UnevenPeriod:
    case Kind::RepeatedFlowNumber:
    case Kind::UnlistedTalkerPort:
    case Kind::UnaskedListener:
    case Kind::HostOnPath:
    case Kind::LongFrame:
    case Kind::FullBuffers:
    case Kind::BeyondCycle:
        return Severity::Remark;
    default:
        return Severity::Fault;
    }
}

} // namespace verification
