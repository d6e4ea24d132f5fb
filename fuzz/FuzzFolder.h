#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

// What all targets share: where they work, and how they say that something is wrong.

/// Entry of a target; an input of any bytes is good, and the answer is always 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Makes an empty folder the current directory, in memory where there is such a file system, and
/// drops the log. Called once, ahead of the first input.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

/// The input as bytes, without a copy; lives as long as the input.
///
/// Log lines are put together, and dropped, for one input in sixteen sizes: they take longer than
/// all the rest.
QByteArray bytesOf(const std::uint8_t* data, std::size_t size);

/// Writes a file below the current directory, whose folder is made when it is missing.
void putFile(const QString& folder, const QString& name, const QByteArray& bytes);

/// A file below the current directory as a whole; empty without one.
QByteArray takeFile(const QString& path);

/// Ends the program in a way that counts as a crash unless the promise is kept.
void require(bool isKept, const char* promise);
