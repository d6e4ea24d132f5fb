#pragma once

#include <QPixmap>

// How dialogs show in the pictures of the tour.

/// Sets the open dialogs side by side, where they hide neither each other nor what they speak of.
void arrangeDialogs();

/// The whole screen, with a frame around each open dialog.
QPixmap screenPicture();
