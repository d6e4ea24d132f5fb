#include "fuzz/ElementChanges.h"
#include "fuzz/FuzzFolder.h"

#include "tests/support/RandomSource.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <vector>

// Runs a target over files, and over all files in folders, without a fuzzer.
//
//   TARGET [--changed COUNT] FILE-OR-FOLDER...
//
// With a count each file is also run in so many changed forms, which are the same every time.

namespace
{

RandomSource& byteChanges()
{
    static RandomSource random(17);
    return random;
}

QStringList filesOf(const QString& path)
{
    if (!QFileInfo(path).isDir())
        return {QFileInfo(path).absoluteFilePath()};
    QStringList files;
    QDirIterator found(QDir(path).absolutePath(), QDir::Files, QDirIterator::Subdirectories);
    while (found.hasNext())
        files.append(found.next());
    files.sort();
    return files;
}

void runOne(const std::uint8_t* data, std::size_t size)
{
    // A copy of just this size: one byte too far is one behind the end.
    const std::vector<std::uint8_t> input(data, data + size);
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

void runChanged(const QByteArray& bytes, int count)
{
    constexpr std::size_t room = 4096;
    const auto size = static_cast<std::size_t>(bytes.size());
    for (int seed = 0; seed < count; ++seed) {
        std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
        input.resize(size + room);
        const std::size_t changed = LLVMFuzzerCustomMutator(input.data(), size, input.size(),
                                                            static_cast<unsigned int>(seed));
        runOne(input.data(), changed);
    }
}

bool runFile(const QString& path, int changes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
        return false;
    }
    // Said ahead of it, so that the last line names the file that ends the program.
    std::printf("%s\n", qPrintable(path));
    std::fflush(stdout);
    const QByteArray bytes = file.readAll();
    runOne(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
           static_cast<std::size_t>(bytes.size()));
    runChanged(bytes, changes);
    return true;
}

} // namespace

// Changes one byte; the fuzzer brings its own in place of this.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize)
{
    if (size == 0 || maxSize == 0)
        return size;
    data[byteChanges().next() % size] = static_cast<std::uint8_t>(byteChanges().below(256));
    return size;
}

int main(int argc, char** argv)
{
    QStringList arguments;
    std::transform(argv + 1, argv + argc, std::back_inserter(arguments),
                   [](const char* argument) { return QFile::decodeName(argument); });
    int changes = 0;
    if (arguments.value(0) == QLatin1String("--changed")) {
        changes = arguments.value(1).toInt();
        arguments = arguments.mid(2);
    }
    QStringList files;
    for (const QString& argument : qAsConst(arguments))
        files += filesOf(argument);
    if (files.isEmpty()) {
        std::fprintf(stderr, "there is no file to run over\n");
        return 2;
    }
    LLVMFuzzerInitialize(&argc, &argv);
    return std::all_of(files.begin(), files.end(),
                       [&](const QString& path) { return runFile(path, changes); })
               ? 0
               : 1;
}
