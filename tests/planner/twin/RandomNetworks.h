#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

/// Input files for one run of the engine, made from a seed and the same on every machine.
///
/// Makers draw one number a statement, since compilers order the arguments of a call differently.
struct RandomNetwork {
    struct File {
        QString name; ///< below the folder ResourceXML
        QByteArray bytes;
    };
    quint64 seed = 0;
    QString family;          ///< what the generator aimed at
    std::vector<File> files; ///< none when the folder is missing
};

RandomNetwork randomNetwork(quint64 seed);
