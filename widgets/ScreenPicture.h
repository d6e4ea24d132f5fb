#pragma once

#include <QPixmap>

/// A picture of the resources in the size of its file, sharp on the screen at hand.
///
/// On a screen of high resolution it comes from the file of twice the size, "name@2x.png" beside
/// "name.png", and says so by its device pixel ratio.
QPixmap screenPicture(const QString& file);
