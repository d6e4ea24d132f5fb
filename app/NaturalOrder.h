#pragma once

class QString;

/// Whether a text comes before another one when numbers in them count by their value.
///
/// The same in every locale: other characters compare by their code.
bool isBeforeNaturally(const QString& left, const QString& right);
