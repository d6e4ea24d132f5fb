#pragma once

#include "project/ProjectFile.h"

#include "tests/support/RandomSource.h"

#include <QByteArray>

/// A project file written by hand, field by field, without a data stream.
class ProjectBytes
{
public:
    ProjectBytes& number(qint32 value);
    ProjectBytes& real(double value);
    /// A null text is the length 0xFFFFFFFF, an empty one the length 0.
    ProjectBytes& text(const QString& value);
    ProjectBytes& raw(const QByteArray& value);

    ProjectBytes& links(const QList<FileArrowInfo>& links);
    ProjectBytes& nodes(const QList<FileNodeInfo>& nodes);
    ProjectBytes& vLines(const QList<FileVLineInfo>& vLines);
    ProjectBytes& flows(const QList<FlowInfo>& flows);

    const QByteArray& bytes() const { return m_bytes; }
    int size() const { return m_bytes.size(); }

private:
    QByteArray m_bytes;
};

/// All four lists of a project, by hand.
QByteArray bytesOf(const Project& project);

/// What the reader makes of these bytes.
Project projectFrom(const QByteArray& bytes);

/// What the writer makes of this project.
QByteArray written(const Project& project);

/// Two hosts and a switch, linked, with a virtual link of two paths and a flow with two listeners.
Project smallProject();

/// Nodes, links, virtual links and flows that mostly refer to each other; some texts are null, some
/// empty, some names double or missing.
Project randomProject(RandomSource& random);

/// Changes, inserts, removes or doubles a few bytes, counts and lengths more often than others.
QByteArray mutated(QByteArray bytes, RandomSource& random);
