#pragma once

#include <QByteArray>
#include <QString>

/// Why a plan is unsound, by a second definition that looks at everything everywhere; empty when it
/// is sound.
///
/// Reads ResourceXML/vek_input.xml under the current directory, whose flows must have numbers of
/// their own. Slow: every row is compared with every other one.
QString unsoundness(const QByteArray& schedule);
