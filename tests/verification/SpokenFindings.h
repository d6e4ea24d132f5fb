#pragma once

#include "verification/Finding.h"

#include <QtTest>

// What a comparison that fails prints of the verifier's findings.
namespace verification
{

inline char* toString(Kind kind)
{
    return qstrdup(qPrintable(nameOf(kind)));
}

inline char* toString(Severity severity)
{
    return qstrdup(severity == Severity::Fault ? "fault" : "remark");
}

inline char* toString(const Finding& finding)
{
    return qstrdup(qPrintable(describe(finding)));
}

inline char* toString(const std::vector<Finding>& findings)
{
    QStringList lines;
    for (const Finding& finding : findings)
        lines.append(describe(finding));
    return qstrdup(qPrintable(lines.join(QStringLiteral("\n              "))));
}

} // namespace verification
