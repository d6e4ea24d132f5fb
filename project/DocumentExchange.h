#pragma once

#include <QString>

// Moves the input and the output document between the studio's folders and the user's. The
// documents are not read, vek_hs.xml is left alone, and a copy that fails is not reported.

/// Replaces the studio's documents by these files; false when nothing was done.
///
/// Makes both folders in any case. Nothing else is done when a path is empty or is that of the
/// studio's own document. An own document whose replacement does not exist is removed all the same;
/// one that a path merely reaches under another name stays.
bool importDocuments(const QString& inputPath, const QString& outputPath);

/// Copies the studio's documents to folders of the same names in dirPath, which are made.
///
/// A document that is missing is passed over, and a file that is there already stays as it is. An
/// empty path does nothing.
void exportDocuments(const QString& dirPath);
