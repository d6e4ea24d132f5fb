#pragma once

class QWidget;

/// Puts a form over the upper right part of a window, so that the docks below stay in view, and
/// makes it no larger than the screen allows. For before the form is shown.
void placeOverDrawing(QWidget* form, const QWidget* window);
