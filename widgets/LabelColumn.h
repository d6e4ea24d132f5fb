#pragma once

class QWidget;

/// Gives the labels in front of a form's edits one width, so that the edits stand in a column.
///
/// Each edit stands with its label in a row of its own, whose layout knows nothing of the others.
/// Call once the form's texts are set.
void alignLabels(QWidget* form);
