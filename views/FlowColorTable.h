#pragma once

#include <QColor>
#include <QVector>

/// The colours of all flows: 1000 distinct ones, the same on every start of the process.
extern QVector<QColor> flowColorTable;

/// Draws the colours anew from qrand(), which nobody seeds, so that colours repeat between starts.
///
/// A second call in one process continues the random sequence.
void fillFlowColorTable();

/// The colour of a flow; flows whose numbers are 1000 apart share one. Invalid before the first
/// fill.
QColor flowColor(int flowID);
