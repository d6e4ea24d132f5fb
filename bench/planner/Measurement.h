#pragma once

#include <QMap>
#include <QString>

/// What a child process measured: milliseconds, counts and kilobytes by name.
using Measurement = QMap<QString, double>;

/// Measures the processor time of parts of a process one after the other.
class Stopwatch
{
public:
    Stopwatch();
    /// Adds the time since construction or the last call to the value of this name.
    void lap(const QString& name);
    /// Starts the next part without keeping the time that has passed.
    void skip();
    Measurement& values() { return m_values; }

private:
    qint64 m_last_ns;
    Measurement m_values;
};

/// Largest resident memory of this process so far.
double peakMemory_kB();

/// Prints a measurement for the parent process.
void printMeasurement(const Measurement& measurement);

/// Runs this program again in a folder with the arguments and reads what it prints; empty when it
/// does not end in time.
Measurement measureInChild(const QString& folder, const QStringList& arguments, int timeout_s);
